#include "tests/support/ScriptedService.h"

#include "ipc/Protocol.h"
#include "ipc/ResetOnClose.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace support {

namespace {

constexpr qint64 unlimited = 0;

} // namespace

ScriptedService::ScriptedService()
    : server(std::make_unique<QTcpServer>())
{
    connect(server.get(), &QTcpServer::newConnection, this, &ScriptedService::onNewConnection);
}

ScriptedService::~ScriptedService()
{
    stop();
}

void ScriptedService::listen()
{
    if (!server->listen(QHostAddress::LocalHost, ipc::protocol::servicePort)) {
        qFatal("The service's port is taken: %s", qPrintable(server->errorString()));
    }
}

void ScriptedService::stop()
{
    server->close();
    const std::vector<QTcpSocket *> old = std::exchange(sockets, {});
    for (QTcpSocket *socket : old) {
        socket->disconnect(this);
        delete socket;
    }
}

int ScriptedService::connected() const
{
    return static_cast<int>(sockets.size());
}

QList<QByteArray> ScriptedService::lines() const
{
    QList<QByteArray> whole = bytes.split('\n');
    whole.removeLast();
    return whole;
}

void ScriptedService::write(const QByteArray &raw)
{
    newest()->write(raw);
    newest()->flush();
}

void ScriptedService::sendLine(const QByteArray &line)
{
    write(line + '\n');
}

void ScriptedService::close()
{
    newest()->disconnectFromHost();
}

void ScriptedService::reset()
{
    ipc::resetOnClose(*newest());
    newest()->abort();
}

void ScriptedService::ignoreInput(bool on)
{
    // A full read buffer keeps Qt from reading the socket.
    newest()->setReadBufferSize(on ? 1 : unlimited);
    if (!on) {
        bytes += newest()->readAll();
        Q_EMIT dataReceived();
    }
}

void ScriptedService::onNewConnection()
{
    while (QTcpSocket *const socket = server->nextPendingConnection()) {
        ++acceptedCount;
        times.append(QDeadlineTimer::current().deadline());
        socket->setParent(this);
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        sockets.push_back(socket);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            if (socket->readBufferSize() == unlimited) {
                bytes += socket->readAll();
                Q_EMIT dataReceived();
            }
        });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            sockets.erase(std::remove(sockets.begin(), sockets.end(), socket), sockets.end());
            socket->deleteLater();
        });
        Q_EMIT clientConnected();
        if (resetting) {
            // A client on the same thread must see its connection before it sees the reset.
            QTimer::singleShot(0, socket, [socket] {
                ipc::resetOnClose(*socket);
                socket->abort();
            });
        }
    }
}

QTcpSocket *ScriptedService::newest() const
{
    if (sockets.empty()) {
        qFatal("No client is connected to the scripted service");
    }
    return sockets.back();
}

} // namespace support
