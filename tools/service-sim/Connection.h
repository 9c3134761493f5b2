#pragma once

#include <QByteArray>
#include <QObject>

class QTcpSocket;

namespace servicesim {

/// One client: lines in, lines out.
///
/// Lines that a client has sent are reported even if the connection has ended meanwhile; lines sent
/// to it after the end are dropped.
class Connection : public QObject
{
    Q_OBJECT

public:
    /// Takes ownership of `socket`.
    Connection(QTcpSocket *socket, quint32 number);

    /// Connections are counted from 1 since the simulator's start.
    quint32 number() const { return number_; }

    /// Sends the line and a line feed.
    void say(const QByteArray &line);

Q_SIGNALS:
    /// Without its line feed.
    void lineReceived(const QByteArray &line);
    /// What came was not a line: it was too long, or the connection ended before its line feed.
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
