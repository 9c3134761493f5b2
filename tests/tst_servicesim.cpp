#include "ipc/Protocol.h"
#include "ipc/ServiceClient.h"
#include "tools/service-sim/Options.h"
#include "tools/service-sim/Simulator.h"

#include <QHostAddress>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>

using servicesim::Simulator;

// Only a test that fails anyway waits this long.
constexpr int patienceMs = 60'000;

#define TRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, patienceMs)
#define TRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, patienceMs)

namespace {

const QStringList wayUp{QStringLiteral("status: fetching"), QStringLiteral("config-bytes: 4096"),
                        QStringLiteral("status: starting"), QStringLiteral("status: connecting"),
                        QStringLiteral("status: running")};
const QStringList wayDown{QStringLiteral("status: stopping"), QStringLiteral("status: stopped")};

const QStringList quick{QStringLiteral("--delay"), QStringLiteral("1")};
/// Every walk stands still after its first step.
const QStringList frozen{QStringLiteral("--delay"), QStringLiteral("3600000")};

QStringList beginningIn(const QString &state)
{
    return quick + QStringList{QStringLiteral("--state"), state};
}

servicesim::ParsedOptions parse(const QStringList &arguments)
{
    return servicesim::parseOptions(QStringList{QStringLiteral("ixovpn-service-sim")} + arguments);
}

/// A simulator on any free port, with what it notes.
class Service
{
public:
    explicit Service(const QStringList &arguments, const QString &port = QStringLiteral("0"))
    {
        const servicesim::ParsedOptions parsed =
            parse(arguments + QStringList{QStringLiteral("--port"), port});
        if (!parsed.options) {
            qFatal("Not accepted: %s", qPrintable(parsed.fault));
        }
        simulator = std::make_unique<Simulator>(*parsed.options);
        QObject::connect(simulator.get(), &Simulator::noted, simulator.get(),
                         [this](const QString &entry) { journal.append(entry); });
        if (!simulator->listen()) {
            qFatal("No port: %s", qPrintable(simulator->errorString()));
        }
    }

    Simulator *operator->() const { return simulator.get(); }

    /// Without their times.
    QStringList notes() const
    {
        QStringList texts;
        for (const QString &entry : journal) {
            texts.append(entry.section(QLatin1Char{' '}, 1));
        }
        return texts;
    }
    bool noted(const QString &text) const { return notes().contains(text); }

    QStringList journal;

private:
    std::unique_ptr<Simulator> simulator;
};

/// A client that says what it is told to say and keeps all that it hears.
class Client
{
public:
    explicit Client(quint16 port)
    {
        QObject::connect(&socket, &QTcpSocket::readyRead, &socket,
                         [this] { bytes += socket.readAll(); });
        socket.connectToHost(QHostAddress{QHostAddress::LocalHost}, port);
        if (!socket.waitForConnected()) {
            qFatal("No connection: %s", qPrintable(socket.errorString()));
        }
    }

    bool isUp() const { return socket.state() == QAbstractSocket::ConnectedState; }

    void send(const QByteArray &raw)
    {
        socket.write(raw);
        socket.flush();
    }
    void command(const char *name)
    {
        send(QByteArrayLiteral("{\"cmd\":\"") + name + QByteArrayLiteral("\"}\n"));
    }

    QStringList lines() const
    {
        QStringList whole = QString::fromUtf8(bytes).split(QLatin1Char{'\n'});
        whole.removeLast();
        return whole;
    }
    void clear() { bytes.clear(); }

    QTcpSocket socket;
    QByteArray bytes;
};

QStringList texts(const QSignalSpy &spy)
{
    QStringList all;
    for (const QList<QVariant> &arguments : spy) {
        all.append(arguments.constFirst().toString());
    }
    return all;
}

/// The program itself, with what it has printed so far.
class Program : public QProcess
{
public:
    explicit Program(const QStringList &arguments)
    {
        connect(this, &QProcess::readyReadStandardOutput, this,
                [this] { output += QString::fromUtf8(readAllStandardOutput()); });
        start(QStringLiteral(IXOVPN_SERVICE_SIM), arguments);
    }
    ~Program() override
    {
        kill();
        waitForFinished();
    }

    quint16 port() const
    {
        static const QRegularExpression line{
            QStringLiteral("^listening on 127\\.0\\.0\\.1:([0-9]+)$"),
            QRegularExpression::MultilineOption};
        return static_cast<quint16>(line.match(output).captured(1).toUInt());
    }
    bool hasEnded() const { return state() == QProcess::NotRunning; }
    QString errors() { return QString::fromUtf8(readAllStandardError()); }

    QString output;
};

} // namespace

class tst_ServiceSim : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wayUpAndDown();
    void startStates_data();
    void startStates();
    void connectOnTheWayUp();
    void connectOnTheWayDown();
    void disconnectWhenDown_data();
    void disconnectWhenDown();
    void disconnectOnTheWayUp();
    void disconnectForgetsTheWayUpThatWasToFollow();
    void answersGoToTheOneThatAsked();
    void everyClientHearsTheWalk();
    void failures_data();
    void failures();
    void expiredSubscription();
    void notices();
    void languageAndReferralCode();
    void malformedCommands_data();
    void malformedCommands();
    void linesAsTheyStand();

    void realClientWalks();

    void badOptions_data();
    void badOptions();

    void help();
    void badOptionsEndTheProgram();
    void portTaken();
    void printsWhatItDoes();
    void inputGoesToTheClients();
    void endsOnASignal_data();
    void endsOnASignal();
};

void tst_ServiceSim::wayUpAndDown()
{
    const Service service{quick};
    Client client{service->port()};
    client.command("connect");
    TRY_COMPARE(client.lines(), wayUp);
    client.clear();
    client.command("disconnect");
    TRY_COMPARE(client.lines(), wayDown);
    client.command("status");
    TRY_COMPARE(client.lines(), wayDown + QStringList{QStringLiteral("status: stopped")});
}

void tst_ServiceSim::startStates_data()
{
    QTest::addColumn<QString>("word");
    for (const char *const word :
         {"stopped", "disconnected", "fetching", "fetching config", "starting", "connecting",
          "running", "stopping", "subscription_expired", "failed", "failed: no route"}) {
        QTest::newRow(word) << QString::fromLatin1(word);
    }
}

void tst_ServiceSim::startStates()
{
    QFETCH(QString, word);
    const Service service{beginningIn(word)};
    Client client{service->port()};
    client.command("status");
    TRY_COMPARE(client.lines(), QStringList{QStringLiteral("status: ") + word});
}

void tst_ServiceSim::connectOnTheWayUp()
{
    const Service service{frozen};
    Client client{service->port()};
    const Client witness{service->port()};
    TRY_VERIFY(service.noted(QStringLiteral("#2 connected")));
    client.command("connect");
    client.command("connect");
    client.command("status");
    const QString here = QStringLiteral("status: fetching");
    TRY_COMPARE(client.lines(), (QStringList{here, here, here}));
    // Had the walk begun anew, everybody would have heard it.
    service->sendAsItStands("end");
    TRY_COMPARE(witness.lines(), (QStringList{here, QStringLiteral("end")}));
}

void tst_ServiceSim::connectOnTheWayDown()
{
    const Service service{beginningIn(QStringLiteral("running"))};
    Client client{service->port()};
    client.send("{\"cmd\":\"disconnect\"}\n{\"cmd\":\"connect\"}\n");
    const QStringList answer{QStringLiteral("status: stopping")};
    TRY_COMPARE(client.lines(), answer + wayDown + wayUp);
}

void tst_ServiceSim::disconnectWhenDown_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *word, const char *answer) {
        QTest::newRow(word) << QString::fromLatin1(word) << QString::fromLatin1(answer);
    };
    row("stopped", "status: stopped");
    row("disconnected", "status: disconnected");
    row("failed: no route", "status: stopped");
    row("subscription_expired", "status: stopped");
}

void tst_ServiceSim::disconnectWhenDown()
{
    QFETCH(QString, word);
    QFETCH(QString, answer);
    const Service service{beginningIn(word)};
    Client client{service->port()};
    client.command("disconnect");
    client.command("status");
    TRY_COMPARE(client.lines(), (QStringList{answer, answer}));
}

void tst_ServiceSim::disconnectOnTheWayUp()
{
    const Service service{quick};
    Client client{service->port()};
    client.send("{\"cmd\":\"connect\"}\n{\"cmd\":\"disconnect\"}\n");
    const QStringList expected = QStringList{QStringLiteral("status: fetching")} + wayDown;
    TRY_COMPARE(client.lines(), expected);
    client.command("status");
    TRY_COMPARE(client.lines(), expected + QStringList{QStringLiteral("status: stopped")});
}

void tst_ServiceSim::disconnectForgetsTheWayUpThatWasToFollow()
{
    const Service service{beginningIn(QStringLiteral("running"))};
    Client client{service->port()};
    client.send("{\"cmd\":\"disconnect\"}\n{\"cmd\":\"connect\"}\n{\"cmd\":\"disconnect\"}\n");
    const QString answer = QStringLiteral("status: stopping");
    const QStringList expected = QStringList{answer, answer} + wayDown;
    TRY_COMPARE(client.lines(), expected);
    // Had the way up not been forgotten, this one would be on it.
    client.command("connect");
    TRY_COMPARE(client.lines(), expected + wayUp);
}

void tst_ServiceSim::answersGoToTheOneThatAsked()
{
    const Service service{quick};
    Client asking{service->port()};
    Client other{service->port()};
    TRY_VERIFY(service.noted(QStringLiteral("#2 connected")));
    asking.command("status");
    TRY_COMPARE(asking.lines(), QStringList{QStringLiteral("status: stopped")});
    other.command("connect");
    TRY_COMPARE(other.lines(), wayUp);
    TRY_COMPARE(asking.lines(), QStringList{QStringLiteral("status: stopped")} + wayUp);
}

void tst_ServiceSim::everyClientHearsTheWalk()
{
    const Service service{quick};
    Client first{service->port()};
    Client second{service->port()};
    TRY_VERIFY(service.noted(QStringLiteral("#2 connected")));
    {
        const Client third{service->port()};
        TRY_VERIFY(service.noted(QStringLiteral("#3 connected")));
    }
    first.command("connect");
    TRY_COMPARE(first.lines(), wayUp);
    TRY_COMPARE(second.lines(), wayUp);
    second.command("disconnect");
    TRY_COMPARE(first.lines(), wayUp + wayDown);
    TRY_COMPARE(second.lines(), wayUp + wayDown);
    TRY_VERIFY(service.noted(QStringLiteral("#3 disconnected")));
}

void tst_ServiceSim::failures_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected");

    const QString at = QStringLiteral("--fail-at");
    const auto text = [](const char *latin) { return QString::fromLatin1(latin); };
    const auto steps = [](int count, const QString &end) {
        return QStringList{wayUp.mid(0, count)} + QStringList{end};
    };
    const QString usual = text("status: failed: simulated failure");
    QTest::newRow("fetching") << QStringList{at, text("fetching")} << steps(1, usual);
    QTest::newRow("config") << QStringList{at, text("config")} << steps(2, usual);
    QTest::newRow("starting") << QStringList{at, text("starting")} << steps(3, usual);
    QTest::newRow("connecting") << QStringList{at, text("connecting")} << steps(4, usual);
    QTest::newRow("running") << QStringList{at, text("running")} << steps(5, usual);
    QTest::newRow("own text") << QStringList{at, text("starting"), text("--fail-text"),
                                             text("no route")}
                              << steps(3, text("status: failed: no route"));
    QTest::newRow("as an error") << QStringList{at, text("starting"), text("--fail-as"),
                                                text("error")}
                                 << steps(3, text("error: simulated failure"));
}

void tst_ServiceSim::failures()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    const Service service{quick + arguments};
    Client client{service->port()};
    client.command("connect");
    TRY_COMPARE(client.lines(), expected);
    client.clear();
    client.command("status");
    TRY_COMPARE(client.lines().size(), 1);
    QVERIFY(client.lines().constFirst().startsWith(QLatin1String{"status: failed: "}));
}

void tst_ServiceSim::expiredSubscription()
{
    const Service service{quick + QStringList{QStringLiteral("--expired")}};
    Client client{service->port()};
    client.command("connect");
    TRY_COMPARE(client.lines(), (QStringList{QStringLiteral("status: fetching"),
                                             QStringLiteral("error: subscription_expired")}));
    client.clear();
    client.command("status");
    TRY_COMPARE(client.lines(), QStringList{QStringLiteral("status: subscription_expired")});
}

void tst_ServiceSim::notices()
{
    const Service service{{QStringLiteral("--notice"), QStringLiteral("@60 later"),
                           QStringLiteral("--notice"), QStringLiteral("first"),
                           QStringLiteral("--notice"), QString::fromUtf8("второй <b>2</b>")}};
    const QStringList expected{QStringLiteral("notice: first"),
                               QString::fromUtf8("notice: второй <b>2</b>"),
                               QStringLiteral("notice: later")};
    const Client client{service->port()};
    TRY_COMPARE(client.lines(), expected);
    const Client second{service->port()};
    TRY_COMPARE(second.lines(), expected);
    QCOMPARE(client.lines(), expected);
}

void tst_ServiceSim::languageAndReferralCode()
{
    const Service service{quick};
    QCOMPARE(service->language(), QString{});
    QCOMPARE(service->referralCode(), QString{});
    Client client{service->port()};
    client.send("{\"cmd\":\"set-lang\",\"lang\":\"br\"}\n");
    client.send("{\"cmd\":\"set-referral\",\"code\":\"ab12CD\"}\n");
    TRY_COMPARE(service->referralCode(), QStringLiteral("ab12CD"));
    QCOMPARE(service->language(), QStringLiteral("br"));
    QVERIFY(service.noted(QStringLiteral("language: br")));
    QVERIFY(service.noted(QStringLiteral("referral code: ab12CD")));

    Client second{service->port()};
    second.send("{\"cmd\":\"set-lang\",\"lang\":\"ja\"}\n");
    TRY_COMPARE(service->language(), QStringLiteral("ja"));
    QCOMPARE(service->referralCode(), QStringLiteral("ab12CD"));
    QVERIFY(client.lines().isEmpty());
}

void tst_ServiceSim::malformedCommands_data()
{
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const char *name, const QByteArray &line) { QTest::newRow(name) << line; };
    row("nothing", "");
    row("half an object", R"({"cmd":"connect")");
    row("unknown", R"({"cmd":"restart"})");
    row("too much", R"({"cmd":"connect","lang":"de"})");
    row("code too short", R"({"cmd":"set-referral","code":"abc12"})");
    row("code beyond ASCII", "{\"cmd\":\"set-referral\",\"code\":\"абв123\"}");
    row("not UTF-8", QByteArray{"{\"cmd\":\"conn\xff\xfe\"}"});
    row("terminal control", QByteArray{"\x1b[2J\x07"});
}

void tst_ServiceSim::malformedCommands()
{
    QFETCH(QByteArray, line);
    const Service service{quick};
    Client client{service->port()};
    client.send(line + '\n');
    client.command("status");
    TRY_COMPARE(client.lines(), QStringList{QStringLiteral("status: stopped")});
    QCOMPARE(service.notes().filter(QStringLiteral("#1 malformed: ")).size(), 1);
    QCOMPARE(service->language(), QString{});
    QCOMPARE(service->referralCode(), QString{});
    for (const QString &entry : service.journal) {
        QVERIFY2(std::all_of(entry.begin(), entry.end(), [](QChar c) { return c.isPrint(); }),
                 qPrintable(entry));
    }
}

void tst_ServiceSim::linesAsTheyStand()
{
    const Service service{quick};
    Client first{service->port()};
    const Client second{service->port()};
    TRY_VERIFY(service.noted(QStringLiteral("#2 connected")));
    const QByteArray odd{"  status: running\r\xff\x1b"};
    service->sendAsItStands(odd);
    service->sendAsItStands({});
    TRY_COMPARE(first.bytes, odd + "\n\n");
    TRY_COMPARE(second.bytes, odd + "\n\n");
    // They are only words.
    first.clear();
    first.command("status");
    TRY_COMPARE(first.lines(), QStringList{QStringLiteral("status: stopped")});
}

void tst_ServiceSim::realClientWalks()
{
    const Service service{quick, QString::number(ipc::protocol::servicePort)};
    ipc::ServiceClient client{nullptr};
    const QSignalSpy up{&client, &ipc::ServiceClient::connectionChanged};
    QSignalSpy heard{&client, &ipc::ServiceClient::messageReceived};
    client.connectToService();
    TRY_COMPARE(up.size(), 1);

    client.send(ipc::protocol::setLanguageCommand,
                {{QString{ipc::protocol::languageKey}, QStringLiteral("de")}});
    client.send(ipc::protocol::setReferralCommand,
                {{QString{ipc::protocol::referralCodeKey}, QStringLiteral("ABC123")}});
    client.send(ipc::protocol::connectCommand);
    TRY_COMPARE(texts(heard), wayUp);
    heard.clear();
    client.send(ipc::protocol::disconnectCommand);
    TRY_COMPARE(texts(heard), wayDown);
    heard.clear();
    client.send(ipc::protocol::statusCommand);
    TRY_COMPARE(texts(heard), QStringList{QStringLiteral("status: stopped")});
    QCOMPARE(service->language(), QStringLiteral("de"));
    QCOMPARE(service->referralCode(), QStringLiteral("ABC123"));
    QVERIFY(service.notes().filter(QStringLiteral("malformed")).isEmpty());
}

void tst_ServiceSim::badOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("word");
    const auto row = [](const char *line, const char *word) {
        QTest::newRow(QByteArray{line}.replace('\n', "\\n").constData())
            << QString::fromLatin1(line).split(QLatin1Char{'|'}) << QString::fromLatin1(word);
    };
    row("--no-such", "no-such");
    row("--port|65536", "--port");
    row("--delay|3600001", "--delay");
    row("--delay|0.5", "--delay");
    row("--state|Running", "Running");
    row("--state|failed\nstatus: x", "--state");
    row("--fail-at|stopped", "--fail-at");
    row("--fail-at|starting|--fail-as|word", "--fail-as");
    row("--fail-at|starting|--fail-text|", "--fail-text");
    row("--fail-as|error", "--fail-at");
    row("--expired|--fail-at|starting", "--expired");
    row("--notice|", "--notice");
    row("--notice|two\nlines", "--notice");
    row("--notice|@3600001 late", "--notice");
}

void tst_ServiceSim::badOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, word);
    const servicesim::ParsedOptions parsed = parse(arguments);
    QVERIFY(!parsed.options);
    QVERIFY2(parsed.fault.contains(word), qPrintable(parsed.fault));
}

void tst_ServiceSim::help()
{
    Program program{{QStringLiteral("--help")}};
    TRY_VERIFY(program.hasEnded());
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(program.output.contains(QLatin1String{"--fail-at <step>"}));
}

void tst_ServiceSim::badOptionsEndTheProgram()
{
    Program program{{QStringLiteral("--delay"), QStringLiteral("soon")}};
    TRY_VERIFY(program.hasEnded());
    QCOMPARE(program.exitCode(), 2);
    QVERIFY(program.errors().contains(QLatin1String{"--delay"}));
    QVERIFY(program.output.isEmpty());
}

void tst_ServiceSim::portTaken()
{
    QTcpServer occupant;
    QVERIFY(occupant.listen(QHostAddress::LocalHost));
    const QString port = QString::number(occupant.serverPort());
    Program program{{QStringLiteral("--port"), port}};
    TRY_VERIFY(program.hasEnded());
    QCOMPARE(program.exitCode(), 1);
    QVERIFY(program.errors().contains(QLatin1String{"127.0.0.1:"} + port));
    QVERIFY(program.output.isEmpty());
}

void tst_ServiceSim::printsWhatItDoes()
{
    const Program program{quick + QStringList{QStringLiteral("--port"), QStringLiteral("0")}};
    TRY_VERIFY(program.port() != 0);
    Client client{program.port()};
    client.command("connect");
    TRY_COMPARE(client.lines(), wayUp);
    TRY_VERIFY(program.output.endsWith(QLatin1String{" > status: running\n"}));
    QVERIFY(program.output.contains(QLatin1String{" #1 < {\"cmd\":\"connect\"}\n"}));
}

void tst_ServiceSim::inputGoesToTheClients()
{
    Program program{quick + QStringList{QStringLiteral("--port"), QStringLiteral("0")}};
    TRY_VERIFY(program.port() != 0);
    Client client{program.port()};
    TRY_VERIFY(program.output.contains(QLatin1String{"#1 connected"}));
    program.write("notice: one\n\nerror: tw");
    TRY_COMPARE(client.bytes, QByteArray{"notice: one\n\n"});
    program.write("o\nlast");
    TRY_COMPARE(client.lines().size(), 3);
    program.closeWriteChannel();
    TRY_COMPARE(client.bytes, QByteArray{"notice: one\n\nerror: two\nlast\n"});
    client.clear();
    client.command("status");
    TRY_COMPARE(client.lines(), QStringList{QStringLiteral("status: stopped")});
}

void tst_ServiceSim::endsOnASignal_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void tst_ServiceSim::endsOnASignal()
{
    QFETCH(int, number);
    Program program{frozen + QStringList{QStringLiteral("--port"), QStringLiteral("0")}};
    TRY_VERIFY(program.port() != 0);
    Client client{program.port()};
    client.command("connect");
    TRY_COMPARE(client.lines().size(), 1);
    QCOMPARE(::kill(static_cast<pid_t>(program.processId()), number), 0);
    TRY_VERIFY(program.hasEnded());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    TRY_COMPARE(client.socket.state(), QAbstractSocket::UnconnectedState);
}

QTEST_GUILESS_MAIN(tst_ServiceSim)
#include "tst_servicesim.moc"
