#include "tests/support/Painted.h"
#include "tests/support/WindowBench.h"

#include "ipc/ServiceClient.h"
#include "ui/PillLabel.h"
#include "ui/SettingsDialog.h"
#include "ui/SideMenu.h"
#include "ui/SupportDialog.h"
#include "ui/TrayController.h"

#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMetaMethod>
#include <QPainter>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

using support::painted;
using support::WindowBench;

namespace {

QVBoxLayout *rootLayout(const WindowBench &bench)
{
    return qobject_cast<QVBoxLayout *>(bench.window->centralWidget()->layout());
}

QHBoxLayout *row(const WindowBench &bench, int index)
{
    return qobject_cast<QHBoxLayout *>(rootLayout(bench)->itemAt(index)->layout());
}

QWidget *widgetAt(const QBoxLayout *layout, int index)
{
    return layout->itemAt(index)->widget();
}

/// An item that is nothing but room.
bool isRoom(const QBoxLayout *layout, int index)
{
    return layout->itemAt(index)->spacerItem() != nullptr;
}

/// What the toolkit makes of a style sheet's weight.
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

/// The same shape, painted by hand.
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

Q_DECLARE_METATYPE(QMargins)

class tst_MainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void slotsInOrder();
    void titleSizeAndIcon();
    void ownedParts();
    void mainScreenFromTopToBottom();
    void topRow();
    void switchIsCentred();
    void pillIsCentred();
    void labels_data();
    void labels();
    void pillBackground();
    void menuButtonStyle();
    void menuButtonHasNoIndicator();
    void popupMenuStyle();
    void linksBeforeItIsShown();
};

void tst_MainWindow::init()
{
    WindowBench::resetWorld();
}

void tst_MainWindow::slotsInOrder()
{
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QList<QByteArray> signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        signatures.append(meta.method(i).methodSignature());
    }
    QCOMPARE(signatures, (QList<QByteArray>{"onToggleClicked()", "onServiceMessage(QString)",
                                            "onServiceConnectionChanged(bool)", "onMenuRequested()",
                                            "onSettingsRequested()", "onReferralRequested()",
                                            "onSupportRequested()"}));
    QCOMPARE(meta.method(meta.indexOfSlot("onServiceMessage(QString)")).parameterNames(),
             QList<QByteArray>{"text"});
    QCOMPARE(meta.method(meta.indexOfSlot("onServiceConnectionChanged(bool)")).parameterNames(),
             QList<QByteArray>{"connected"});
    QCOMPARE(meta.className(), "MainWindow");
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

void tst_MainWindow::ownedParts()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const MainWindow &window = *bench.window;
    const QWidget *const central = window.centralWidget();
    QCOMPARE(central->parentWidget(), &window);
    QCOMPARE(window.findChildren<ui::ToggleSwitch *>().size(), 1);
    QCOMPARE(bench.toggle()->parentWidget(), central);
    QCOMPARE(window.findChildren<ui::SideMenu *>().size(), 1);
    QCOMPARE(bench.sideMenu()->parentWidget(), central);
    QCOMPARE(window.findChildren<ui::SettingsDialog *>().size(), 1);
    QCOMPARE(bench.settingsPage()->parentWidget(), central);
    QCOMPARE(window.findChildren<ui::SupportDialog *>().size(), 1);
    QCOMPARE(window.findChild<ui::SupportDialog *>()->parentWidget(), central);
    QCOMPARE(window.findChildren<ipc::ServiceClient *>().size(), 1);
    QCOMPARE(bench.client()->parent(), &window);
    QCOMPARE(window.findChildren<ui::TrayController *>().size(), 1);
    QCOMPARE(window.findChild<ui::TrayController *>()->parent(), &window);

    // Hidden until asked for.
    QVERIFY(!bench.sideMenu()->isVisible());
    QVERIFY(!bench.settingsPage()->isVisible());
    QVERIFY(!window.findChild<ui::SupportDialog *>()->isVisible());
}

void tst_MainWindow::mainScreenFromTopToBottom()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const QVBoxLayout *const root = rootLayout(bench);
    QVERIFY(root != nullptr);
    QCOMPARE(root->contentsMargins(), (QMargins{28, 18, 28, 22}));
    QCOMPARE(root->spacing(), 0);
    QCOMPARE(root->count(), 9);

    QVERIFY(row(bench, 0) != nullptr);
    QVERIFY(isRoom(root, 1));
    QCOMPARE(root->itemAt(1)->sizeHint().height(), 0);
    QVERIFY(row(bench, 2) != nullptr);
    QVERIFY(isRoom(root, 3));
    QCOMPARE(root->itemAt(3)->sizeHint().height(), 28);
    QCOMPARE(widgetAt(root, 4), bench.status());
    QVERIFY(isRoom(root, 5));
    QCOMPARE(root->itemAt(5)->sizeHint().height(), 8);
    QCOMPARE(widgetAt(root, 6), bench.hint());
    QVERIFY(isRoom(root, 7));
    QCOMPARE(root->itemAt(7)->sizeHint().height(), 0);
    QVERIFY(row(bench, 8) != nullptr);

    const QList<int> stretches{0, 1, 0, 0, 0, 0, 0, 2, 0};
    for (int i = 0; i < root->count(); ++i) {
        QCOMPARE(root->stretch(i), stretches.at(i));
        QCOMPARE(root->itemAt(i)->alignment(), Qt::Alignment{});
    }

    // As the layout puts it: what is left over is shared one to two.
    const int above = bench.toggle()->y() - bench.menuButton()->geometry().bottom() - 1;
    const int below = bench.pill()->y() - bench.hint()->geometry().bottom() - 1;
    QVERIFY(std::abs(2 * above - below) <= 2);
    QCOMPARE(bench.menuButton()->y(), 18);
    QCOMPARE(bench.menuButton()->x(), 28);
    QCOMPARE(bench.pill()->geometry().bottom() + 1, 560 - 22);
    QCOMPARE(bench.status()->y(), bench.toggle()->geometry().bottom() + 1 + 28);
    QCOMPARE(bench.hint()->y(), bench.status()->geometry().bottom() + 1 + 8);
    QCOMPARE(bench.status()->x(), 28);
    QCOMPARE(bench.status()->width(), 360 - 2 * 28);
}

void tst_MainWindow::topRow()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const QHBoxLayout *const top = row(bench, 0);
    QCOMPARE(top->count(), 5);
    QCOMPARE(widgetAt(top, 0), bench.menuButton());
    QVERIFY(isRoom(top, 1));
    QCOMPARE(widgetAt(top, 2), bench.title());
    QVERIFY(isRoom(top, 3));
    const QWidget *const counterweight = widgetAt(top, 4);
    QCOMPARE(counterweight->metaObject(), &QWidget::staticMetaObject);
    QCOMPARE(counterweight->minimumWidth(), bench.menuButton()->sizeHint().width());
    QCOMPARE(counterweight->maximumWidth(), counterweight->minimumWidth());
    QVERIFY(counterweight->findChildren<QWidget *>().isEmpty());

    const QList<int> stretches{0, 1, 0, 1, 0};
    for (int i = 0; i < top->count(); ++i) {
        QCOMPARE(top->stretch(i), stretches.at(i));
        QCOMPARE(top->itemAt(i)->alignment(), Qt::Alignment{});
    }
    QCOMPARE(bench.title()->text(), QStringLiteral("IXOVPN"));
    QCOMPARE(bench.menuButton()->text(), QStringLiteral("\u2630"));
    QCOMPARE(bench.menuButton()->minimumWidth(), 40);
    QCOMPARE(bench.menuButton()->maximumWidth(), 40);
}

void tst_MainWindow::switchIsCentred()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const QHBoxLayout *const middle = row(bench, 2);
    QCOMPARE(middle->count(), 3);
    QVERIFY(isRoom(middle, 0));
    QCOMPARE(middle->stretch(0), 1);
    QCOMPARE(widgetAt(middle, 1), bench.toggle());
    QCOMPARE(middle->stretch(1), 0);
    QVERIFY(isRoom(middle, 2));
    QCOMPARE(middle->stretch(2), 1);
    QCOMPARE(bench.toggle()->geometry().center().x(), 360 / 2 - 1);
}

void tst_MainWindow::pillIsCentred()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const QHBoxLayout *const bottom = row(bench, 8);
    QCOMPARE(bottom->count(), 3);
    QVERIFY(isRoom(bottom, 0));
    QCOMPARE(bottom->stretch(0), 1);
    QCOMPARE(widgetAt(bottom, 1), bench.pill());
    QCOMPARE(bottom->stretch(1), 0);
    QVERIFY(isRoom(bottom, 2));
    QCOMPARE(bottom->stretch(2), 1);
    QCOMPARE(bench.pill()->size(), bench.pill()->sizeHint());
    QVERIFY(std::abs(bench.pill()->geometry().center().x() - 360 / 2) <= 1);
}

void tst_MainWindow::labels_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<double>("spacing");
    QTest::addColumn<QMargins>("padding");
    QTest::addColumn<bool>("centred");

    QTest::newRow("title") << QStringLiteral("title") << QColor{0xF2, 0xF2, 0xFA} << 15 << true
                           << 0.5 << QMargins{} << false;
    QTest::newRow("status") << QStringLiteral("status") << QColor{0xF2, 0xF2, 0xFA} << 22 << true
                            << 0.0 << QMargins{} << true;
    QTest::newRow("hint") << QStringLiteral("hint") << QColor{0x8B, 0x8D, 0xA8} << 11 << false
                          << 0.0 << QMargins{} << true;
    QTest::newRow("pill") << QStringLiteral("pill") << QColor{0xC9, 0xCB, 0xE6} << 12 << false
                          << 0.0 << QMargins{18, 8, 18, 8} << true;
}

void tst_MainWindow::labels()
{
    QFETCH(QString, name);
    QFETCH(int, pixelSize);
    QFETCH(bool, bold);
    QFETCH(QMargins, padding);
    QFETCH(bool, centred);

    const WindowBench bench{WindowBench::Service::IsAway};
    const auto *const label =
        bench.window->centralWidget()->findChild<QLabel *>(name, Qt::FindDirectChildrenOnly);
    QVERIFY(label != nullptr);
    QTEST(label->palette().color(label->foregroundRole()), "colour");
    QCOMPARE(label->font().pixelSize(), pixelSize);
    QCOMPARE(label->font().weight(), bold ? weight(600) : QFont::Normal);
    QTEST(label->font().letterSpacing(), "spacing");
    QCOMPARE(label->contentsRect(), label->rect().marginsRemoved(padding));
    QCOMPARE(label->alignment() == Qt::AlignCenter, centred);
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

    // No border: the button's size is its text's, and ten or six pixels a side.
    QToolButton plain;
    plain.setText(button->text());
    plain.setFont(button->font());
    plain.setStyleSheet(QStringLiteral("border: none; padding: 0px; margin: 0px;"));
    plain.ensurePolished();
    QCOMPARE(button->sizeHint() - plain.sizeHint(), (QSize{2 * 10, 2 * 6}));
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
    QMenu reference;
    reference.setStyleSheet(QStringLiteral(
        "QMenu { background: #232548; color: #F2F2FA; border-radius: 8px; padding: 6px 0;"
        " border: 1px solid rgba(255,255,255,30); }"
        "QMenu::item { padding: 8px 24px; background: transparent; }"
        "QMenu::item:selected { background: rgba(255,255,255,30); }"));
    for (QMenu *const each : {&menu, &reference}) {
        each->addAction(QStringLiteral("first entry"));
        each->addAction(QStringLiteral("second"));
        each->ensurePolished();
        each->resize(each->sizeHint());
    }
    const QRect item = menu.actionGeometry(menu.actions().constFirst());
    QCOMPARE(item.topLeft(), (QPoint{1, 1 + 6}));
    QCOMPARE(item.height(), menu.fontMetrics().height() + 2 * 8);
    const QPoint edge{item.left() + 3, item.center().y()};
    const QColor base{0x23, 0x25, 0x48};
    QCOMPARE(painted(menu).pixelColor(edge), base);
    QCOMPARE(painted(menu), painted(reference));

    menu.setActiveAction(menu.actions().constFirst());
    reference.setActiveAction(reference.actions().constFirst());
    QCOMPARE(painted(menu).pixelColor(edge), over(base, 30));
    QCOMPARE(painted(menu), painted(reference));
}

void tst_MainWindow::linksBeforeItIsShown()
{
    support::ScriptedService service;
    service.listen();
    const MainWindow window;
    QVERIFY(support::waitFor([&] { return service.accepted() == 1; }));
    QVERIFY(!window.isVisible());
}

QTEST_MAIN(tst_MainWindow)

#include "tst_mainwindow.moc"
