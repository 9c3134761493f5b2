#include "tests/support/OtherUser.h"
#include "tests/support/ScriptedService.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using support::ScriptedService;

namespace {

// A service of another user: accepts the first client, prints its lines up to the status command,
// answers, and prints whatever else arrives until the client is gone.
constexpr char strangersService[] = R"(
socket(L, AF_INET, SOCK_STREAM, 0) or die;
setsockopt(L, SOL_SOCKET, SO_REUSEADDR, 1);
bind(L, pack_sockaddr_in(47652, INADDR_LOOPBACK)) or die;
listen(L, 1); $| = 1; print "ready\n";
accept(C, L) or die;
while (<C>) {
    print;
    if (/"status"/) { syswrite C, "status: running\nhello\nerror: {}\nset-lang\n\n"; shutdown C, 1; }
}
)";

} // namespace

/// The real program beside hostile users and in a hostile environment.
class tst_Neighbours : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void strangerOnThePort();
    void oddSurroundings_data();
    void oddSurroundings();
    void fatalMessageLeavesACore();

private:
    std::unique_ptr<QProcess> startClient() const;

    std::unique_ptr<QTemporaryDir> place;
    QProcessEnvironment environment;
};

void tst_Neighbours::init()
{
    place = std::make_unique<QTemporaryDir>();
    environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), place->path());
    const QString folder = place->filePath(QStringLiteral(".config/IXOVPN"));
    QDir{}.mkpath(folder);
    QFile file{folder + QStringLiteral("/IxoClient.conf")};
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[General]\nlanguage=de\nreferral_code=ABC123\n");
}

std::unique_ptr<QProcess> tst_Neighbours::startClient() const
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->start(QStringLiteral(IXOVPN_CLIENT), {});
    return process;
}

// Another user who takes the port learns only language and referral code, and nothing that he sends
// makes the client send more.
void tst_Neighbours::strangerOnThePort()
{
    if (!support::otheruser::isPossible()) {
        QSKIP("Only root can play another user");
    }
    QProcess stranger;
    stranger.start(QStringLiteral("setpriv"),
                   {QStringLiteral("--reuid=%1").arg(support::otheruser::id),
                    QStringLiteral("--clear-groups"), QStringLiteral("perl"),
                    QStringLiteral("-MSocket"), QStringLiteral("-e"),
                    QString::fromLatin1(strangersService)});
    QTRY_VERIFY_WITH_TIMEOUT(stranger.canReadLine(), 60'000);
    QCOMPARE(stranger.readLine(), QByteArray{"ready\n"});
    const std::unique_ptr<QProcess> client = startClient();
    // The client closes the connection once it has read everything that the stranger sent.
    QTRY_COMPARE_WITH_TIMEOUT(stranger.state(), QProcess::NotRunning, 60'000);
    QCOMPARE(stranger.exitCode(), 0);
    QCOMPARE(stranger.readAll(), QByteArray{R"({"cmd":"set-lang","lang":"de"})"
                                            "\n"
                                            R"({"cmd":"set-referral","code":"ABC123"})"
                                            "\n"
                                            R"({"cmd":"status"})"
                                            "\n"});
    QCOMPARE(client->state(), QProcess::Running);
    client->kill();
    client->waitForFinished(-1);
}

void tst_Neighbours::oddSurroundings_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("value");
    QTest::newRow("no such style") << QByteArray{"QT_STYLE_OVERRIDE"} << QStringLiteral("none");
    QTest::newRow("no such theme") << QByteArray{"QT_QPA_PLATFORMTHEME"} << QStringLiteral("none");
    QTest::newRow("plug-ins that are none") << QByteArray{"QT_PLUGIN_PATH"} << QStringLiteral("$P");
    QTest::newRow("no such scale") << QByteArray{"QT_SCALE_FACTOR"} << QStringLiteral("x");
    QTest::newRow("no such input method") << QByteArray{"QT_IM_MODULE"} << QStringLiteral("none");
}

// The user sets these variables, and may load what he likes. The client ignores nonsense.
void tst_Neighbours::oddSurroundings()
{
    QFETCH(QByteArray, variable);
    QFETCH(QString, value);
    const QString plugins = place->filePath(QStringLiteral("plugins"));
    for (const char *kind : {"platforms", "styles", "platformthemes", "imageformats"}) {
        const QString folder = plugins + QLatin1Char{'/'} + QString::fromLatin1(kind);
        QVERIFY(QDir{}.mkpath(folder));
        for (const char *name : {"/libqoffscreen.so", "/libqico.so", "/libjunk.so"}) {
            QFile file{folder + QString::fromLatin1(name)};
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("\x7f"
                       "ELF, or so it says");
        }
    }
    environment.insert(QString::fromLatin1(variable), value.replace(QStringLiteral("$P"), plugins));
    ScriptedService service;
    service.listen();
    const std::unique_ptr<QProcess> client = startClient();
    QTRY_VERIFY_WITH_TIMEOUT(service.lines().contains(R"({"cmd":"status"})"), 60'000);
    QCOMPARE(client->state(), QProcess::Running);
    client->kill();
    client->waitForFinished(-1);
}

// Only a start without a display ends in order; a later qFatal() leaves a core dump for developers.
void tst_Neighbours::fatalMessageLeavesACore()
{
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(IXOVPN_BROKENLOOP));
    environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("verify_asan_link_order=0"));
    const std::unique_ptr<QProcess> client = startClient();
    QVERIFY(client->waitForFinished(-1));
    QCOMPARE(client->exitStatus(), QProcess::CrashExit);
}

QTEST_GUILESS_MAIN(tst_Neighbours)

#include "tst_neighbours.moc"
