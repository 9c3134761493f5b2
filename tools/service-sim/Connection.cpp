#include "tools/service-sim/Connection.h"

#include <QTcpSocket>

namespace servicesim {

namespace {

constexpr int longestLine = 64 * 1024;

} // namespace

Connection::Connection(QTcpSocket *socket_, quint32 number)
    : socket(socket_)
    , number_(number)
{
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, &Connection::onReadyRead);
    connect(socket, &QTcpSocket::disconnected, this, &Connection::onDisconnected);
}

void Connection::say(const QByteArray &line)
{
    socket->write(line + '\n');
    socket->flush();
}

void Connection::onReadyRead()
{
    unfinished += socket->readAll();
    int end = 0;
    while ((end = unfinished.indexOf('\n')) >= 0) {
        const QByteArray line = unfinished.left(end);
        unfinished.remove(0, end + 1);
        if (!skipping) {
            Q_EMIT lineReceived(line);
        }
        skipping = false;
    }
    if (unfinished.size() > longestLine) {
        unfinished.clear();
        if (!skipping) {
            skipping = true;
            Q_EMIT lineBroken(QStringLiteral("longer than %1 bytes").arg(longestLine));
        }
    }
}

void Connection::onDisconnected()
{
    if (socket->isOpen()) {
        onReadyRead();
    }
    if (!unfinished.isEmpty()) {
        Q_EMIT lineBroken(QStringLiteral("no line feed at the end"));
    }
    Q_EMIT ended();
}

} // namespace servicesim
