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
#include <QPushButton>
#include <QSettings>
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

} // namespace

class tst_MainWindowPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void menuButtonOpensTheMenu();
    void enterOpensTheMenu();
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
