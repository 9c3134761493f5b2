#include "app/SingleInstance.h"

#include "tests/support/OtherUser.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QWidget>

#include <algorithm>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using app::SingleInstance;

namespace {

QString loginFolder()
{
    return QStringLiteral("/run/user/%1").arg(geteuid());
}

QString sharedFolder()
{
    return QStringLiteral("/tmp/ixovpn-%1").arg(geteuid());
}

bool isOwnFolder(const QString &path)
{
    struct stat found = {};
    return lstat(path.toLocal8Bit().constData(), &found) == 0 && S_ISDIR(found.st_mode) &&
           found.st_uid == geteuid() && (found.st_mode & 0777) == 0700;
}

sockaddr_un channelIn(const QString &folder)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = folder.toLocal8Bit() + "/show";
    std::copy(path.begin(), path.end(), address.sun_path);
    return address;
}

// Listens in place of the first client; the caller closes it.
int boundChannel(const QString &folder)
{
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = channelIn(folder);
    const bool bound = bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    return bound ? fd : -1;
}

// Sends a request as a later start does; false if nobody listens.
bool send(const QByteArray &datagram,
          const QString &folder = loginFolder() + QStringLiteral("/ixovpn"))
{
    const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const sockaddr_un address = channelIn(folder);
    const ssize_t sent = sendto(fd, datagram.constData(), static_cast<size_t>(datagram.size()), 0,
                                reinterpret_cast<const sockaddr *>(&address), sizeof address);
    close(fd);
    return sent == datagram.size();
}

constexpr int longestRequest = 1024;

class Window : public QWidget
{
public:
    int hidings = 0;

protected:
    void hideEvent(QHideEvent * /*event*/) override { ++hidings; }
};

} // namespace

class tst_SingleInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void firstStartTakesThePlace();
    void laterStartFindsItTaken();
    void placeIsFreeAfterTheFirstIsGone();
    void placeIsPrivate();
    void laterStartShowsTheWindow();
    void laterStartBringsBackAMinimisedWindow();
    void laterStartLeavesAVisibleWindowVisible();
    void laterStartBeforeThereIsAWindow();
    void queuedRequest();
    void requestWithStartupId_data();
    void requestWithStartupId();
    void anyDatagramIsARequest_data();
    void anyDatagramIsARequest();
    void nothingArrivesAfterTheRequestsAreGone();
    void staleChannelIsReplaced();
    void takenNameLeavesNoPlace_data();
    void takenNameLeavesNoPlace();
    void otherUsersReachNoChannel_data();
    void otherUsersReachNoChannel();
    void laxPermissionsAreMended();

private:
    void moveToSharedFolder();

    QString hiddenLoginFolder;
};

void tst_SingleInstance::init()
{
    if (!qEnvironmentVariableIsSet("IXOVPN_ISOLATED")) {
        QSKIP("Needs a /run and a /tmp of its own");
    }
    QProcess::execute(QStringLiteral("sh"),
                      {QStringLiteral("-c"),
                       QStringLiteral("rm -rf %1/ixovpn /tmp/ixovpn-*").arg(loginFolder())});
}

void tst_SingleInstance::cleanup()
{
    if (!hiddenLoginFolder.isEmpty()) {
        QVERIFY(QFile::rename(hiddenLoginFolder, loginFolder()));
        hiddenLoginFolder.clear();
    }
}

// As on a system whose log-in manager makes no folder for the user.
void tst_SingleInstance::moveToSharedFolder()
{
    hiddenLoginFolder = loginFolder() + QStringLiteral(".away");
    QVERIFY(QFile::rename(loginFolder(), hiddenLoginFolder));
}

void tst_SingleInstance::firstStartTakesThePlace()
{
    SingleInstance first;
    QVERIFY(first.claim());
}

void tst_SingleInstance::laterStartFindsItTaken()
{
    SingleInstance first;
    QVERIFY(first.claim());
    for (int i = 0; i < 3; ++i) {
        SingleInstance later;
        QVERIFY(!later.claim());
    }
}

void tst_SingleInstance::placeIsFreeAfterTheFirstIsGone()
{
    {
        SingleInstance first;
        QVERIFY(first.claim());
    }
    SingleInstance next;
    QVERIFY(next.claim());
}

void tst_SingleInstance::placeIsPrivate()
{
    {
        SingleInstance first;
        QVERIFY(first.claim());
        QVERIFY(isOwnFolder(loginFolder() + QStringLiteral("/ixovpn")));
    }
    moveToSharedFolder();
    SingleInstance first;
    QVERIFY(first.claim());
    QVERIFY(isOwnFolder(sharedFolder()));
}

void tst_SingleInstance::laterStartShowsTheWindow()
{
    SingleInstance first;
    QVERIFY(first.claim());
    QWidget window;
    const SingleInstance::ShowRequests requests{first, &window};
    QVERIFY(!window.isVisible());

    SingleInstance later;
    QVERIFY(!later.claim());
    QTRY_VERIFY(window.isVisible());
    QTRY_VERIFY(window.isActiveWindow());
}

void tst_SingleInstance::laterStartBringsBackAMinimisedWindow()
{
    SingleInstance first;
    QVERIFY(first.claim());
    QWidget window;
    const SingleInstance::ShowRequests requests{first, &window};
    window.showMinimized();
    QTRY_VERIFY(window.isMinimized());

    SingleInstance later;
    QVERIFY(!later.claim());
    QTRY_VERIFY(!window.isMinimized());
    QVERIFY(window.isVisible());
}

// A window that is hidden and shown again would flicker, and some window managers would move it.
void tst_SingleInstance::laterStartLeavesAVisibleWindowVisible()
{
    SingleInstance first;
    QVERIFY(first.claim());
    Window window;
    const SingleInstance::ShowRequests requests{first, &window};
    window.show();
    QWidget inFront;
    inFront.show();
    inFront.activateWindow();
    QTRY_VERIFY(inFront.isActiveWindow());

    QVERIFY(send({}));
    QTRY_VERIFY(window.isActiveWindow());
    QCOMPARE(window.hidings, 0);
}

void tst_SingleInstance::laterStartBeforeThereIsAWindow()
{
    SingleInstance first;
    QVERIFY(first.claim());
    {
        SingleInstance later;
        QVERIFY(!later.claim());
    }
    QWidget window;
    const SingleInstance::ShowRequests requests{first, &window};
    QCoreApplication::processEvents();
    QVERIFY(!window.isVisible());
}

void tst_SingleInstance::queuedRequest()
{
    SingleInstance first;
    QVERIFY(first.claim());
    first.queueRequests();
    {
        SingleInstance later;
        QVERIFY(!later.claim());
    }
    QWidget window;
    const SingleInstance::ShowRequests requests{first, &window};
    QTRY_VERIFY(window.isVisible());
}

void tst_SingleInstance::requestWithStartupId_data()
{
    QTest::addColumn<QByteArray>("startupId");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray id = "launcher/client/1-0-host_TIME12345";
    const QByteArray longest(longestRequest, 'x');
    QTest::newRow("none") << QByteArray{} << QByteArray{};
    QTest::newRow("of a launcher") << id << id;
    QTest::newRow("longest") << longest << longest;
    QTest::newRow("a byte too long") << longest + 'x' << longest;
}

void tst_SingleInstance::requestWithStartupId()
{
    QFETCH(QByteArray, startupId);
    QFETCH(QByteArray, expected);
    SingleInstance first;
    QVERIFY(first.claim());
    const int fd = boundChannel(loginFolder() + QStringLiteral("/ixovpn"));
    QVERIFY(fd >= 0);
    qputenv("DESKTOP_STARTUP_ID", startupId);
    {
        SingleInstance later;
        QVERIFY(!later.claim());
    }
    qunsetenv("DESKTOP_STARTUP_ID");

    QByteArray said{longestRequest, '\0'};
    const ssize_t length = recv(fd, said.data(), static_cast<size_t>(said.size()), MSG_DONTWAIT);
    close(fd);
    QCOMPARE(said.left(static_cast<int>(length)), expected);
}

void tst_SingleInstance::anyDatagramIsARequest_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty") << QByteArray{};
    QTest::newRow("zero bytes") << QByteArray(64, '\0');
    QTest::newRow("invalid UTF-8") << QByteArray("\xff\xfe\n\n");
    QTest::newRow("time out of range") << QByteArray("x_TIME99999999999999999999");
    QTest::newRow("longest") << QByteArray(longestRequest, 'x');
    QTest::newRow("much too long") << QByteArray(5000, 'x');
}

void tst_SingleInstance::anyDatagramIsARequest()
{
    QFETCH(QByteArray, bytes);
    SingleInstance first;
    QVERIFY(first.claim());
    QWidget window;
    const SingleInstance::ShowRequests requests{first, &window};

    QVERIFY(send(bytes));
    QTRY_VERIFY(window.isVisible());
}

void tst_SingleInstance::nothingArrivesAfterTheRequestsAreGone()
{
    SingleInstance first;
    QVERIFY(first.claim());
    QWidget window;
    {
        const SingleInstance::ShowRequests requests{first, &window};
    }
    QVERIFY(!send({}));
    QCoreApplication::processEvents();
    QVERIFY(!window.isVisible());
}

void tst_SingleInstance::staleChannelIsReplaced()
{
    const QString folder = loginFolder() + QStringLiteral("/ixovpn");
    QVERIFY(QDir{}.mkpath(folder));
    // A killed client leaves its socket behind; a plain file at its path is worse.
    for (const bool socketFile : {true, false}) {
        const QString channel = folder + QStringLiteral("/show");
        QFile::remove(channel);
        if (socketFile) {
            const int fd = boundChannel(folder);
            QVERIFY(fd >= 0);
            close(fd);
        } else {
            QFile file{channel};
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        SingleInstance first;
        QVERIFY(first.claim());
        QWidget window;
        const SingleInstance::ShowRequests requests{first, &window};
        QVERIFY(send({}));
        QTRY_VERIFY(window.isVisible());
    }
}

void tst_SingleInstance::takenNameLeavesNoPlace_data()
{
    QTest::addColumn<QString>("squat");
    QTest::newRow("a file") << QStringLiteral("touch %1");
    QTest::newRow("a link to a folder of ours")
        << QStringLiteral("mkdir -m 700 /tmp/ours; ln -s /tmp/ours %1");
    QTest::newRow("a dangling link") << QStringLiteral("ln -s /tmp/nowhere %1");
    QTest::newRow("a folder of another user") << QStringLiteral("mkdir %1; chown %2 %1");
    QTest::newRow("an open folder of another user")
        << QStringLiteral("mkdir -m 777 %1; chown %2 %1");
}

// A client that runs twice is better than one that does not run at all, or in a folder that another
// user can reach.
void tst_SingleInstance::takenNameLeavesNoPlace()
{
    QFETCH(QString, squat);
    if (squat.contains(QLatin1String{"%2"}) && !support::otheruser::isPossible()) {
        QSKIP("Only root can play another user");
    }
    moveToSharedFolder();
    QDir{QStringLiteral("/tmp/ours")}.removeRecursively();
    squat.replace(QLatin1String{"%1"}, sharedFolder())
        .replace(QLatin1String{"%2"}, QString::number(support::otheruser::id));
    QCOMPARE(QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-ec"), squat}), 0);

    SingleInstance first;
    QVERIFY(first.claim());
    SingleInstance second;
    QVERIFY(second.claim());
    QWidget window;
    const SingleInstance::ShowRequests requests{first, &window};
    QVERIFY(!send({}, sharedFolder()));
}

void tst_SingleInstance::otherUsersReachNoChannel_data()
{
    QTest::addColumn<bool>("shared");
    QTest::newRow("in the log-in manager's folder") << false;
    QTest::newRow("in the shared folder") << true;
}

// The same command, run by the client's own user, shows the window.
void tst_SingleInstance::otherUsersReachNoChannel()
{
    QFETCH(bool, shared);
    if (!support::otheruser::isPossible()) {
        QSKIP("Only root can play another user");
    }
    if (shared) {
        moveToSharedFolder();
    }
    SingleInstance first;
    QVERIFY(first.claim());
    QWidget window;
    const SingleInstance::ShowRequests requests{first, &window};

    const QString folder = shared ? sharedFolder() : loginFolder() + QStringLiteral("/ixovpn");
    const auto askAs = [&folder](int user) {
        return QProcess::execute(
            QStringLiteral("setpriv"),
            {QStringLiteral("--reuid"), QString::number(user), QStringLiteral("--clear-groups"),
             QStringLiteral("perl"), QStringLiteral("-MSocket"), QStringLiteral("-e"),
             QStringLiteral("socket(S, AF_UNIX, SOCK_DGRAM, 0) or exit 3; exit(defined send(S, "
                            "\"\", 0, pack_sockaddr_un(shift)) ? 0 : 1)"),
             folder + QStringLiteral("/show")});
    };
    QCOMPARE(askAs(support::otheruser::id), 1);
    QCoreApplication::processEvents();
    QVERIFY(!window.isVisible());
    QCOMPARE(askAs(0), 0);
    QTRY_VERIFY(window.isVisible());
}

void tst_SingleInstance::laxPermissionsAreMended()
{
    const QString folder = loginFolder() + QStringLiteral("/ixovpn");
    QVERIFY(QDir{}.mkpath(folder));
    QCOMPARE(chmod(folder.toLocal8Bit().constData(), 0777), 0);
    SingleInstance first;
    QVERIFY(first.claim());
    QVERIFY(isOwnFolder(folder));
}

QTEST_MAIN(tst_SingleInstance)

#include "tst_singleinstance.moc"
