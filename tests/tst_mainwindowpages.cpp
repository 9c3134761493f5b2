#include "tests/support/WindowBench.h"

#include "ui/ReferralDialog.h"
#include "ui/SettingsDialog.h"
#include "ui/SideMenu.h"
#include "ui/SupportDialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QLocale>
#include <QPointer>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using support::WindowBench;

namespace {

/// Runs `act` in the referral dialog that the call after this one opens, and closes the dialog.
template <typename Act> void inReferralDialog(const WindowBench &bench, Act act)
{
    QTimer::singleShot(0, bench.window.get(), [act] {
        auto *const dialog = qobject_cast<ui::ReferralDialog *>(QApplication::activeModalWidget());
        if (dialog == nullptr) {
            qFatal("No referral dialog");
        }
        act(*dialog);
        dialog->reject();
    });
}

void saveCode(const ui::ReferralDialog &dialog, const QString &code)
{
    dialog.findChild<QLineEdit *>()->setText(code);
    const auto buttons = dialog.findChild<QDialogButtonBox *>()->buttons();
    for (QAbstractButton *const button : buttons) {
        if (button->text() == QStringLiteral("Save")) {
            button->click();
        }
    }
}

constexpr QPoint menuButtonPlace{48, 34};
constexpr QPoint backButtonPlace{36, 34};

/// Through the window: who gets the second half is for Qt to find.
void doubleClick(const WindowBench &bench, const QPoint &place)
{
    QTest::mouseDClick(bench.window->windowHandle(), Qt::LeftButton, {}, place);
}

} // namespace

class tst_MainWindowPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void menuButtonOpensTheMenu();
    void enterOpensTheMenu();
    void doubleClickOpensOnlyTheMenu_data();
    void doubleClickOpensOnlyTheMenu();
    void doubleClickOnARow();
    void doubleClickOnTheBackButton();
    void clickAfterADoubleClick();
    void doubleClickOnTheSwitch();
    void heldEnterGoesBackOnce();
    void settingsPageCoversTheScreen_data();
    void settingsPageCoversTheScreen();
    void supportPageCoversTheScreen();
    void pageOverPage();
    void referralDialogIsModalAndNew();
    void savedCodeIsForwarded();
    void savedCodeWaitsForTheConnection();
    void invalidCodeIsNotForwarded();

    void closesWithoutTray();
    void exitEndsTheProgram();
};

void tst_MainWindowPages::init()
{
    WindowBench::resetWorld();
}

void tst_MainWindowPages::menuButtonOpensTheMenu()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    QTest::mouseClick(bench.menuButton(), Qt::LeftButton);
    QVERIFY(bench.sideMenu()->isVisible());
    QCOMPARE(bench.sideMenu()->geometry(), bench.window->centralWidget()->rect());
    QWidget *const top = bench.window->centralWidget()->childAt(180, 280);
    QVERIFY(top == bench.sideMenu() || bench.sideMenu()->isAncestorOf(top));
}

void tst_MainWindowPages::enterOpensTheMenu()
{
    const WindowBench bench;
    QVERIFY(QTest::qWaitForWindowActive(bench.window.get()));
    bench.menuButton()->setFocus();
    QTest::keyClick(bench.window->windowHandle(), Qt::Key_Return);
    QVERIFY(bench.sideMenu()->isVisible());
}

void tst_MainWindowPages::doubleClickOpensOnlyTheMenu_data()
{
    QTest::addColumn<int>("slid");
    QTest::newRow("before a row is there") << 0;
    QTest::newRow("when a row is there") << 180;
}

void tst_MainWindowPages::doubleClickOpensOnlyTheMenu()
{
    QFETCH(int, slid);
    const WindowBench bench{WindowBench::Service::IsAway};
    auto *const slide = bench.sideMenu()->findChild<QPropertyAnimation *>();
    connect(bench.menuButton(), &QToolButton::clicked, slide,
            [slide, slid] { slide->setCurrentTime(slid); });
    const QSignalSpy requests{bench.sideMenu(), &ui::SideMenu::settingsRequested};
    doubleClick(bench, menuButtonPlace);
    QCOMPARE(requests.size(), 0);
    QTRY_COMPARE(slide->state(), QAbstractAnimation::Stopped);
    QVERIFY(bench.sideMenu()->isVisible());
}

void tst_MainWindowPages::doubleClickOnARow()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    bench.sideMenu()->openMenu();
    bench.sideMenu()->findChild<QPropertyAnimation *>()->setCurrentTime(180);
    // The page's back button appears there.
    doubleClick(bench, backButtonPlace);
    QVERIFY(bench.settingsPage()->isVisible());
}

void tst_MainWindowPages::doubleClickOnTheBackButton()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    Q_EMIT bench.sideMenu()->settingsRequested();
    doubleClick(bench, backButtonPlace);
    QVERIFY(!bench.settingsPage()->isVisible());
    QVERIFY(!bench.sideMenu()->isVisible());
}

void tst_MainWindowPages::clickAfterADoubleClick()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    Q_EMIT bench.sideMenu()->settingsRequested();
    doubleClick(bench, backButtonPlace);
    QTest::mouseClick(bench.window->windowHandle(), Qt::LeftButton, {}, backButtonPlace);
    QVERIFY(bench.sideMenu()->isVisible());
}

void tst_MainWindowPages::doubleClickOnTheSwitch()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const QSignalSpy presses{bench.toggle(), &ui::ToggleSwitch::toggled};
    doubleClick(bench, bench.toggle()->geometry().center());
    QCOMPARE(presses.size(), 2);
}

void tst_MainWindowPages::heldEnterGoesBackOnce()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    QVERIFY(QTest::qWaitForWindowActive(bench.window.get()));
    Q_EMIT bench.sideMenu()->settingsRequested();
    for (const bool repeated : {false, true}) {
        QTest::simulateEvent(bench.window->windowHandle(), true, Qt::Key_Return, Qt::NoModifier,
                             QStringLiteral("\r"), repeated);
    }
    QVERIFY(!bench.settingsPage()->isVisible());
    QVERIFY(!bench.sideMenu()->isVisible());
}

void tst_MainWindowPages::settingsPageCoversTheScreen_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("selected");

    QTest::newRow("locale's language") << QString{} << QStringLiteral("de");
    QTest::newRow("stored language") << QStringLiteral("br") << QStringLiteral("br");
    QTest::newRow("stored language without a catalogue")
        << QStringLiteral("xx") << QStringLiteral("en");
}

void tst_MainWindowPages::settingsPageCoversTheScreen()
{
    QFETCH(QString, stored);

    QLocale::setDefault(QLocale{QLocale::German, QLocale::Germany});
    QSettings{}.setValue(QStringLiteral("language"), stored);
    const WindowBench bench{WindowBench::Service::IsAway};
    const ui::SettingsDialog *const page = bench.settingsPage();
    Q_EMIT bench.sideMenu()->settingsRequested();
    QVERIFY(page->isVisible());
    QCOMPARE(page->geometry(), bench.window->centralWidget()->rect());
    for (const QPoint point : {QPoint{1, 1}, QPoint{180, 280}, QPoint{358, 558}}) {
        const QWidget *const top = bench.window->centralWidget()->childAt(point);
        QVERIFY(top == page || page->isAncestorOf(top));
    }
    QTEST(page->findChild<QComboBox *>()->currentData().toString(), "selected");

    QTest::mouseClick(page->findChild<QToolButton *>(QStringLiteral("back")), Qt::LeftButton);
    QVERIFY(!page->isVisible());
    QVERIFY(bench.window->isVisible());
}

void tst_MainWindowPages::supportPageCoversTheScreen()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const auto *const page = bench.window->findChild<ui::SupportDialog *>();
    for (int opening = 0; opening < 2; ++opening) {
        Q_EMIT bench.sideMenu()->supportRequested();
        QVERIFY(page->isVisible());
        QCOMPARE(page->geometry(), bench.window->centralWidget()->rect());
        const QWidget *const top = bench.window->centralWidget()->childAt(1, 1);
        QVERIFY(top == page || page->isAncestorOf(top));
        QTest::mouseClick(page->findChild<QToolButton *>(QStringLiteral("back")), Qt::LeftButton);
        QVERIFY(!page->isVisible());
    }
}

void tst_MainWindowPages::pageOverPage()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    auto *const support = bench.window->findChild<ui::SupportDialog *>();
    const QWidget *const central = bench.window->centralWidget();
    Q_EMIT bench.sideMenu()->supportRequested();
    Q_EMIT bench.sideMenu()->settingsRequested();
    QVERIFY(support->isVisible());
    QVERIFY(bench.settingsPage()->isVisible());
    QCOMPARE(central->childAt(1, 1), bench.settingsPage());
    Q_EMIT bench.sideMenu()->supportRequested();
    QCOMPARE(central->childAt(1, 1), support);
    Q_EMIT support->closeRequested();
    QCOMPARE(central->childAt(1, 1), bench.settingsPage());
    Q_EMIT bench.settingsPage()->closeRequested();
    QVERIFY(!bench.settingsPage()->isVisible());
    QVERIFY(!support->isVisible());
}

void tst_MainWindowPages::referralDialogIsModalAndNew()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    for (int opening = 0; opening < 2; ++opening) {
        QPointer<QWidget> opened;
        QString entry;
        inReferralDialog(bench, [&](ui::ReferralDialog &dialog) {
            opened = &dialog;
            entry = dialog.findChild<QLineEdit *>()->text();
            QCOMPARE(dialog.parentWidget(), bench.window.get());
            QVERIFY(dialog.isVisible());
            dialog.findChild<QLineEdit *>()->setText(QStringLiteral("typed"));
        });
        Q_EMIT bench.sideMenu()->referralRequested();
        QVERIFY(entry.isEmpty());
        QVERIFY(opened.isNull());
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }
}

void tst_MainWindowPages::savedCodeIsForwarded()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    inReferralDialog(bench, [](const ui::ReferralDialog &dialog) {
        saveCode(dialog, QStringLiteral("ab12CD"));
    });
    Q_EMIT bench.sideMenu()->referralRequested();
    QCOMPARE(bench.sent(), QList<QByteArray>{R"({"cmd":"set-referral","code":"ab12CD"})"});
}

void tst_MainWindowPages::savedCodeWaitsForTheConnection()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.loseLink());
    const QStringList before = bench.shown();
    inReferralDialog(bench, [](const ui::ReferralDialog &dialog) {
        saveCode(dialog, QStringLiteral("ab12CD"));
    });
    Q_EMIT bench.sideMenu()->referralRequested();
    QCOMPARE(bench.shown(), before);

    bench.service.listen();
    QVERIFY(support::waitFor([&] { return bench.service.lines().size() == 3; }));
    QCOMPARE(bench.service.received(),
             QByteArrayLiteral("{\"cmd\":\"set-lang\",\"lang\":\"en\"}\n"
                               "{\"cmd\":\"set-referral\",\"code\":\"ab12CD\"}\n"
                               "{\"cmd\":\"status\"}\n"));
    QVERIFY(bench.greeted());
    QVERIFY(bench.sent().isEmpty());
}

void tst_MainWindowPages::invalidCodeIsNotForwarded()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    inReferralDialog(bench, [](const ui::ReferralDialog &dialog) {
        saveCode(dialog, QStringLiteral("ABC-12"));
    });
    Q_EMIT bench.sideMenu()->referralRequested();
    QVERIFY(bench.sent().isEmpty());
}

void tst_MainWindowPages::closesWithoutTray()
{
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        QSKIP("This desktop has a tray");
    }
    const WindowBench bench{WindowBench::Service::IsAway};
    QVERIFY(bench.window->isVisible());
    QVERIFY(bench.window->close());
    QVERIFY(!bench.window->isVisible());

    QCloseEvent event;
    QCoreApplication::sendEvent(bench.window.get(), &event);
    QVERIFY(event.isAccepted());
}

void tst_MainWindowPages::exitEndsTheProgram()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    bool reached = false;
    QTimer::singleShot(0, bench.window.get(), [&] {
        reached = true;
        Q_EMIT bench.sideMenu()->exitRequested();
    });
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(reached);
    QVERIFY(bench.window->close());
}

QTEST_MAIN(tst_MainWindowPages)

#include "tst_mainwindowpages.moc"
