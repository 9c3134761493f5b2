#include "tests/support/Client.h"
#include "tests/support/Contents.h"
#include "tests/support/Desktop.h"

#include <QDir>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <map>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using support::clientProgram;
using support::clientTitle;
using support::Desktop;
using support::Programs;
using support::waitFor;
using WindowManager = Desktop::WindowManager;

namespace {

constexpr int rounds = 5;
constexpr int startsPerRound = 20;
constexpr quint16 servicePort = 47652;

QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

std::unique_ptr<QProcess> startClient(const QProcessEnvironment &environment,
                                      const QStringList &arguments = {})
{
    auto process = std::make_unique<QProcess>();
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->setProcessEnvironment(environment);
    process->start(clientProgram(), arguments);
    if (!process->waitForStarted(-1)) {
        qFatal("%s cannot be started", qPrintable(clientProgram()));
    }
    return process;
}

bool isRunning(const QProcess &process)
{
    return process.state() == QProcess::Running;
}

// The folder of the lock and socket of the first client: no variable moves it.
QByteArray place()
{
    const QByteArray user = QByteArray::number(geteuid());
    const QByteArray login = "/run/user/" + user;
    return access(login.constData(), W_OK) == 0 ? login + "/ixovpn" : "/tmp/ixovpn-" + user;
}

// A socket for requests to the first start; -1 while it does not listen.
int connectToChannel()
{
    const int channel = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = place() + "/show";
    std::copy(path.begin(), path.end(), address.sun_path);
    if (connect(channel, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) {
        return channel;
    }
    close(channel);
    return -1;
}

void addWindowManagers()
{
    QTest::addColumn<WindowManager>("manager");
    QTest::newRow("openbox") << WindowManager::Openbox;
    QTest::newRow("metacity") << WindowManager::Metacity;
}

int exitCode(QProcess &process)
{
    if (!waitFor([&process] { return !isRunning(process); })) {
        process.kill();
        process.waitForFinished(-1);
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

} // namespace

Q_DECLARE_METATYPE(WindowManager)

/// What happens when the program is started although it runs already: real processes, with and
/// without a desktop.
class tst_SecondStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void manyStartsAtOnceLeaveOne();
    void startAfterKill();
    void startAfterOrderlyEnd();
    void firstStillStarting();
    void firstHangs();
    void environmentDoesNotMatter_data();
    void environmentDoesNotMatter();
    void noPlaceToHold();
    void noDisplay();
    void unreadableSettings_data();
    void unreadableSettings();
    void selfTestOptionAsLastArgumentSkipsTheCheck();
    void otherArgumentsDoNotSkipTheCheck_data();
    void otherArgumentsDoNotSkipTheCheck();

    void bringsBackAMinimisedWindow_data();
    void bringsBackAMinimisedWindow();
    void bringsBackAHiddenWindow_data();
    void bringsBackAHiddenWindow();
    void bringsTheWindowToTheFront_data();
    void bringsTheWindowToTheFront();
    void bringsTheDialogToTheFront_data();
    void bringsTheDialogToTheFront();
    void bringsTheWindowOnAnotherDisplayToTheFront();
    void tellsTheLauncherThatTheStartIsOver();
    void secondStartMakesNoWindow();

private:
    static bool takesTheService(QTcpServer &service);
    /// The first client, once it has connected; null if it does not.
    QProcess *startFirst(QTcpServer &service,
                         const QProcessEnvironment &environment = withoutDisplay());
    /// With SIGKILL.
    void kill(QProcess *first);
    /// A desktop without programs.
    Desktop &desktopOf(WindowManager manager);

    Programs programs;
    std::map<WindowManager, std::unique_ptr<Desktop>> desktops;
};

void tst_SecondStart::cleanup()
{
    programs.stopFrom(0);
    for (const auto &each : desktops) {
        each.second->stopAll();
    }
}

Desktop &tst_SecondStart::desktopOf(WindowManager manager)
{
    std::unique_ptr<Desktop> &desktop = desktops[manager];
    if (desktop == nullptr) {
        desktop = std::make_unique<Desktop>(manager);
    }
    return *desktop;
}

QProcess *tst_SecondStart::startFirst(QTcpServer &service, const QProcessEnvironment &environment)
{
    programs.environment = environment;
    QProcess *const first = programs.start(clientProgram());
    const bool connected = waitFor([&service] { return service.hasPendingConnections(); });
    return connected ? first : nullptr;
}

void tst_SecondStart::kill(QProcess *first)
{
    first->kill();
    first->waitForFinished(-1);
    programs.stop(first);
}

// Only a client with a window connects to the service.
bool tst_SecondStart::takesTheService(QTcpServer &service)
{
    return service.listen(QHostAddress::LocalHost, servicePort);
}

void tst_SecondStart::manyStartsAtOnceLeaveOne()
{
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::unique_ptr<QProcess>> starts;
        starts.reserve(startsPerRound);
        for (int i = 0; i < startsPerRound; ++i) {
            starts.push_back(startClient(withoutDisplay()));
        }
        const auto running = [&starts] {
            return std::count_if(starts.begin(), starts.end(),
                                 [](const auto &process) { return isRunning(*process); });
        };
        QVERIFY2(waitFor([&running] { return running() <= 1; }), "More than one stayed");
        QCOMPARE(running(), 1);
        for (const auto &process : starts) {
            if (!isRunning(*process)) {
                QCOMPARE(exitCode(*process), 0);
            }
        }
        for (const auto &process : starts) {
            process->kill();
            process->waitForFinished(-1);
        }
    }
}

void tst_SecondStart::startAfterKill()
{
    QTcpServer service;
    QVERIFY(takesTheService(service));
    for (int i = 0; i < 3; ++i) {
        QProcess *const first = startFirst(service);
        QVERIFY(first != nullptr);
        delete service.nextPendingConnection();
        QCOMPARE(exitCode(*startClient(withoutDisplay())), 0);
        QVERIFY(isRunning(*first));
        kill(first);
    }
}

void tst_SecondStart::startAfterOrderlyEnd()
{
    Desktop &desktop = desktopOf(WindowManager::Openbox);
    for (int i = 0; i < 3; ++i) {
        QProcess *const first = desktop.start(clientProgram());
        QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
        desktop.close(desktop.windows(clientTitle()).first());
        QVERIFY(waitFor([first] { return !isRunning(*first); }));
        QCOMPARE(exitCode(*first), 0);
    }
}

void tst_SecondStart::firstStillStarting()
{
    // Holds the lock without a socket, as a first client that is still starting.
    const QByteArray folder = place();
    mkdir(folder.constData(), 0700);
    const int held = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    QCOMPARE(flock(held, LOCK_EX | LOCK_NB), 0);

    QCOMPARE(exitCode(*startClient(withoutDisplay())), 0);
    close(held);
}

void tst_SecondStart::firstHangs()
{
    QTcpServer service;
    QVERIFY(takesTheService(service));
    QProcess *const first = startFirst(service);
    QVERIFY(first != nullptr);
    int channel = -1;
    QVERIFY(waitFor([&channel] { return (channel = connectToChannel()) >= 0; }));
    const auto hung = static_cast<pid_t>(first->processId());
    ::kill(hung, SIGSTOP);
    while (send(channel, "", 0, 0) == 0) {
    }
    QCOMPARE(errno, EAGAIN);
    close(channel);
    QCOMPARE(exitCode(*startClient(withoutDisplay())), 0);
    ::kill(hung, SIGCONT);
    QVERIFY(isRunning(*first));
}

void tst_SecondStart::environmentDoesNotMatter_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");

    QTest::newRow("other user name") << QStringLiteral("USER") << QStringLiteral("../../somebody");
    QTest::newRow("no runtime folder") << QStringLiteral("XDG_RUNTIME_DIR") << QString{};
    QTest::newRow("runtime folder that is not there")
        << QStringLiteral("XDG_RUNTIME_DIR") << QStringLiteral("/nowhere");
    QTest::newRow("long runtime folder")
        << QStringLiteral("XDG_RUNTIME_DIR")
        << QString{QLatin1String("/tmp/") + QString{200, QLatin1Char('r')}};
    QTest::newRow("other home") << QStringLiteral("HOME") << QStringLiteral("/nowhere/at/all");
    QTest::newRow("read-only home") << QStringLiteral("HOME") << QStringLiteral("/proc");
    QTest::newRow("other folder for temporary files")
        << QStringLiteral("TMPDIR") << QStringLiteral("/var");
}

void tst_SecondStart::environmentDoesNotMatter()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);
    QProcessEnvironment other = withoutDisplay();
    other.remove(variable);
    if (!value.isNull()) {
        other.insert(variable, value);
    }

    QTcpServer service;
    QVERIFY(takesTheService(service));
    for (const bool otherIsFirst : {true, false}) {
        QProcess *const first = startFirst(service, otherIsFirst ? other : withoutDisplay());
        QVERIFY(first != nullptr);
        delete service.nextPendingConnection();
        QCOMPARE(exitCode(*startClient(otherIsFirst ? withoutDisplay() : other)), 0);
        QVERIFY(isRunning(*first));
        kill(first);
    }
}

void tst_SecondStart::noPlaceToHold()
{
    if (!support::ownsItsWorld()) {
        QSKIP("Without file systems of its own it cannot take the place away");
    }
    QTcpServer service;
    QVERIFY(takesTheService(service));
    programs.environment = withoutDisplay();
    const QProcess *const client = programs.start(
        QStringLiteral("unshare"),
        {QStringLiteral("--mount"), QStringLiteral("sh"), QStringLiteral("-ec"),
         // What is mounted below /tmp must stay: perhaps the build folder with the program.
         QStringLiteral("mount -t tmpfs -o ro none /run; mount --rbind /tmp /tmp; "
                        "mount -o remount,bind,ro /tmp; ! mkdir /tmp/any 2>&-; exec \"$0\""),
         clientProgram()});
    QVERIFY(waitFor([&service] { return service.hasPendingConnections(); }));
    QVERIFY(isRunning(*client));
}

void tst_SecondStart::noDisplay()
{
    QProcess client;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    client.setProcessEnvironment(environment);
    client.start(clientProgram(), QStringList{});
    QVERIFY(client.waitForFinished(-1));
    QCOMPARE(client.exitStatus(), QProcess::NormalExit);
    QCOMPARE(client.exitCode(), 1);
    QVERIFY(client.readAllStandardError().contains("could not connect to display"));
}

void tst_SecondStart::unreadableSettings_data()
{
    QTest::addColumn<QString>("make");
    QTest::newRow("a folder in the file's place") << QStringLiteral("mkdir -p \"$1\"");
    QTest::newRow("rubbish") << QStringLiteral(
        "head -c 100000 /dev/urandom | tr -d '\\n' > \"$1\"");
    QTest::newRow("empty") << QStringLiteral(": > \"$1\"");
    QTest::newRow("a link to nowhere") << QStringLiteral("ln -s /nowhere/at/all \"$1\"");
}

void tst_SecondStart::unreadableSettings()
{
    QFETCH(QString, make);
    const QString script = QStringLiteral("mkdir -p \"$(dirname \"$1\")\" && rm -rf \"$1\" && ");
    const QString file = QDir::homePath() + QStringLiteral("/.config/IXOVPN/IxoClient.conf");
    QCOMPARE(QProcess::execute(QStringLiteral("sh"),
                               {QStringLiteral("-c"), script + make, QStringLiteral("sh"), file}),
             0);
    const QByteArray before = support::contents(file);
    QTcpServer service;
    QVERIFY(takesTheService(service));
    const QProcess *const client = startFirst(service);
    QVERIFY(client != nullptr);
    QTcpSocket *const connection = service.nextPendingConnection();
    QByteArray said;
    QVERIFY(waitFor([&] {
        said += connection->readAll();
        return said.contains("{\"cmd\":\"status\"}\n");
    }));
    QVERIFY(isRunning(*client));
    QCOMPARE(support::contents(file), before);
    QProcess::execute(QStringLiteral("rm"), {QStringLiteral("-rf"), file});
}

void tst_SecondStart::selfTestOptionAsLastArgumentSkipsTheCheck()
{
    QTcpServer service;
    QVERIFY(takesTheService(service));
    const QProcess *const first = startFirst(service);
    QVERIFY(first != nullptr);
    delete service.nextPendingConnection();

    const QProcess *const second = programs.start(clientProgram(), {QStringLiteral("--test-i18n")});
    // The first client reconnects, too: with two connections both clients are there.
    std::vector<std::unique_ptr<QTcpSocket>> connections;
    QVERIFY(waitFor([&] {
        while (service.hasPendingConnections()) {
            connections.emplace_back(service.nextPendingConnection());
        }
        return connections.size() == 2;
    }));
    QVERIFY(isRunning(*first));
    QVERIFY(isRunning(*second));
}

void tst_SecondStart::otherArgumentsDoNotSkipTheCheck_data()
{
    QTest::addColumn<QString>("argument");
    QTest::newRow("capitals") << QStringLiteral("--TEST-I18N");
    QTest::newRow("with a value") << QStringLiteral("--test-i18n=de_DE");
    QTest::newRow("one dash") << QStringLiteral("-test-i18n");
    QTest::newRow("longer") << QStringLiteral("--test-i18n ");
    QTest::newRow("other option") << QStringLiteral("--out");
}

void tst_SecondStart::otherArgumentsDoNotSkipTheCheck()
{
    QFETCH(QString, argument);
    QTcpServer service;
    QVERIFY(takesTheService(service));
    QVERIFY(startFirst(service) != nullptr);
    QCOMPARE(exitCode(*startClient(withoutDisplay(), {argument, QStringLiteral("de_DE")})), 0);
}

void tst_SecondStart::bringsBackAMinimisedWindow_data()
{
    addWindowManagers();
}

void tst_SecondStart::bringsBackAMinimisedWindow()
{
    QFETCH(WindowManager, manager);
    Desktop &desktop = desktopOf(manager);
    desktop.start(clientProgram());
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
    const Desktop::Window window = desktop.visibleWindows(clientTitle()).first();
    desktop.minimise(window);
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).isEmpty(); }));

    QCOMPARE(desktop.run(clientProgram()).exitCode, 0);
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).contains(window); }));
    QVERIFY(waitFor([&] { return desktop.activeWindow() == window; }));
}

void tst_SecondStart::bringsBackAHiddenWindow_data()
{
    addWindowManagers();
}

void tst_SecondStart::bringsBackAHiddenWindow()
{
    QFETCH(WindowManager, manager);
    Desktop &desktop = desktopOf(manager);
    desktop.start(QStringLiteral("trayer"));
    QVERIFY(waitFor([&] { return !desktop.windows(QStringLiteral("panel")).isEmpty(); }));
    QProcess *const first = desktop.start(clientProgram());
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
    const Desktop::Window window = desktop.visibleWindows(clientTitle()).first();
    desktop.close(window);
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).isEmpty(); }));
    QVERIFY(isRunning(*first));

    QCOMPARE(desktop.run(clientProgram()).exitCode, 0);
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
    QVERIFY(waitFor(
        [&] { return desktop.activeWindow() == desktop.visibleWindows(clientTitle()).first(); }));
}

void tst_SecondStart::bringsTheWindowToTheFront_data()
{
    addWindowManagers();
}

void tst_SecondStart::bringsTheWindowToTheFront()
{
    QFETCH(WindowManager, manager);
    Desktop &desktop = desktopOf(manager);
    desktop.start(clientProgram());
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
    const Desktop::Window window = desktop.visibleWindows(clientTitle()).first();
    desktop.start(QStringLiteral("xmessage"), {QStringLiteral("-title"), QStringLiteral("other"),
                                               QStringLiteral("Another window")});
    QVERIFY(waitFor([&] { return desktop.visibleWindows(QStringLiteral("other")).size() == 1; }));
    desktop.activate(desktop.visibleWindows(QStringLiteral("other")).first());
    QVERIFY(waitFor([&] { return desktop.activeWindow() != window; }));

    QCOMPARE(desktop.run(clientProgram()).exitCode, 0);
    QVERIFY(waitFor([&] { return desktop.activeWindow() == window; }));
}

void tst_SecondStart::bringsTheDialogToTheFront_data()
{
    addWindowManagers();
}

void tst_SecondStart::bringsTheDialogToTheFront()
{
    QTcpServer service;
    QVERIFY(takesTheService(service));
    QFETCH(WindowManager, manager);
    Desktop &desktop = desktopOf(manager);
    desktop.start(clientProgram());
    QVERIFY(waitFor([&service] { return service.hasPendingConnections(); }));
    QTcpSocket *const connection = service.nextPendingConnection();
    connection->write("notice: Maintenance tonight\n");
    const QString noticeTitle = QStringLiteral("Notice");
    QVERIFY(waitFor([&] { return desktop.visibleWindows(noticeTitle).size() == 1; }));
    const Desktop::Window window = desktop.visibleWindows(clientTitle()).first();
    const Desktop::Window notice = desktop.visibleWindows(noticeTitle).first();
    // Until it is drawn, the program may still ask for the keyboard, and have it all restored.
    const QColor ground{27, 29, 61};
    QVERIFY(waitFor([&] { return desktop.screenshot(notice).pixelColor(2, 2) == ground; }));
    desktop.minimise(window);
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).isEmpty(); }));

    QCOMPARE(desktop.run(clientProgram()).exitCode, 0);
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).contains(window); }));
    QVERIFY(waitFor([&] { return desktop.visibleWindows(noticeTitle).contains(notice); }));
    QVERIFY(waitFor([&] { return desktop.activeWindow() == notice; }));
}

void tst_SecondStart::bringsTheWindowOnAnotherDisplayToTheFront()
{
    Desktop &here = desktopOf(WindowManager::Openbox);
    Desktop &there = desktopOf(WindowManager::Metacity);
    here.start(clientProgram(),
               {QStringLiteral("-display"), there.environment().value(QStringLiteral("DISPLAY"))});
    QVERIFY(waitFor([&] { return there.visibleWindows(clientTitle()).size() == 1; }));
    const Desktop::Window window = there.visibleWindows(clientTitle()).first();
    there.start(QStringLiteral("xmessage"), {QStringLiteral("-title"), QStringLiteral("other"),
                                             QStringLiteral("Another window")});
    QVERIFY(waitFor([&] { return there.visibleWindows(QStringLiteral("other")).size() == 1; }));
    there.activate(there.visibleWindows(QStringLiteral("other")).first());
    QVERIFY(waitFor([&] { return there.activeWindow() != window; }));

    QCOMPARE(here.run(clientProgram()).exitCode, 0);
    QVERIFY(waitFor([&] { return there.activeWindow() == window; }));
}

void tst_SecondStart::tellsTheLauncherThatTheStartIsOver()
{
    Desktop &desktop = desktopOf(WindowManager::Openbox);
    desktop.start(clientProgram());
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
    QProcess *const watcher =
        desktop.start(QStringLiteral("xev"), {QStringLiteral("-root"), QStringLiteral("-event"),
                                              QStringLiteral("property")});
    QByteArray seen;
    const auto sees = [&](const QByteArray &what) {
        seen += watcher->readAllStandardOutput();
        return seen.contains(what);
    };
    // Waits until xev reports changes of properties.
    QVERIFY(waitFor([&] {
        desktop.run(QStringLiteral("xsetroot"), {QStringLiteral("-name"), QStringLiteral("here")});
        return sees("PropertyNotify");
    }));
    QCOMPARE(desktop.run(clientProgram()).exitCode, 0);
    QVERIFY(!sees("_NET_STARTUP_INFO_BEGIN"));

    // With an ID of this length, the byte that ends the announcement needs a third message.
    desktop.setVariable(QStringLiteral("DESKTOP_STARTUP_ID"),
                        QStringLiteral("launcher/client/7-0_TIME424"));
    QCOMPARE(desktop.run(clientProgram()).exitCode, 0);
    QVERIFY(waitFor([&] { return sees("_NET_STARTUP_INFO_BEGIN"); }));
    QVERIFY(
        waitFor([&] { return sees("(_NET_STARTUP_INFO)") && seen.count("_STARTUP_INFO") == 3; }));
    QVERIFY(waitFor(
        [&] { return desktop.activeWindow() == desktop.visibleWindows(clientTitle()).value(0); }));
    desktop.setVariable(QStringLiteral("DESKTOP_STARTUP_ID"), {});
}

void tst_SecondStart::secondStartMakesNoWindow()
{
    Desktop &desktop = desktopOf(WindowManager::Openbox);
    QProcess *const first = desktop.start(clientProgram());
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
    const int before = desktop.windows(clientTitle()).size();
    for (int i = 0; i < 5; ++i) {
        const Desktop::Outcome second = desktop.run(clientProgram());
        QCOMPARE(second.exitCode, 0);
        QCOMPARE(second.output, QByteArray{});
        QCOMPARE(second.errors, QByteArray{});
    }
    QCOMPARE(desktop.windows(clientTitle()).size(), before);
    QVERIFY(isRunning(*first));
}

QTEST_GUILESS_MAIN(tst_SecondStart)

#include "tst_secondstart.moc"
