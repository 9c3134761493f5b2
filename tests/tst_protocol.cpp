#include "ipc/Protocol.h"

#include <QTest>

using namespace ipc::protocol;

Q_DECLARE_METATYPE(ipc::protocol::MessageKind)
Q_DECLARE_METATYPE(ipc::protocol::ServiceState)

class tst_Protocol : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messages_data();
    void messages();
    void states_data();
    void states();
};

void tst_Protocol::messages_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<MessageKind>("kind");
    QTest::addColumn<QString>("rest");

    const auto row = [](const char *name, const char *line, MessageKind kind, const char *rest) {
        QTest::newRow(name) << QString::fromUtf8(line) << kind << QString::fromUtf8(rest);
    };
    row("status", "status: running", MessageKind::Status, "running");
    row("error", "error: no route", MessageKind::Error, "no route");
    row("config size", "config-bytes: 2048", MessageKind::ConfigBytes, "2048");
    row("notice", "notice: Hello <b>you</b>", MessageKind::Notice, "Hello <b>you</b>");
    row("expired as error is a status", "error: subscription_expired", MessageKind::Status,
        "subscription_expired");
    row("expired as status", "status: subscription_expired", MessageKind::Status,
        "subscription_expired");
    row("expired with a capital is an error", "error: Subscription_expired", MessageKind::Error,
        "Subscription_expired");
    row("expired with a tail is an error", "error: subscription_expired!", MessageKind::Error,
        "subscription_expired!");
    row("further blanks stay", "status:   running", MessageKind::Status, "  running");
    row("prefix inside the rest", "error: status: running", MessageKind::Error, "status: running");
    row("beyond ASCII", "error: Ошибка 日本", MessageKind::Error, "Ошибка 日本");
    row("not a number", "config-bytes: 12k", MessageKind::ConfigBytes, "12k");
    row("nothing", "", MessageKind::Unknown, "");
    row("no blank", "status:running", MessageKind::Unknown, "");
    row("capital", "Status: running", MessageKind::Unknown, "");
    row("trimmed to the bare prefix", "notice:", MessageKind::Unknown, "");
    row("not at the beginning", " status: running", MessageKind::Unknown, "");
    row("other word", "hello: there", MessageKind::Unknown, "");
    row("our own command", R"({"cmd":"status"})", MessageKind::Unknown, "");
}

void tst_Protocol::messages()
{
    QFETCH(QString, line);
    const Message message = parseMessage(line);
    QTEST(message.kind, "kind");
    QTEST(message.rest, "rest");
}

void tst_Protocol::states_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<ServiceState>("state");

    const auto row = [](const char *word, ServiceState state) {
        QTest::newRow(word) << QString::fromUtf8(word) << state;
    };
    row("running", ServiceState::Running);
    row("fetching", ServiceState::Fetching);
    row("fetching config", ServiceState::Fetching);
    row("fetchingconfig", ServiceState::Fetching);
    row("starting", ServiceState::Starting);
    row("connecting", ServiceState::Connecting);
    row("stopping", ServiceState::Stopping);
    row("stopped", ServiceState::Stopped);
    row("disconnected", ServiceState::Disconnected);
    row("subscription_expired", ServiceState::SubscriptionExpired);
    row("failed", ServiceState::Failed);
    row("failed: timeout", ServiceState::Failed);
    row("failedtimeout", ServiceState::Failed);

    row("Running", ServiceState::Unknown);
    row("running now", ServiceState::Unknown);
    row(" running", ServiceState::Unknown);
    row("fetchin", ServiceState::Unknown);
    row("Fetching", ServiceState::Unknown);
    row("starting up", ServiceState::Unknown);
    row("connecting…", ServiceState::Unknown);
    row("stopping!", ServiceState::Unknown);
    row("stopped.", ServiceState::Unknown);
    row("disconnected by peer", ServiceState::Unknown);
    row("subscription_expired ", ServiceState::Unknown);
    row("Failed", ServiceState::Unknown);
    row("faile", ServiceState::Unknown);
    row("xyzzy", ServiceState::Unknown);
    row("", ServiceState::Unknown);
}

void tst_Protocol::states()
{
    QFETCH(QString, word);
    QTEST(parseState(word), "state");
}

QTEST_GUILESS_MAIN(tst_Protocol)

#include "tst_protocol.moc"
