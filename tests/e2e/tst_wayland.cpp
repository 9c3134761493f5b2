#include "tests/support/Client.h"
#include "tests/support/Contents.h"
#include "tests/support/ScriptedService.h"
#include "tests/support/Sway.h"
#include "tests/support/TrayHost.h"

#include <QTest>

#include <memory>

using support::clientProgram;
using support::clientTitle;
using support::Sway;
using support::TrayHost;
using support::waitFor;

/// The real program on a Wayland desktop, as a native program and as an X11 one.
class tst_Wayland : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();

    void windowIsShownWhole();
    void onlyX11ProgramsFollowXftDpi();
    void closeWithoutTray();
    void hiddenWindowComesBack();
    void secondStartBringsTheWindowToTheFront();
    void secondStartKeepsADialogOpen();

private:
    /// Starts the program.
    static QProcess *launchClient(Sway &sway, const QStringList &arguments = {});
    /// Starts the program and waits for its window.
    static QProcess *startClient(Sway &sway);
};

void tst_Wayland::initTestCase_data()
{
    QTest::addColumn<QString>("platform");
    QTest::addColumn<QString>("shell");
    QTest::newRow("Wayland") << QStringLiteral("wayland") << QStringLiteral("xdg_shell");
    QTest::newRow("X11") << QStringLiteral("xcb") << QStringLiteral("xwayland");
}

void tst_Wayland::init()
{
    if (!Sway::isPossible()) {
        QSKIP("sway refuses to run as root, and no user namespace can be had");
    }
}

QProcess *tst_Wayland::launchClient(Sway &sway, const QStringList &arguments)
{
    QFETCH_GLOBAL(QString, platform);
    sway.programs.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    return sway.programs.start(clientProgram(), arguments);
}

QProcess *tst_Wayland::startClient(Sway &sway)
{
    QProcess *const process = launchClient(sway);
    waitFor([&sway] { return sway.windows(clientTitle()).size() == 1; });
    return process;
}

void tst_Wayland::windowIsShownWhole()
{
    QFETCH_GLOBAL(QString, shell);
    Sway sway;
    startClient(sway);
    QVERIFY(waitFor([&] { return sway.windows(clientTitle()).value(0).size == QSize(360, 560); }));
    const Sway::Window window = sway.windows(clientTitle()).value(0);
    QCOMPARE(window.shell, shell);
    QVERIFY(window.visible);
    QVERIFY(window.focused);
}

// Native programs are enlarged by the compositor, and would be twice.
void tst_Wayland::onlyX11ProgramsFollowXftDpi()
{
    QFETCH_GLOBAL(QString, platform);
    Sway sway;
    QCOMPARE(
        sway.programs
            .run(QStringLiteral("sh"),
                 {QStringLiteral("-c"), QStringLiteral("echo Xft.dpi: 144 | xrdb -nocpp -merge")})
            .exitCode,
        0);
    startClient(sway);
    const QSize expected = platform == QLatin1String{"xcb"} ? QSize{540, 840} : QSize{360, 560};
    QVERIFY(waitFor([&] { return sway.windows(clientTitle()).value(0).size == expected; }));
}

void tst_Wayland::closeWithoutTray()
{
    Sway sway;
    const QProcess *const process = startClient(sway);
    sway.close(sway.windows(clientTitle()).value(0));
    QVERIFY(waitFor([process] { return process->state() == QProcess::NotRunning; }));
    QCOMPARE(process->exitStatus(), QProcess::NormalExit);
    QCOMPARE(process->exitCode(), 0);
}

// The session starts the client before the tray.
void tst_Wayland::hiddenWindowComesBack()
{
    Sway sway;
    // Its patience lasts longer than any of this.
    sway.programs.setPace(0.1);
    const QProcess *const process =
        launchClient(sway, {QStringLiteral("-session"), QStringLiteral("any")});
    QVERIFY(waitFor(
        [] { return support::contents(QStringLiteral("/proc/net/unix")).contains("/show\n"); }));
    // Nor does a second start hurry it.
    QCOMPARE(sway.programs.run(clientProgram()).exitCode, 0);
    QVERIFY(sway.windows(clientTitle()).isEmpty());
    const TrayHost host{sway.programs.environment};
    QVERIFY(waitFor([&host] { return host.items().size() == 1; }));
    const auto hides = [&] {
        sway.close(sway.windows(clientTitle()).value(0));
        return waitFor([&] { return sway.windows(clientTitle()).isEmpty(); }) &&
               process->state() == QProcess::Running;
    };
    const auto isShown = [&] {
        return waitFor([&] {
            const Sway::Window window = sway.windows(clientTitle()).value(0);
            return window.focused && window.size == QSize(360, 560);
        });
    };
    QVERIFY(isShown());
    QVERIFY(hides());
    host.click(host.items().first());
    QVERIFY(isShown());
    QVERIFY(hides());
    QCOMPARE(sway.programs.run(clientProgram()).exitCode, 0);
    QVERIFY(isShown());
}

void tst_Wayland::secondStartBringsTheWindowToTheFront()
{
    Sway sway;
    startClient(sway);
    sway.programs.start(QStringLiteral("xev"));
    const QString other = QStringLiteral("Event Tester");
    QVERIFY(waitFor([&] { return sway.windows(other).size() == 1; }));
    sway.focus(sway.windows(other).first());
    QVERIFY(waitFor([&] { return !sway.windows(clientTitle()).value(0).focused; }));

    // The client may still believe that it has the focus, and then does nothing.
    QVERIFY(waitFor([&] {
        const int exitCode = sway.programs.run(clientProgram()).exitCode;
        const QList<Sway::Window> windows = sway.windows(clientTitle());
        return exitCode == 0 && windows.size() == 1 && windows.first().focused;
    }));
}

void tst_Wayland::secondStartKeepsADialogOpen()
{
    support::ScriptedService service;
    service.listen();
    Sway sway;
    startClient(sway);
    QVERIFY(waitFor([&service] { return service.connected() == 1; }));
    service.sendLine("notice: one");
    const QString notice = QStringLiteral("Notice");
    QVERIFY(waitFor([&] { return sway.windows(notice).size() == 1; }));
    const int before = sway.windows(notice).first().id;
    sway.focus(sway.windows(clientTitle()).first());

    QCOMPARE(sway.programs.run(clientProgram()).exitCode, 0);
    // The client handles the second start before these lines.
    service.sendLine("status: running");
    service.sendLine("notice: two");
    QVERIFY(waitFor([&] { return sway.windows(clientTitle()).size() == 1; }));
    QCOMPARE(sway.windows(notice).size(), 1);
    QCOMPARE(sway.windows(notice).first().id, before);
}

QTEST_GUILESS_MAIN(tst_Wayland)

#include "tst_wayland.moc"
