// Prints how many microseconds one painting of the switch, of the background and of the whole
// window takes, into an image and without a display: with the names.

#include "ui/MainWindow.h"
#include "ui/ToggleSwitch.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>

#include <cstdio>

namespace {

constexpr int warmUps = 20;
constexpr int paintings = 500;
constexpr double nsPerUs = 1000.0;

using ui::ToggleSwitch;

template <typename Change>
void report(const char *name, QWidget &widget, QWidget::RenderFlags flags, Change change)
{
    QImage image{widget.size(), QImage::Format_RGB32};
    const auto paint = [&](int i) {
        change(i);
        widget.render(&image, {}, {}, flags);
    };
    for (int i = 0; i < warmUps; ++i) {
        paint(i);
    }
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < paintings; ++i) {
        paint(i);
    }
    std::printf("  %-57s %10.2f\n", name,
                static_cast<double>(timer.nsecsElapsed()) / nsPerUs / paintings);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application{argc, argv};
    MainWindow window;
    window.ensurePolished();
    auto &toggle = *window.findChild<ToggleSwitch *>();
    const auto same = [](int /*i*/) {};

    report("switch at rest", toggle, {}, same);
    report("background", *window.centralWidget(), {}, same);
    report("window", window, QWidget::DrawWindowBackground | QWidget::DrawChildren, same);

    // Every painting shows another strength of the pulse, as the running animation does.
    toggle.setState(ToggleSwitch::State::Connecting);
    report("switch pulsing", toggle, {},
           [&toggle](int i) { toggle.setPulseScale(1.0 + 0.0001 * i); });
    return 0;
}
