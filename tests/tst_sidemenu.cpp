#include "ui/MenuItem.h"
#include "ui/SideMenu.h"

#include <QApplication>
#include <QPointer>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

using ui::MenuItem;
using ui::SideMenu;

namespace {

constexpr QSize windowSize{360, 560};
constexpr int slideMs = 180;
const QColor panelColour{35, 37, 72};

constexpr const char *sources[] = {"Settings", "Referral Code", "Support", "Exit"};
using Request = void (SideMenu::*)();
constexpr Request requests[] = {&SideMenu::settingsRequested, &SideMenu::referralRequested,
                                &SideMenu::supportRequested, &SideMenu::exitRequested};

/// A window of the size of the program's with a menu, and a way to the menu's parts.
class Window : public QWidget
{
public:
    Window()
        : menu(new SideMenu{this})
        , panel(menu->findChild<QWidget *>(QString{}, Qt::FindDirectChildrenOnly))
        , slide(menu->findChild<QPropertyAnimation *>())
        , rows(panel->findChildren<MenuItem *>())
    {
        resize(windowSize);
        QPalette colours = palette();
        colours.setColor(QPalette::Window, Qt::white);
        setPalette(colours);
        setAutoFillBackground(true);
    }

    QRect openRect() const { return {0, 0, panel->width(), menu->height()}; }
    QRect closedRect() const { return openRect().translated(-panel->width(), 0); }
    bool sliding() const { return slide->state() == QAbstractAnimation::Running; }

    void openWholly()
    {
        show();
        menu->openMenu();
        slide->setCurrentTime(slideMs);
        QCOMPARE(panel->geometry(), openRect());
    }

    SideMenu *menu;
    QWidget *panel;
    QPropertyAnimation *slide;
    QList<MenuItem *> rows;
};

int widestRow(const QList<MenuItem *> &rows)
{
    int width = 0;
    for (const MenuItem *row : rows) {
        width = std::max(width, row->sizeHint().width());
    }
    return width;
}

QImage pictureOf(QWidget *widget, const QSize &size)
{
    QImage image{size, QImage::Format_RGB32};
    image.fill(panelColour);
    widget->render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

/// A window that has slid in wholly, in one line of a test. The name cannot stand in parentheses.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define OPEN_WINDOW(name)                                                                          \
    Window name;                                                                                   \
    name.openWholly();                                                                             \
    if (QTest::currentTestFailed()) {                                                              \
        return;                                                                                    \
    }
// NOLINTEND(bugprone-macro-parentheses)

} // namespace

class tst_SideMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void panelAndRows();

    void panelWidth_data();
    void panelWidth();
    void retranslate();

    void slidesIn();
    void slidesOut();
    void slideIsNotLinear();
    void openingTakesParentsSizeAndTop();
    void nothingOpensWithoutParent();
    void closingClosedMenu();

    void openedWhileClosing();
    void closedWhileOpening();
    void closedAndOpenedManyTimes();
    void resizedWhileOpen();
    void resizedWhileSliding();
    void resizedWhileHidden();
    void retranslatedWhileSliding();
    void parentHiddenWhileSliding_data();
    void parentHiddenWhileSliding();
    void deletedWhileSliding();

    void rowsReport_data();
    void rowsReport();
    void closesBeforeItReports();
    void rowChosenTwice();

    void pressOutsideCloses_data();
    void pressOutsideCloses();
    void pressInsideDoesNot_data();
    void pressInsideDoesNot();
    void takesFocus();
    void noKeyCloses_data();
    void noKeyCloses();

    void overlay();
    void overlayIgnoresStyleSheets();
};

void tst_SideMenu::panelAndRows()
{
    const Window window;
    QCOMPARE(window.panel->palette().color(QPalette::Window), panelColour);
    QCOMPARE(window.rows.size(), 4);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(window.rows.at(i)->text(), QLatin1String{sources[i]});
        // The icon of each row, by comparison with a row of that kind.
        MenuItem model{i, QLatin1String{sources[i]}, nullptr};
        const QSize size{200, 56};
        model.resize(size);
        window.rows.at(i)->resize(size);
        QCOMPARE(pictureOf(window.rows.at(i), size), pictureOf(&model, size));
    }
}

void tst_SideMenu::panelWidth_data()
{
    QTest::addColumn<int>("parentWidth");
    QTest::addColumn<QString>("longest");
    QTest::addColumn<int>("expected");
    // What the longest row asks for stands as -1.
    QTest::newRow("as wide as the widest row")
        << 600 << QStringLiteral("Rather a longer text") << -1;
    QTest::newRow("not below the narrowest") << 600 << QString{} << 170;
    QTest::newRow("leaves a strip") << 300 << QStringLiteral("w").repeated(40) << 260;
    QTest::newRow("the strip counts more than the narrowest") << 150 << QString{} << 110;
    QTest::newRow("no parent, long") << 0 << QStringLiteral("w").repeated(40) << -1;
    QTest::newRow("no parent, short") << 0 << QString{} << 170;
}

void tst_SideMenu::panelWidth()
{
    class Texts : public QTranslator
    {
    public:
        QString longest;
        bool isEmpty() const override { return false; }
        QString translate(const char *context, const char *source, const char * /*hint*/,
                          int /*n*/) const override
        {
            if (qstrcmp(context, "ui::SideMenu") != 0) {
                return {};
            }
            return qstrcmp(source, "Support") == 0 && !longest.isEmpty() ? longest
                                                                         : QStringLiteral("i");
        }
    };
    QFETCH(int, parentWidth);
    QFETCH(QString, longest);
    QFETCH(int, expected);
    Texts texts;
    texts.longest = longest;
    QCoreApplication::installTranslator(&texts);

    std::unique_ptr<QWidget> parent;
    if (parentWidth > 0) {
        parent = std::make_unique<QWidget>();
        parent->resize(parentWidth, 400);
    }
    // Owned by the parent where there is one.
    auto *const menu = new SideMenu{parent.get()};
    const auto *const panel = menu->findChild<QWidget *>(QString{}, Qt::FindDirectChildrenOnly);
    const int asked = widestRow(panel->findChildren<MenuItem *>());
    QVERIFY((expected == -1) == (asked > 170 && (parentWidth == 0 || asked < parentWidth - 40)));
    const int width = expected == -1 ? asked : expected;
    QCOMPARE(panel->geometry(), QRect(-width, 0, width, menu->height()));
    QCoreApplication::removeTranslator(&texts);
    if (parent == nullptr) {
        delete menu;
    }
}

void tst_SideMenu::retranslate()
{
    OPEN_WINDOW(window);
    const int before = window.panel->width();
    QTranslator catalogue;
    QVERIFY(catalogue.load(QStringLiteral(":/i18n/ixovpn_ru.qm")));
    QCoreApplication::installTranslator(&catalogue);
    // The owner says when.
    QCOMPARE(window.rows.at(1)->text(), QStringLiteral("Referral Code"));
    window.menu->retranslate();
    QVERIFY(window.rows.at(1)->text() != QStringLiteral("Referral Code"));
    QVERIFY(window.panel->width() != before);
    QCOMPARE(window.panel->geometry(), window.openRect());
    QCoreApplication::removeTranslator(&catalogue);
    window.menu->retranslate();
    QCOMPARE(window.panel->width(), before);
}

void tst_SideMenu::slidesIn()
{
    Window window;
    window.show();
    window.menu->openMenu();
    QVERIFY(window.menu->isVisible());
    QVERIFY(window.sliding());
    QCOMPARE(window.slide->startValue().toRect(), window.closedRect());
    QCOMPARE(window.slide->endValue().toRect(), window.openRect());
    QCOMPARE(window.slide->direction(), QAbstractAnimation::Forward);
    QTRY_VERIFY(!window.sliding());
    QCOMPARE(window.panel->geometry(), window.openRect());
    QVERIFY(window.menu->isVisible());
}

void tst_SideMenu::slidesOut()
{
    OPEN_WINDOW(window);
    const QRect from = window.panel->geometry();
    window.menu->closeMenu();
    QVERIFY(window.menu->isVisible());
    QVERIFY(window.sliding());
    QCOMPARE(window.slide->startValue().toRect(), from);
    QCOMPARE(window.slide->endValue().toRect(), window.closedRect());
    QTRY_VERIFY(!window.sliding());
    QVERIFY(window.menu->isHidden());
    QCOMPARE(window.panel->geometry(), window.closedRect());
}

void tst_SideMenu::slideIsNotLinear()
{
    Window window;
    window.show();
    window.menu->openMenu();
    window.slide->pause();
    for (const int time : {0, 45, 90, 135, 180}) {
        window.slide->setCurrentTime(time);
        const double rest = std::pow(1.0 - static_cast<double>(time) / slideMs, 3.0);
        const double left = -window.panel->width() * rest;
        QVERIFY(std::abs(window.panel->x() - left) <= 1.0);
        QCOMPARE(window.panel->size(), window.openRect().size());
    }
}

void tst_SideMenu::openingTakesParentsSizeAndTop()
{
    Window window;
    QWidget later{&window};
    later.setGeometry(window.rect());
    window.show();
    window.menu->openMenu();
    QCOMPARE(window.menu->geometry(), window.rect());
    QCOMPARE(window.childAt(windowSize.width() - 5, 5), window.menu);
    QCOMPARE(window.children().last(), window.menu);
}

void tst_SideMenu::nothingOpensWithoutParent()
{
    SideMenu menu;
    menu.openMenu();
    QVERIFY(menu.isHidden());
    QCOMPARE(menu.findChild<QPropertyAnimation *>()->state(), QAbstractAnimation::Stopped);
    // It is not open either.
    menu.show();
    menu.closeMenu();
    QCOMPARE(menu.findChild<QPropertyAnimation *>()->state(), QAbstractAnimation::Stopped);
}

void tst_SideMenu::closingClosedMenu()
{
    Window window;
    window.show();
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (const Request request : requests) {
        spies.push_back(std::make_unique<QSignalSpy>(window.menu, request));
    }
    window.menu->closeMenu();
    QVERIFY(!window.sliding());
    QVERIFY(window.menu->isHidden());

    window.menu->openMenu();
    window.menu->closeMenu();
    window.slide->setCurrentTime(100);
    const QVariant start = window.slide->startValue();
    window.menu->closeMenu();
    QCOMPARE(window.slide->startValue(), start);
    QVERIFY(window.slide->currentTime() >= 100);
    QTRY_VERIFY(window.menu->isHidden());
    for (const auto &spy : spies) {
        QCOMPARE(spy->count(), 0);
    }
}

void tst_SideMenu::openedWhileClosing()
{
    OPEN_WINDOW(window);
    window.menu->closeMenu();
    window.slide->setCurrentTime(100);
    window.menu->openMenu();
    QVERIFY(window.menu->isVisible());
    QTRY_VERIFY(!window.sliding());
    QVERIFY(window.menu->isVisible());
    QCOMPARE(window.panel->geometry(), window.openRect());

    // Even if the slide out ends just as the menu is opened again.
    window.menu->closeMenu();
    window.slide->setCurrentTime(slideMs - 1);
    window.menu->openMenu();
    QTRY_VERIFY(!window.sliding());
    QVERIFY(window.menu->isVisible());
}

void tst_SideMenu::closedWhileOpening()
{
    Window window;
    window.show();
    window.menu->openMenu();
    window.slide->setCurrentTime(30);
    const QRect from = window.panel->geometry();
    QVERIFY(from.x() < 0);
    window.menu->closeMenu();
    QCOMPARE(window.slide->startValue().toRect(), from);
    QCOMPARE(window.panel->geometry(), from);
    QTRY_VERIFY(window.menu->isHidden());
    QCOMPARE(window.panel->geometry(), window.closedRect());
}

void tst_SideMenu::closedAndOpenedManyTimes()
{
    Window window;
    window.show();
    for (int i = 0; i < 50; ++i) {
        window.menu->openMenu();
        window.slide->setCurrentTime(i);
        window.menu->closeMenu();
        window.slide->setCurrentTime(slideMs - i - 1);
    }
    window.menu->openMenu();
    const QSignalSpy ended{window.slide, &QPropertyAnimation::finished};
    QTRY_COMPARE(ended.count(), 1);
    QVERIFY(window.menu->isVisible());
    window.menu->closeMenu();
    QTRY_COMPARE(ended.count(), 2);
    QVERIFY(window.menu->isHidden());
}

void tst_SideMenu::resizedWhileOpen()
{
    OPEN_WINDOW(window);
    const int width = window.panel->width();
    window.menu->resize(500, 700);
    QCOMPARE(window.panel->geometry(), QRect(0, 0, width, 700));
}

void tst_SideMenu::resizedWhileSliding()
{
    Window window;
    window.show();
    const int width = window.panel->width();
    window.menu->openMenu();
    window.slide->setCurrentTime(30);
    window.menu->resize(500, 700);
    QTRY_VERIFY(!window.sliding());
    QCOMPARE(window.panel->geometry(), QRect(0, 0, width, 700));

    window.menu->closeMenu();
    window.slide->setCurrentTime(30);
    window.menu->resize(360, 300);
    QTRY_VERIFY(window.menu->isHidden());
    QCOMPARE(window.panel->geometry(), QRect(-width, 0, width, 300));
}

void tst_SideMenu::resizedWhileHidden()
{
    Window window;
    window.show();
    window.menu->openMenu();
    window.menu->closeMenu();
    QTRY_VERIFY(window.menu->isHidden());
    const int width = window.panel->width();
    window.resize(250, 300);
    window.menu->openMenu();
    QCOMPARE(window.menu->size(), QSize(250, 300));
    QCOMPARE(window.slide->endValue().toRect(), QRect(0, 0, std::min(width, 250 - 40), 300));
}

void tst_SideMenu::retranslatedWhileSliding()
{
    Window window;
    window.show();
    window.menu->openMenu();
    QTranslator catalogue;
    QVERIFY(catalogue.load(QStringLiteral(":/i18n/ixovpn_ru.qm")));
    QCoreApplication::installTranslator(&catalogue);
    window.menu->retranslate();
    const int width = std::max(170, widestRow(window.rows));
    QTRY_VERIFY(!window.sliding());
    QCOMPARE(window.panel->geometry(), QRect(0, 0, width, windowSize.height()));
    QCoreApplication::removeTranslator(&catalogue);
}

void tst_SideMenu::parentHiddenWhileSliding_data()
{
    QTest::addColumn<bool>("opening");
    QTest::newRow("opening") << true;
    QTest::newRow("closing") << false;
}

void tst_SideMenu::parentHiddenWhileSliding()
{
    QFETCH(bool, opening);
    OPEN_WINDOW(window);
    window.menu->closeMenu();
    if (opening) {
        window.menu->openMenu();
    }
    window.slide->setCurrentTime(50);
    window.hide();
    QTRY_VERIFY(!window.sliding());
    window.show();
    QCOMPARE(window.menu->isVisible(), opening);
    QCOMPARE(window.panel->geometry(), opening ? window.openRect() : window.closedRect());
}

void tst_SideMenu::deletedWhileSliding()
{
    auto window = std::make_unique<Window>();
    window->show();
    window->menu->openMenu();
    window->menu->closeMenu();
    QPointer<QPropertyAnimation> slide{window->slide};
    window.reset();
    QVERIFY(slide.isNull());
}

void tst_SideMenu::rowsReport_data()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < 4; ++i) {
        QTest::newRow(sources[i]) << i;
    }
}

void tst_SideMenu::rowsReport()
{
    QFETCH(int, row);
    OPEN_WINDOW(window);
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (const Request request : requests) {
        spies.push_back(std::make_unique<QSignalSpy>(window.menu, request));
    }
    QTest::mouseClick(window.rows.at(row), Qt::LeftButton);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(spies[static_cast<std::size_t>(i)]->count(), i == row ? 1 : 0);
    }
    QTRY_VERIFY(window.menu->isHidden());
}

void tst_SideMenu::closesBeforeItReports()
{
    OPEN_WINDOW(window);
    bool closing = false;
    connect(window.menu, &SideMenu::supportRequested, this, [&] {
        closing = window.sliding() && window.menu->isVisible() &&
                  window.slide->endValue().toRect() == window.closedRect();
    });
    QTest::mouseClick(window.rows.at(2), Qt::LeftButton);
    QVERIFY(closing);
}

void tst_SideMenu::rowChosenTwice()
{
    OPEN_WINDOW(window);
    const QSignalSpy reported{window.menu, &SideMenu::settingsRequested};
    const QSignalSpy ended{window.slide, &QPropertyAnimation::finished};
    QTest::mouseClick(window.rows.at(0), Qt::LeftButton);
    window.slide->setCurrentTime(20);
    QTest::mouseClick(window.rows.at(0), Qt::LeftButton);
    QCOMPARE(reported.count(), 2);
    QTRY_COMPARE(ended.count(), 1);
    QVERIFY(window.menu->isHidden());
}

void tst_SideMenu::pressOutsideCloses_data()
{
    QTest::addColumn<QPoint>("fromPanel");
    QTest::addColumn<bool>("left");
    QTest::newRow("beside the panel") << QPoint{0, 100} << true;
    QTest::newRow("top corner") << QPoint{100, 0} << true;
    QTest::newRow("bottom") << QPoint{50, windowSize.height() - 1} << true;
    QTest::newRow("right button") << QPoint{50, 100} << false;
}

void tst_SideMenu::pressOutsideCloses()
{
    QFETCH(QPoint, fromPanel);
    QFETCH(bool, left);
    OPEN_WINDOW(window);
    const QPoint position{window.panel->width() + fromPanel.x(), fromPanel.y()};
    QTest::mousePress(window.menu, left ? Qt::LeftButton : Qt::RightButton, {}, position);
    QVERIFY(window.sliding());
    QTRY_VERIFY(window.menu->isHidden());
}

void tst_SideMenu::pressInsideDoesNot_data()
{
    QTest::addColumn<QPoint>("fromRight");
    QTest::newRow("above the rows") << QPoint{100, 5};
    QTest::newRow("between the rows") << QPoint{100, 300};
    QTest::newRow("below the rows") << QPoint{100, windowSize.height() - 5};
    QTest::newRow("last column") << QPoint{1, 300};
}

void tst_SideMenu::pressInsideDoesNot()
{
    QFETCH(QPoint, fromRight);
    OPEN_WINDOW(window);
    const QPoint position{window.panel->width() - fromRight.x(), fromRight.y()};
    QCOMPARE(window.menu->childAt(position), window.panel);
    QTest::mouseClick(window.panel, Qt::LeftButton, {}, position);
    QTest::mouseClick(window.menu, Qt::LeftButton, {}, position);
    QVERIFY(!window.sliding());
    QVERIFY(window.menu->isVisible());
}

void tst_SideMenu::takesFocus()
{
    Window window;
    window.setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.setFocus();
    window.menu->openMenu();
    QCOMPARE(window.focusWidget(), window.menu);
}

void tst_SideMenu::noKeyCloses_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("Space") << Qt::Key_Space;
    QTest::newRow("Left") << Qt::Key_Left;
    QTest::newRow("Tab") << Qt::Key_Tab;
    QTest::newRow("Backtab") << Qt::Key_Backtab;
    QTest::newRow("Menu") << Qt::Key_Menu;
    QTest::newRow("Back") << Qt::Key_Back;
    QTest::newRow("letter") << Qt::Key_E;
}

void tst_SideMenu::noKeyCloses()
{
    QFETCH(Qt::Key, key);
    OPEN_WINDOW(window);
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (const Request request : requests) {
        spies.push_back(std::make_unique<QSignalSpy>(window.menu, request));
    }
    QPushButton covered{&window};
    covered.show();
    QTest::keyClick(window.menu, key);
    QCOMPARE(window.focusWidget(), window.menu);
    QVERIFY(!window.sliding());
    QVERIFY(window.menu->isVisible());
    for (const auto &spy : spies) {
        QCOMPARE(spy->count(), 0);
    }
}

void tst_SideMenu::overlay()
{
    OPEN_WINDOW(window);
    const QImage image = window.grab().toImage();
    const QColor dimmed{255 - 110, 255 - 110, 255 - 110};
    const int edge = window.panel->width();
    for (const QPoint &point : {QPoint{edge, 0}, QPoint{edge, 559}, QPoint{359, 0},
                                QPoint{359, 559}, QPoint{edge + 20, 280}}) {
        QCOMPARE(image.pixelColor(point), dimmed);
    }
    for (const QPoint &point : {QPoint{0, 0}, QPoint{edge - 1, 0}, QPoint{0, 559},
                                QPoint{edge - 1, 559}, QPoint{edge - 1, 280}}) {
        QCOMPARE(image.pixelColor(point), panelColour);
    }
}

void tst_SideMenu::overlayIgnoresStyleSheets()
{
    Window window;
    window.setStyleSheet(QStringLiteral("ui--SideMenu { background: #ff0000; }"));
    window.openWholly();
    QCOMPARE(window.grab().toImage().pixelColor(350, 300), QColor(145, 145, 145));
}

QTEST_MAIN(tst_SideMenu)

#include "tst_sidemenu.moc"
