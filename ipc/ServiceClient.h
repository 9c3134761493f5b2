#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QTimer>

#include <deque>

class QTcpSocket;

namespace ipc {

/// The TCP connection to the background service on the loopback interface: sends commands, receives
/// text lines and reconnects for ever.
///
/// It does not know what commands and lines mean (see Protocol.h), keeps no queue of commands and
/// reports no errors. A receiver of its signals must not destroy the client.
class ServiceClient : public QObject
{
    Q_OBJECT

public:
    /// Does not connect yet.
    explicit ServiceClient(QObject *parent);

    /// Starts an attempt unless the client is connecting or connected. After each loss or refusal
    /// the client reconnects by itself in 1500 ms.
    void connectToService();

    void send(const QString &cmd);
    /// Writes one line at once: a compact JSON object of `args` and the key "cmd", keys sorted.
    /// Without a connection the command is dropped.
    void send(const QString &cmd, const QJsonObject &args);

    /// In a receiver of messageReceived(): true if the next line is reported before anything can be
    /// painted.
    bool hasPendingLine() const { return pendingLine; }

Q_SIGNALS:
    /// One line, decoded as UTF-8 (invalid bytes become U+FFFD) and trimmed; may be empty. A
    /// receiver may run a nested event loop, in which further lines are reported in their order.
    void messageReceived(QString text);

    /// False comes after all lines of the connection. A refused attempt is not reported.
    void connectionChanged(bool connected);

private Q_SLOTS:
    void onReadyRead();
    void onConnected();
    void onDisconnected();

private:
    struct Event
    {
        enum class Kind { Up, Lines, Down };
        Kind kind;
        /// Complete lines, in one buffer: millions of short ones need no more memory than that.
        QByteArray lines;
    };

    void scheduleReconnect();
    void record(Event event);
    QByteArray takeLine();
    /// Called only by the event loop, so that a receiver may run a nested one.
    void report();

    QTcpSocket *socket;
    QTimer reconnection;
    QTimer reporting;
    std::deque<Event> events;
    /// Of the first event's lines.
    int reportedBytes = 0;
    bool pendingLine = false;
};

} // namespace ipc
