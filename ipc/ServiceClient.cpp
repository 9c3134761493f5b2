#include "ipc/ServiceClient.h"

#include "ipc/Protocol.h"
#include "ipc/ResetOnClose.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QNetworkProxy>
#include <QSignalBlocker>
#include <QTcpSocket>
#include <QTimer>

#include <chrono>

namespace ipc {

namespace {

constexpr std::chrono::milliseconds reconnectDelay{1500};

// A flood of lines gives way to painting and clicks this often.
constexpr qint64 readingSliceMs = 8;

} // namespace

ServiceClient::ServiceClient(QObject *parent)
    : QObject(parent)
    , socket(new QTcpSocket(this))
{
    // The loopback link must neither pass through a proxy of the session nor wait for one to be
    // looked up.
    socket->setProxy(QNetworkProxy::NoProxy);

    connect(socket, &QTcpSocket::readyRead, this, &ServiceClient::onReadyRead);
    connect(socket, &QTcpSocket::connected, this, &ServiceClient::onConnected);
    connect(socket, &QTcpSocket::disconnected, this, &ServiceClient::onDisconnected);
    connect(socket, &QTcpSocket::errorOccurred, this, [this] { scheduleReconnect(); });

    // readyRead() is held back while its own slot has not returned, for example because a dialog
    // runs in it; this signal is not.
    connect(socket, &QTcpSocket::channelReadyRead, this, [this] {
        if (!readingScheduled) {
            onReadyRead();
        }
    });
}

void ServiceClient::connectToService()
{
    if (socket->state() != QAbstractSocket::UnconnectedState) {
        return;
    }
    ++attempts;
    socket->connectToHost(QString{protocol::serviceHost}, protocol::servicePort,
                          QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
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
    QElapsedTimer slice;
    slice.start();
    moreFollows = socket->canReadLine();
    while (moreFollows && socket->canReadLine()) {
        const QByteArray line = socket->readLine();
        // With its length: a line does not end at a zero byte.
        const QString text = QString::fromUtf8(line.constData(), line.size()).trimmed();
        const bool another = socket->canReadLine();
        // A receiver that runs an event loop must not hold back what is known already.
        if (another || lossToReport) {
            scheduleReading();
        }
        moreFollows = another && !slice.hasExpired(readingSliceMs);
        Q_EMIT messageReceived(text);
    }
    moreFollows = false;
    if (lossToReport && !socket->canReadLine()) {
        lossToReport = false;
        Q_EMIT connectionChanged(false);
    }
}

void ServiceClient::onConnected()
{
    // While nobody listens there, Linux sooner or later gives this end the service's own port, and
    // the socket is connected to itself. The service must be able to listen there the next moment.
    if (socket->localPort() == protocol::servicePort) {
        // What never came up is not reported as lost either.
        const QSignalBlocker blocker{socket};
        resetOnClose(*socket);
        socket->abort();
        scheduleReconnect();
        return;
    }
    // Short commands sent one after another leave together instead of waiting for the
    // acknowledgement of the first.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    Q_EMIT connectionChanged(true);
}

void ServiceClient::onDisconnected()
{
    // Lines that wait for their slice still belong to this connection: they precede its loss, and
    // the next attempt would discard them.
    lossToReport = true;
    scheduleReconnect();
    // When its signal returns, the socket goes on to end this connection. If a dialog ran in the
    // signal, that would meanwhile be the next one.
    if (socket->canReadLine()) {
        scheduleReading();
    } else {
        onReadyRead();
    }
}

void ServiceClient::scheduleReconnect()
{
    // A loss is reported twice, as an error and as a disconnect, and arms two timers. The second
    // must not begin an attempt when the first one's has failed already, or each loss would
    // raise the pace.
    QTimer::singleShot(reconnectDelay, this, [this, lost = attempts] {
        if (attempts != lost) {
            return;
        }
        if (lossToReport) {
            scheduleReconnect();
        } else {
            connectToService();
        }
    });
}

void ServiceClient::scheduleReading()
{
    if (readingScheduled) {
        return;
    }
    readingScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            readingScheduled = false;
            onReadyRead();
        },
        Qt::QueuedConnection);
}

} // namespace ipc
