#include "tests/support/Desktop.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <xcb/xcb.h>

namespace support {

namespace {

constexpr int smallestPopup = 5;

// Window managers start with one or four.
constexpr int unusualDesktops = 5;

QString server()
{
    return QStringLiteral("Xvfb");
}

QStringList moveTo(const QPoint &position)
{
    return {QStringLiteral("mousemove"), QString::number(position.x()),
            QString::number(position.y())};
}

QString xdotool()
{
    return QStringLiteral("xdotool");
}

QString number(qulonglong value)
{
    return QString::number(value);
}

} // namespace

Desktop::Desktop(WindowManager manager)
{
    // Without -noreset the server starts afresh whenever its last client leaves.
    QProcess *const display = start(
        server(), {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                   QStringLiteral("0"), QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
                   QStringLiteral("tcp"), QStringLiteral("-noreset")});
    setVariable(QStringLiteral("DISPLAY"),
                QLatin1Char{':'} + QString::fromLatin1(Programs::firstLine(*display)));

    switch (manager) {
    case WindowManager::Openbox:
        start(QStringLiteral("openbox"),
              {QStringLiteral("--sm-disable"), QStringLiteral("--config-file"),
               QStringLiteral("/etc/xdg/openbox/rc.xml")});
        break;
    case WindowManager::Metacity:
        setVariable(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
        start(QStringLiteral("metacity"),
              {QStringLiteral("--sm-disable"), QStringLiteral("--no-composite")});
        break;
    }
    // It says who it is before it hears anything: a window that is shown in between stays hidden.
    const QStringList change{QStringLiteral("set_num_desktops"), number(unusualDesktops),
                             QStringLiteral("get_num_desktops")};
    const auto doesAsItIsTold = [this, &change] {
        return run(xdotool(), change).output.trimmed() == QByteArray::number(unusualDesktops);
    };
    if (!waitFor(doesAsItIsTold)) {
        qFatal("The window manager does not come up");
    }
}

void Desktop::setVariable(const QString &name, const QString &value)
{
    if (value.isNull()) {
        programs.environment.remove(name);
    } else {
        programs.environment.insert(name, value);
    }
}

QList<Desktop::Window> Desktop::windows(const QString &title) const
{
    return search({QStringLiteral("--name"),
                   QLatin1Char{'^'} + QRegularExpression::escape(title) + QLatin1Char{'$'}});
}

QList<Desktop::Window> Desktop::visibleWindows(const QString &title) const
{
    QList<Window> visible =
        search({QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                QLatin1Char{'^'} + QRegularExpression::escape(title) + QLatin1Char{'$'}});
    const auto hidden = [this](Window window) {
        return property(window, "_NET_WM_STATE").contains("_NET_WM_STATE_HIDDEN");
    };
    visible.erase(std::remove_if(visible.begin(), visible.end(), hidden), visible.end());
    return visible;
}

QList<Desktop::Window> Desktop::unmanagedWindows() const
{
    QList<Window> found =
        search({QStringLiteral("--onlyvisible"), QStringLiteral("--maxdepth"), QStringLiteral("1"),
                QStringLiteral("--name"), QStringLiteral(".*")});
    // Programs park windows for their own purposes beside the screen.
    const auto managed = [this](Window window) {
        const QRect place = geometry(window);
        return !describe(window).contains("Override Redirect State: yes") || place.right() < 0 ||
               place.bottom() < 0 || place.width() < smallestPopup;
    };
    found.erase(std::remove_if(found.begin(), found.end(), managed), found.end());
    return found;
}

Desktop::Window Desktop::activeWindow() const
{
    const Outcome outcome = run(xdotool(), {QStringLiteral("getactivewindow")});
    return outcome.exitCode == 0 ? outcome.output.trimmed().toULongLong() : 0;
}

QByteArray Desktop::describe(Window window) const
{
    return run(QStringLiteral("xwininfo"),
               {QStringLiteral("-all"), QStringLiteral("-id"), number(window)})
        .output;
}

bool Desktop::isSelectionOwned(const char *name) const
{
    const QByteArray display = programs.environment.value(QStringLiteral("DISPLAY")).toLatin1();
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection{
        xcb_connect(display.constData(), nullptr), &xcb_disconnect};
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom{
        xcb_intern_atom_reply(
            connection.get(),
            xcb_intern_atom(connection.get(), 0, static_cast<uint16_t>(std::strlen(name)), name),
            nullptr),
        &std::free};
    if (atom == nullptr) {
        return false;
    }
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner{
        xcb_get_selection_owner_reply(
            connection.get(), xcb_get_selection_owner(connection.get(), atom->atom), nullptr),
        &std::free};
    return owner != nullptr && owner->owner != XCB_WINDOW_NONE;
}

QRect Desktop::geometry(Window window) const
{
    const QByteArray text = describe(window);
    const auto value = [&text](const char *label) {
        const QRegularExpression expression{QRegularExpression::escape(QLatin1String{label}) +
                                            QStringLiteral(":\\s*(-?\\d+)")};
        return expression.match(QString::fromLatin1(text)).captured(1).toInt();
    };
    return {value("Absolute upper-left X"), value("Absolute upper-left Y"), value("Width"),
            value("Height")};
}

QByteArray Desktop::property(Window window, const char *name) const
{
    return run(QStringLiteral("xprop"),
               {QStringLiteral("-id"), number(window), QLatin1String{name}})
        .output.trimmed();
}

void Desktop::activate(Window window) const
{
    demand(xdotool(), {QStringLiteral("windowactivate"), QStringLiteral("--sync"), number(window)});
}

void Desktop::minimise(Window window) const
{
    demand(xdotool(), {QStringLiteral("windowminimize"), QStringLiteral("--sync"), number(window)});
}

void Desktop::close(Window window) const
{
    demand(QStringLiteral("wmctrl"), {QStringLiteral("-i"), QStringLiteral("-c"), number(window)});
}

void Desktop::moveMouse(const QPoint &position) const
{
    // On a pointer that is there already, --sync would wait for ever.
    input(moveTo(position));
}

void Desktop::click(const QPoint &position, int button) const
{
    input(moveTo(position) << QStringLiteral("click") << QString::number(button));
}

void Desktop::doubleClick(const QPoint &position) const
{
    input(moveTo(position) << QStringLiteral("click") << QStringLiteral("--repeat")
                           << QStringLiteral("2") << QStringLiteral("--delay")
                           << QStringLiteral("50") << QStringLiteral("1"));
}

void Desktop::holdButton(const QPoint &position) const
{
    input(moveTo(position) << QStringLiteral("mousedown") << QStringLiteral("1"));
}

void Desktop::releaseButton() const
{
    input({QStringLiteral("mouseup"), QStringLiteral("1")});
}

void Desktop::pressKeys(const QStringList &keys) const
{
    input(QStringList{QStringLiteral("key")} + keys);
}

void Desktop::type(const QString &text) const
{
    input({QStringLiteral("type"), QStringLiteral("--args"), QStringLiteral("1"), text});
}

QImage Desktop::screenshot() const
{
    const Outcome outcome =
        demand(QStringLiteral("import"), {QStringLiteral("-silent"), QStringLiteral("-window"),
                                          QStringLiteral("root"), QStringLiteral("ppm:-")});
    return QImage::fromData(outcome.output, "PPM");
}

QImage Desktop::screenshot(Window window) const
{
    return screenshot().copy(geometry(window));
}

Desktop::Outcome Desktop::demand(const QString &program, const QStringList &arguments) const
{
    Outcome outcome = run(program, arguments);
    if (outcome.exitCode != 0) {
        qFatal("%s %s failed: %s", qPrintable(program),
               qPrintable(arguments.join(QLatin1Char{' '})), outcome.errors.constData());
    }
    return outcome;
}

void Desktop::input(const QStringList &commands) const
{
    // Its answer comes after all that was asked for before. What another program asks for next may
    // otherwise come first: a button is then let go where the pointer has been moved to since. It
    // is asked for no property of a window, because that may just go.
    demand(xdotool(),
           commands + QStringList{QStringLiteral("getwindowfocus"), QStringLiteral("-f")});
}

QList<Desktop::Window> Desktop::search(const QStringList &arguments) const
{
    QList<Window> found;
    const Outcome outcome = run(xdotool(), QStringList{QStringLiteral("search")} + arguments);
    for (const QByteArray &line : outcome.output.split('\n')) {
        if (!line.isEmpty()) {
            found.append(line.toULongLong());
        }
    }
    return found;
}

} // namespace support
