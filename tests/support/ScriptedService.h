#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>

#include <memory>
#include <vector>

class QTcpServer;
class QTcpSocket;

namespace support {

/// A service under the test's control, on the port that the client expects. By itself it only
/// records connections and lines.
class ScriptedService : public QObject
{
    Q_OBJECT

public:
    ScriptedService();
    ~ScriptedService() override;

    /// Takes the port; ends the test run if another program has it.
    void listen();
    /// Releases the port and closes every connection, as a service that ends does.
    void stop();

    /// How many connections have been accepted since construction.
    int accepted() const { return acceptedCount; }
    /// How many of them are up now.
    int connected() const;
    /// When each connection was accepted, in milliseconds of a monotonic clock.
    const QList<qint64> &acceptTimes() const { return times; }

    /// All bytes and all whole lines, without line feeds, received since construction or clear().
    const QByteArray &received() const { return bytes; }
    QList<QByteArray> lines() const;
    void clear() { bytes.clear(); }

    /// Writes to the newest connection, at once and unchanged.
    void write(const QByteArray &raw);
    /// write() with a line feed.
    void sendLine(const QByteArray &line);
    /// Closes the newest connection properly.
    void close();
    /// Ends the newest connection with a reset.
    void reset();
    /// From now on every connection is reset as soon as the client has had its turn to see it.
    void resetEveryone(bool on) { resetting = on; }
    /// True stops reading the newest connection, so that the system's buffers fill up; false reads
    /// everything after all.
    void ignoreInput(bool on);

Q_SIGNALS:
    void clientConnected();
    void dataReceived();

private:
    void onNewConnection();
    QTcpSocket *newest() const;

    std::unique_ptr<QTcpServer> server;
    std::vector<QTcpSocket *> sockets;
    QList<qint64> times;
    QByteArray bytes;
    int acceptedCount = 0;
    bool resetting = false;
};

} // namespace support
