#include "ipc/ServiceClient.h"

#include "ipc/Protocol.h"
#include "ipc/ResetOnClose.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QNetworkProxy>
#include <QSignalBlocker>
#include <QTcpSocket>

#include <chrono>
#include <utility>

namespace ipc {

namespace {

constexpr std::chrono::milliseconds reconnectDelay{1500};

// During a flood of lines, painting and clicks get their turn this often.
constexpr qint64 reportingSliceMs = 8;

} // namespace

ServiceClient::ServiceClient(QObject *parent)
    : QObject(parent)
    , socket(new QTcpSocket(this))
{
    // Otherwise Qt would look up the session's proxy.
    socket->setProxy(QNetworkProxy::NoProxy);

    connect(socket, &QTcpSocket::readyRead, this, &ServiceClient::onReadyRead);
    connect(socket, &QTcpSocket::connected, this, &ServiceClient::onConnected);
    connect(socket, &QTcpSocket::disconnected, this, &ServiceClient::onDisconnected);

    reconnection.setSingleShot(true);
    reconnection.setTimerType(Qt::PreciseTimer);
    reconnection.setInterval(reconnectDelay);
    connect(&reconnection, &QTimer::timeout, this, &ServiceClient::connectToService);
    connect(socket, &QTcpSocket::errorOccurred, this, [this] { scheduleReconnect(); });

    reporting.setSingleShot(true);
    reporting.setInterval(0);
    connect(&reporting, &QTimer::timeout, this, &ServiceClient::report);
}

void ServiceClient::connectToService()
{
    if (socket->state() == QAbstractSocket::UnconnectedState) {
        socket->connectToHost(QString{protocol::serviceHost}, protocol::servicePort);
    }
}

void ServiceClient::send(const QString &cmd)
{
    send(cmd, {});
}

void ServiceClient::send(const QString &cmd, const QJsonObject &args)
{
    if (socket->state() != QAbstractSocket::ConnectedState) {
        return;
    }
    QJsonObject command = args;
    command.insert(protocol::commandKey, cmd);
    socket->write(QJsonDocument{command}.toJson(QJsonDocument::Compact) + '\n');
    socket->flush();
}

void ServiceClient::onReadyRead()
{
    if (socket->canReadLine()) {
        const int end = socket->peek(socket->bytesAvailable()).lastIndexOf('\n') + 1;
        record({Event::Kind::Lines, socket->read(end)});
    }
}

void ServiceClient::onConnected()
{
    // While no service listens, Linux may give this socket the service's port and connect it to
    // itself. The service must be able to listen on that port at once.
    if (socket->localPort() == protocol::servicePort) {
        // A connection that was not reported is not reported as lost.
        const QSignalBlocker blocker{socket};
        resetOnClose(*socket);
        socket->abort();
        scheduleReconnect();
        return;
    }
    // A command does not wait for the acknowledgement of the one before.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    record({Event::Kind::Up, {}});
}

void ServiceClient::onDisconnected()
{
    onReadyRead();
    record({Event::Kind::Down, {}});
    scheduleReconnect();
}

void ServiceClient::scheduleReconnect()
{
    // Qt reports a loss as an error and as a disconnect; one timer makes one attempt.
    reconnection.start();
}

void ServiceClient::record(Event event)
{
    events.push_back(std::move(event));
    reporting.start();
}

QByteArray ServiceClient::takeLine()
{
    const QByteArray &lines = events.front().lines;
    const int end = lines.indexOf('\n', reportedBytes) + 1;
    QByteArray line = lines.mid(reportedBytes, end - reportedBytes);
    reportedBytes = end;
    if (end == lines.size()) {
        events.pop_front();
        reportedBytes = 0;
    }
    return line;
}

void ServiceClient::report()
{
    QElapsedTimer slice;
    slice.start();
    do {
        const Event::Kind kind = events.front().kind;
        QByteArray line;
        if (kind == Event::Kind::Lines) {
            line = takeLine();
        } else {
            events.pop_front();
        }
        if (events.empty()) {
            reporting.stop();
        } else {
            reporting.start();
        }
        pendingLine = !events.empty() && events.front().kind == Event::Kind::Lines &&
                      !slice.hasExpired(reportingSliceMs);
        if (kind == Event::Kind::Lines) {
            // A line does not end at a null byte.
            Q_EMIT messageReceived(QString::fromUtf8(line.constData(), line.size()).trimmed());
        } else {
            Q_EMIT connectionChanged(kind == Event::Kind::Up);
        }
    } while (pendingLine && !events.empty());
    pendingLine = false;
}

} // namespace ipc
