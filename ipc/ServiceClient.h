#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QTimer>

#include <deque>

class QTcpSocket;

namespace ipc {

/// The one connection to the background service: a TCP connection on the loopback interface that is
/// made again for ever, commands out, text lines in. A connection to itself is none.
///
/// It does not know what commands and lines mean (see Protocol.h), keeps no queue of commands
/// and reports no errors: a service that is not there shows only as the lack of a connection.
/// Everything happens on the thread of its owner, who must not destroy the client from within a
/// receiver of its signals.
class ServiceClient : public QObject
{
    Q_OBJECT

public:
    /// Does not connect yet.
    explicit ServiceClient(QObject *parent);

    /// Begins an attempt unless one is under way or the connection stands. To be called once;
    /// from then on the client comes back by itself, 1500 ms after each loss or refusal.
    void connectToService();

    void send(const QString &cmd);
    /// Writes one line: a compact JSON object of `args` and the key "cmd", keys sorted, which
    /// leaves at once. Without a connection the command is dropped without a trace.
    void send(const QString &cmd, const QJsonObject &args);

    /// While messageReceived() reports a line: true if the next one is reported right after it,
    /// before anything can be painted. Only a receiver that runs an event loop is first.
    bool moreToCome() const { return moreFollows; }

Q_SIGNALS:
    /// One line, decoded as UTF-8 (invalid bytes become U+FFFD) and trimmed; may be empty.
    ///
    /// A receiver may run an event loop of its own: further lines go on arriving meanwhile, in
    /// their order.
    void messageReceived(QString text);

    /// True when the connection has come up, false when it is lost, after all its lines. A refused
    /// attempt was never connected and is not reported.
    void connectionChanged(bool connected);

private Q_SLOTS:
    void onReadyRead();
    void onConnected();
    void onDisconnected();

private:
    /// What has happened to the connection, in its order.
    struct Event
    {
        enum class Kind { Up, Line, Down };
        Kind kind;
        QByteArray line;
    };

    void scheduleReconnect();
    void record(Event event);
    /// From the event loop only, so that a receiver may run one of its own.
    void report();

    QTcpSocket *socket;
    QTimer reconnection;
    QTimer reporting;
    std::deque<Event> events;
    bool moreFollows = false;
};

} // namespace ipc
