#include "support/Pictures.h"
#include "support/RootBackgroundWindow.h"
#include "ui/ToggleSwitch.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QTest>

#include <functional>

using support::RootBackgroundWindow;

namespace {

constexpr QSize windowExtent{360, 560};
constexpr QRect mapInWindow{0, 163, 360, 234};

QImage worldMap()
{
    return QImage{QStringLiteral(":/assets/world-map.png")};
}

/// The background as it looks when it is painted straight onto the device.
QImage direct(const QSize &extent, const QRect &mapRect, double ratio)
{
    QImage image = support::rootGradient(extent, ratio);
    QPainter painter{&image};
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(0.1);
    painter.drawPixmap(mapRect, QPixmap::fromImage(worldMap()));
    return image;
}

/// Counts who is painted, and where.
class PaintWatcher : public QObject
{
public:
    PaintWatcher() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType()) {
            painted[static_cast<QWidget *>(watched)] += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }

    QHash<QWidget *, QRegion> painted;
};

} // namespace

class tst_RootBackground : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gradientRunsFromTopToBottom();
    void mapSpansTheWidthInTheMiddle_data();
    void mapSpansTheWidthInTheMiddle();
    void followsSizeAndPixelRatio();
    void exposedPartAloneIsPainted();
    void showsTheSameOnScreen();
    void pulseRepaintsNothingButTheSwitch();
};

void tst_RootBackground::gradientRunsFromTopToBottom()
{
    RootBackgroundWindow window;
    const QImage shown = window.drawnBackground(windowExtent, 1.0);

    // The map does not reach these rows.
    QCOMPARE(shown.pixelColor(0, 0), QColor(27, 29, 61));
    QCOMPARE(shown.pixelColor(359, 0), QColor(27, 29, 61));
    QCOMPARE(shown.pixelColor(0, 559), QColor(15, 16, 36));
    QCOMPARE(shown.pixelColor(359, 559), QColor(15, 16, 36));
    for (int y = 1; y < shown.height(); ++y) {
        if (mapInWindow.top() <= y && y <= mapInWindow.bottom() + 1) {
            continue;
        }
        const QColor above = shown.pixelColor(180, y - 1);
        const QColor here = shown.pixelColor(180, y);
        QVERIFY2(here.red() <= above.red() && here.green() <= above.green() &&
                     here.blue() <= above.blue(),
                 qPrintable(QStringLiteral("row %1").arg(y)));
    }
}

void tst_RootBackground::mapSpansTheWidthInTheMiddle_data()
{
    QTest::addColumn<QSize>("extent");
    QTest::addColumn<QRect>("mapRect");

    // The map is 720 x 468 pixels, 0.65 times as high as it is wide.
    QTest::newRow("the window's size") << windowExtent << mapInWindow;
    QTest::newRow("height is cut off") << QSize{301, 400} << QRect{0, 102, 301, 195};
    QTest::newRow("place is cut off") << QSize{360, 561} << QRect{0, 163, 360, 234};
    QTest::newRow("map is higher") << QSize{360, 100} << QRect{0, -67, 360, 234};
    QTest::newRow("place above is cut off towards zero")
        << QSize{361, 101} << QRect{0, -66, 361, 234};
}

void tst_RootBackground::mapSpansTheWidthInTheMiddle()
{
    QCOMPARE(worldMap().size(), QSize(720, 468));
    QFETCH(QSize, extent);
    QFETCH(QRect, mapRect);

    RootBackgroundWindow window;
    const QImage shown = window.drawnBackground(extent, 1.0);
    QCOMPARE(support::difference(shown, direct(extent, mapRect, 1.0), 0), QString{});
    // One pixel beside would be seen.
    for (const QPoint &beside : {QPoint{0, 1}, QPoint{0, -1}}) {
        const QImage wrong = direct(extent, mapRect.translated(beside), 1.0);
        QVERIFY(!support::difference(shown, wrong, 0).isEmpty());
    }
    const QImage taller = direct(extent, mapRect.adjusted(0, 0, 0, 1), 1.0);
    QVERIFY(!support::difference(shown, taller, 0).isEmpty());
}

void tst_RootBackground::followsSizeAndPixelRatio()
{
    struct View
    {
        QSize extent;
        QRect mapRect;
        double ratio;
    };
    const View views[] = {
        {windowExtent, mapInWindow, 1.0},      {windowExtent, mapInWindow, 1.5},
        {{300, 560}, {0, 182, 300, 195}, 1.5}, {{300, 400}, {0, 102, 300, 195}, 1.5},
        {{300, 400}, {0, 102, 300, 195}, 2.0}, {windowExtent, mapInWindow, 2.0},
        {windowExtent, mapInWindow, 1.25},     {windowExtent, mapInWindow, 3.0},
        {windowExtent, mapInWindow, 1.0},
    };
    RootBackgroundWindow window;
    for (const View &view : views) {
        QCOMPARE(support::difference(window.drawnBackground(view.extent, view.ratio),
                                     direct(view.extent, view.mapRect, view.ratio), 0),
                 QString{});
    }
}

void tst_RootBackground::exposedPartAloneIsPainted()
{
    RootBackgroundWindow window;
    window.drawnBackground(windowExtent, 1.0);
    const QRegion exposed = QRegion{30, 150, 90, 40} + QRegion{200, 300, 31, 17};
    QImage shown{windowExtent, QImage::Format_RGB32};
    shown.fill(Qt::magenta);
    window.centralWidget()->render(&shown, exposed.boundingRect().topLeft(), exposed,
                                   QWidget::DrawChildren);

    QImage expected{windowExtent, QImage::Format_RGB32};
    expected.fill(Qt::magenta);
    QPainter painter{&expected};
    painter.setClipRegion(exposed);
    painter.drawImage(0, 0, direct(windowExtent, mapInWindow, 1.0));
    painter.end();
    QCOMPARE(support::difference(shown, expected, 0), QString{});
}

void tst_RootBackground::showsTheSameOnScreen()
{
    RootBackgroundWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    const auto onScreen = [&window] {
        return window.screen()->grabWindow(window.winId()).toImage();
    };
    const QImage expected =
        direct(windowExtent, mapInWindow, window.centralWidget()->devicePixelRatioF());
    QTRY_COMPARE(support::difference(onScreen(), expected, 0), QString{});

    PaintWatcher watcher;
    window.centralWidget()->update(QRect{100, 200, 60, 30});
    QTRY_VERIFY(watcher.painted.contains(window.centralWidget()));
    QCOMPARE(watcher.painted.value(window.centralWidget()), QRegion(100, 200, 60, 30));
    QCOMPARE(support::difference(onScreen(), expected, 0), QString{});
}

void tst_RootBackground::pulseRepaintsNothingButTheSwitch()
{
    MainWindow window;
    auto *const toggle = window.findChild<ui::ToggleSwitch *>();
    QVERIFY(toggle != nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const auto settled = [] {
        PaintWatcher watcher;
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        return watcher.painted.isEmpty();
    };
    QTRY_VERIFY(settled());

    PaintWatcher watcher;
    toggle->setPulseScale(1.1);
    QTRY_VERIFY(watcher.painted.contains(toggle));
    QCOMPARE(watcher.painted.value(toggle), QRegion(toggle->rect()));
    // The background beneath it, and neither the window behind nor a label.
    QCOMPARE(watcher.painted.value(window.centralWidget()), QRegion(toggle->geometry()));
    QCOMPARE(watcher.painted.size(), 2);
}

QTEST_MAIN(tst_RootBackground)

#include "tst_rootbackground.moc"
