#include "tests/support/Client.h"
#include "tests/support/ClientSession.h"
#include "tests/support/SessionManager.h"
#include "tests/support/TrayHost.h"

#include <QTest>

#include <memory>

using support::clientProgram;
using support::ClientSession;
using support::clientTitle;
using support::SessionManager;
using support::TrayHost;
using support::waitFor;

/// The real program in a desktop session that changes around it: trays that go and come back, and
/// the user who logs out.
class tst_DesktopSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void embeddingTrayRestarted();
    void busTrayRestarted();
    void trayGoneForGood();
    void logOut_data();
    void logOut();

private:
    static bool hides(ClientSession &session);
    static bool hidesIn(const TrayHost &host, ClientSession &session);
    static bool comesBackByIcon(ClientSession &session);
    /// Waits until the tray accepts icons.
    static QProcess *startTrayer(ClientSession &session);
};

bool tst_DesktopSession::hides(ClientSession &session)
{
    session.close(session.window);
    return waitFor([&] { return session.visibleWindows(clientTitle()).isEmpty(); }) &&
           session.client->state() == QProcess::Running;
}

// Starts a client and hides its window.
bool tst_DesktopSession::hidesIn(const TrayHost &host, ClientSession &session)
{
    return session.startClient() && waitFor([&host] { return host.items().size() == 1; }) &&
           hides(session);
}

bool tst_DesktopSession::comesBackByIcon(ClientSession &session)
{
    QPoint icon;
    const bool found = waitFor([&] {
        icon = support::orange(session.screenshot());
        return !icon.isNull();
    });
    if (found) {
        session.click(icon);
    }
    return found && waitFor([&] { return session.visibleWindows(clientTitle()).size() == 1; });
}

QProcess *tst_DesktopSession::startTrayer(ClientSession &session)
{
    QProcess *const trayer = session.start(QStringLiteral("trayer"));
    waitFor([&session] { return session.isSelectionOwned("_NET_SYSTEM_TRAY_S0"); });
    return trayer;
}

void tst_DesktopSession::embeddingTrayRestarted()
{
    ClientSession session;
    QProcess *const trayer = startTrayer(session);
    QVERIFY(session.startClient());
    QVERIFY(hides(session));

    session.stop(trayer);
    startTrayer(session);
    QVERIFY(comesBackByIcon(session));
    QVERIFY(hides(session));
}

void tst_DesktopSession::busTrayRestarted()
{
    ClientSession session;
    session.startSessionBus();
    auto host = std::make_unique<TrayHost>(session.environment());
    QVERIFY(hidesIn(*host, session));

    host.reset();
    host = std::make_unique<TrayHost>(session.environment());
    QVERIFY(waitFor([&] { return host->items().size() == 1; }));
    host->click(host->items().first());
    QVERIFY(waitFor([&] { return session.visibleWindows(clientTitle()).size() == 1; }));
    QVERIFY(hides(session));
}

// Without a tray only a second start could bring a hidden window back, so closing ends the client.
void tst_DesktopSession::trayGoneForGood()
{
    ClientSession session;
    session.startSessionBus();
    auto host = std::make_unique<TrayHost>(session.environment());
    QVERIFY(hidesIn(*host, session));
    host.reset();

    QCOMPARE(session.run(clientProgram()).exitCode, 0);
    QVERIFY(waitFor([&] { return session.visibleWindows(clientTitle()).size() == 1; }));
    session.close(session.visibleWindows(clientTitle()).first());
    QVERIFY(waitFor([&] { return session.client->state() == QProcess::NotRunning; }));
    QCOMPARE(session.client->exitStatus(), QProcess::NormalExit);
    QCOMPARE(session.client->exitCode(), 0);
}

void tst_DesktopSession::logOut_data()
{
    QTest::addColumn<bool>("tray");
    QTest::addColumn<bool>("hidden");
    QTest::newRow("window shown") << false << false;
    QTest::newRow("window shown, with a tray") << true << false;
    QTest::newRow("window hidden in the tray") << true << true;
}

// A window that hides when it is closed must not hold up the log-out.
void tst_DesktopSession::logOut()
{
    QFETCH(bool, tray);
    QFETCH(bool, hidden);
    SessionManager manager;
    ClientSession session;
    session.setVariable(QStringLiteral("SESSION_MANAGER"), manager.address());
    if (tray) {
        startTrayer(session);
    }
    QVERIFY(session.startClient());
    QVERIFY(waitFor([&] { return manager.members() == 1; }));
    if (tray) {
        QVERIFY(hides(session));
        QVERIFY(hidden || comesBackByIcon(session));
    }
    manager.logOut();
    QVERIFY(waitFor(
        [&] { return session.client->state() == QProcess::NotRunning || manager.isCancelled(); }));
    QVERIFY(!manager.isCancelled());
    QCOMPARE(session.client->exitStatus(), QProcess::NormalExit);
    QCOMPARE(session.client->exitCode(), 0);
    QCOMPARE(session.client->readAllStandardError(), QByteArray{});
}

QTEST_GUILESS_MAIN(tst_DesktopSession)

#include "tst_desktopsession.moc"
