#include "tests/support/Painted.h"
#include "tests/support/WindowBench.h"

#include "ui/PillLabel.h"
#include "ui/WindowManager.h"

#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QToolButton>

using support::painted;
using support::WindowBench;

namespace {

/// The QFont weight for a style sheet's weight.
int weight(int inStyleSheet)
{
    return qRound(inStyleSheet / 8.0);
}

/// The alpha of the white with which a widget paints its background, between its text and its
/// edge.
int whiteness(QWidget *widget)
{
    const QColor colour = painted(*widget).pixelColor(widget->width() / 2, 2);
    return colour.rgb() == QColor{Qt::white}.rgb() ? colour.alpha() : -1;
}

/// The same shape, painted without a style sheet.
QImage roundedShape(const QSize &size, double radius, int alpha)
{
    QImage image{size, QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    QPainter painter{&image};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor{255, 255, 255, alpha});
    painter.drawRoundedRect(QRectF{QPointF{0, 0}, QSizeF{size}}, radius, radius);
    return image;
}

/// Compares where two images are covered at all, in their corners.
bool sameCorners(const QImage &one, const QImage &other, int extent)
{
    for (int x = 0; x < extent; ++x) {
        for (int y = 0; y < extent; ++y) {
            constexpr int tolerance = 3;
            if (std::abs(one.pixelColor(x, y).alpha() - other.pixelColor(x, y).alpha()) >
                tolerance) {
                return false;
            }
        }
    }
    return true;
}

QColor over(const QColor &base, int whiteAlpha)
{
    QImage pixel{1, 1, QImage::Format_ARGB32_Premultiplied};
    pixel.fill(base);
    QPainter{&pixel}.fillRect(pixel.rect(), QColor{255, 255, 255, whiteAlpha});
    return pixel.pixelColor(0, 0);
}

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void titleSizeAndIcon();
    void titleIsCentred();
    void pillBackground();
    void menuButtonStyle();
    void menuButtonHasNoIndicator();
    void popupMenuStyle();
    void connectsBeforeItIsShown();
    void comesBackWhereItCanBeMoved();
};

void tst_MainWindow::init()
{
    WindowBench::resetWorld();
}

void tst_MainWindow::titleSizeAndIcon()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const QSize extent{360, 560};
    QCOMPARE(bench.window->windowTitle(), QStringLiteral("IXOVPN"));
    QCOMPARE(bench.window->size(), extent);
    QCOMPARE(bench.window->minimumSize(), extent);
    QCOMPARE(bench.window->maximumSize(), extent);
    bench.window->resize(800, 600);
    QCOMPARE(bench.window->size(), extent);
    QCOMPARE(bench.window->centralWidget()->size(), extent);
    QVERIFY(bench.window->isWindow());

    const QSize iconSize{32, 32};
    const QImage icon = bench.window->windowIcon().pixmap(iconSize).toImage();
    QVERIFY(!icon.isNull());
    QCOMPARE(icon, QIcon{QStringLiteral(":/assets/tray_icon.ico")}.pixmap(iconSize).toImage());
}

void tst_MainWindow::titleIsCentred()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const QRect title = bench.title()->geometry();
    const int beside = bench.window->width() - title.width();
    QCOMPARE(title.left(), beside / 2);
}

void tst_MainWindow::pillBackground()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    QCOMPARE(whiteness(bench.pill()), 25);
    const QImage shape = roundedShape(bench.pill()->size(), 14, 25);
    QVERIFY(sameCorners(painted(*bench.pill()), shape, 8));
}

void tst_MainWindow::menuButtonStyle()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    QToolButton *const button = bench.menuButton();
    QCOMPARE(button->palette().color(QPalette::ButtonText), QColor(0xF2, 0xF2, 0xFA));
    QCOMPARE(button->font().pixelSize(), 16);
    QCOMPARE(button->font().weight(), weight(700));
    QCOMPARE(whiteness(button), 25);
    QVERIFY(sameCorners(painted(*button), roundedShape(button->size(), 12, 25), 6));
    button->setAttribute(Qt::WA_UnderMouse);
    QCOMPARE(whiteness(button), 50);

    // Without a border the button's size is that of its text, and ten or six pixels a side.
    QToolButton plain;
    plain.setText(button->text());
    plain.setFont(button->font());
    plain.setStyleSheet(QStringLiteral("border: none; padding: 0px; margin: 0px;"));
    plain.ensurePolished();
    QCOMPARE(button->QToolButton::sizeHint() - plain.sizeHint(), (QSize{2 * 10, 2 * 6}));
}

void tst_MainWindow::menuButtonHasNoIndicator()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    QToolButton *const button = bench.menuButton();
    button->setPopupMode(QToolButton::InstantPopup);
    const QImage without = painted(*button);
    QMenu menu;
    button->setMenu(&menu);
    QCOMPARE(painted(*button), without);
}

void tst_MainWindow::popupMenuStyle()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    QMenu menu{bench.window->centralWidget()};
    menu.addAction(QStringLiteral("first entry"));
    menu.ensurePolished();
    menu.resize(menu.sizeHint());
    const QRect item = menu.actionGeometry(menu.actions().constFirst());
    QCOMPARE(item.topLeft(), (QPoint{1, 1 + 6}));
    QCOMPARE(item.height(), menu.fontMetrics().height() + 2 * 8);
    const int text = menu.fontMetrics().horizontalAdvance(QStringLiteral("first entry"));
    QCOMPARE((item.width() - text) / 2, 24);
    const QPoint edge{item.left() + 3, item.center().y()};
    const QColor base{0x23, 0x25, 0x48};
    QCOMPARE(painted(menu).pixelColor(edge), base);

    menu.setActiveAction(menu.actions().constFirst());
    QCOMPARE(painted(menu).pixelColor(edge), over(base, 30));
}

void tst_MainWindow::connectsBeforeItIsShown()
{
    support::ScriptedService service;
    service.listen();
    const MainWindow window;
    QVERIFY(support::waitFor([&] { return service.accepted() == 1; }));
    QVERIFY(!window.isVisible());
}

void tst_MainWindow::comesBackWhereItCanBeMoved()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const QRect desktop = bench.window->screen()->virtualGeometry();
    // A strip of it can still be seen, but not its upper edge.
    bench.window->move(desktop.left() + 100, desktop.top() - bench.window->height() + 20);
    ui::hideInPlace(bench.window.get());
    bench.window->show();
    QTRY_VERIFY(desktop.contains(bench.window->geometry().topLeft()));
}

QTEST_MAIN(tst_MainWindow)

#include "tst_mainwindow.moc"
