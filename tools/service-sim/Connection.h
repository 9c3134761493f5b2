#pragma once

#include <QByteArray>
#include <QObject>

class QTcpSocket;

namespace servicesim {

/// One client: lines in, lines out.
///
/// What a client has sent is told even if the connection has ended meanwhile; what it is sent
/// after that end is dropped.
class Connection : public QObject
{
    Q_OBJECT

public:
    /// Takes `socket` over.
    Connection(QTcpSocket *socket, quint32 number);

    /// Of this connection, counted from 1 since the simulator's start.
    quint32 number() const { return number_; }

    /// Sends the line and a line feed.
    void say(const QByteArray &line);

Q_SIGNALS:
    /// Without its line feed.
    void lineReceived(const QByteArray &line);
    /// What came was no line: it was too long, or the connection ended before its line feed.
    void lineBroken(const QString &what);
    void ended();

private:
    void onReadyRead();
    void onDisconnected();

    QTcpSocket *socket;
    quint32 number_;
    QByteArray unfinished;
    bool skipping = false;
};

} // namespace servicesim
