#include "tests/support/Client.h"
#include "tests/support/ClientSession.h"
#include "tests/support/Contents.h"
#include "tests/support/SessionManager.h"
#include "tests/support/TrayHost.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>

#include <memory>

using support::clientProgram;
using support::ClientSession;
using support::clientTitle;
using support::SessionManager;
using support::TrayHost;
using support::waitFor;

namespace {

/// How a session starts a program.
enum class Start { Restored, Autostarted };

/// A tray on the session bus that never answers.
class HangingTray : public QDBusVirtualObject
{
public:
    explicit HangingTray(const QProcessEnvironment &environment)
        : connection(QDBusConnection::connectToBus(
              environment.value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")), name()))
    {
        connection.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), this);
        connection.registerService(name());
    }
    ~HangingTray() override { QDBusConnection::disconnectFromBus(name()); }

    int questions() const { return asked; }

    QString introspect(const QString & /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection & /*bus*/) override
    {
        ++asked;
        message.setDelayedReply(true);
        return true;
    }

private:
    static QString name() { return QStringLiteral("org.kde.StatusNotifierWatcher"); }

    QDBusConnection connection;
    int asked = 0;
};

} // namespace

Q_DECLARE_METATYPE(Start)

/// The real program in a desktop session that changes around it: one that begins, trays that go and
/// come back, and the user who logs out.
class tst_DesktopSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sessionStartGetsAnIcon_data();
    void sessionStartGetsAnIcon();
    void sessionStartWithoutTray();
    void sessionStartNearTray();
    void sessionStartWithTrayThatHangs();
    void ordinaryStartDoesNotWait();
    void logOutWhileItWaits();
    void embeddingTrayRestarted();
    void busTrayRestarted();
    void trayGoneForGood();
    void logOut_data();
    void logOut();

private:
    /// Starts the program as a session does, and waits until it waits for a tray.
    static bool startWaiting(ClientSession &session, Start start = Start::Restored);
    static bool hides(ClientSession &session);
    static bool hidesIn(const TrayHost &host, ClientSession &session);
    static bool comesBackByIcon(ClientSession &session);
};

bool tst_DesktopSession::startWaiting(ClientSession &session, Start start)
{
    if (start == Start::Autostarted) {
        session.setVariable(QStringLiteral("DESKTOP_AUTOSTART_ID"), QStringLiteral("any"));
    }
    // Its patience lasts longer than any of this.
    session.setPace(0.1);
    session.client = session.start(
        clientProgram(), start == Start::Restored
                             ? QStringList{QStringLiteral("-session"), QStringLiteral("any")}
                             : QStringList{});
    session.setVariable(QStringLiteral("LD_PRELOAD"), {});
    // It hears of later starts from then on.
    return waitFor(
        [] { return support::contents(QStringLiteral("/proc/net/unix")).contains("/show\n"); });
}

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
    return waitFor([&session] {
        // A tray that has just taken the icon in may still move it away from the click.
        const QPoint icon = support::orange(session.screenshot());
        if (!icon.isNull()) {
            session.click(icon);
        }
        return session.visibleWindows(clientTitle()).size() == 1;
    });
}

void tst_DesktopSession::sessionStartGetsAnIcon_data()
{
    QTest::addColumn<Start>("start");
    QTest::addColumn<bool>("onBus");
    QTest::newRow("restored, embedding tray") << Start::Restored << false;
    QTest::newRow("restored, tray on the bus") << Start::Restored << true;
    QTest::newRow("autostarted, embedding tray") << Start::Autostarted << false;
}

// Sessions start programs before the tray is up.
void tst_DesktopSession::sessionStartGetsAnIcon()
{
    QFETCH(const Start, start);
    QFETCH(const bool, onBus);
    ClientSession session;
    session.startSessionBus();
    QVERIFY(startWaiting(session, start));
    // Nor does a second start hurry it: the icon would be lost.
    QCOMPARE(session.run(clientProgram()).exitCode, 0);
    QVERIFY(session.windows(clientTitle()).isEmpty());

    std::unique_ptr<TrayHost> host;
    if (onBus) {
        host = std::make_unique<TrayHost>(session.environment());
    } else {
        QVERIFY(session.startTrayer());
    }
    QVERIFY(waitFor([&] { return session.visibleWindows(clientTitle()).size() == 1; }));
    session.window = session.visibleWindows(clientTitle()).first();
    if (onBus) {
        QVERIFY(waitFor([&] { return host->items().size() == 1; }));
    }
    QVERIFY(hides(session));
    QVERIFY(onBus || comesBackByIcon(session));
}

void tst_DesktopSession::sessionStartWithoutTray()
{
    ClientSession session;
    session.hurry();
    session.client =
        session.start(clientProgram(), {QStringLiteral("-session"), QStringLiteral("any")});
    QVERIFY(waitFor([&] { return session.visibleWindows(clientTitle()).size() == 1; }));
    session.close(session.visibleWindows(clientTitle()).first());
    QVERIFY(waitFor([&] { return session.client->state() == QProcess::NotRunning; }));
    QCOMPARE(session.client->exitCode(), 0);
}

void tst_DesktopSession::sessionStartNearTray()
{
    ClientSession session;
    QVERIFY(session.startTrayer());
    session.setPace(0.001);
    session.client =
        session.start(clientProgram(), {QStringLiteral("-session"), QStringLiteral("any")});
    QVERIFY(waitFor([&] { return session.visibleWindows(clientTitle()).size() == 1; }));
}

void tst_DesktopSession::sessionStartWithTrayThatHangs()
{
    ClientSession session;
    session.startSessionBus();
    const HangingTray tray{session.environment()};
    QVERIFY(startWaiting(session));
    QVERIFY(waitFor([&tray] { return tray.questions() > 2; }));
}

void tst_DesktopSession::ordinaryStartDoesNotWait()
{
    ClientSession session;
    session.setPace(0.001);
    QVERIFY(session.startClient());
}

void tst_DesktopSession::logOutWhileItWaits()
{
    SessionManager manager;
    ClientSession session;
    session.setVariable(QStringLiteral("SESSION_MANAGER"), manager.address());
    QVERIFY(startWaiting(session));
    QVERIFY(waitFor([&] { return manager.members() == 1; }));
    manager.logOut();
    QVERIFY(waitFor([&] { return session.client->state() == QProcess::NotRunning; }));
    QCOMPARE(session.client->exitStatus(), QProcess::NormalExit);
    QCOMPARE(session.client->exitCode(), 0);
    QCOMPARE(session.client->readAllStandardError(), QByteArray{});
}

void tst_DesktopSession::embeddingTrayRestarted()
{
    ClientSession session;
    QProcess *const trayer = session.startTrayer();
    QVERIFY(session.startClient());
    QVERIFY(hides(session));

    session.stop(trayer);
    QVERIFY(session.startTrayer());
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
        QVERIFY(session.startTrayer());
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
