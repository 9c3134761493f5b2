#pragma once

#include "tools/service-sim/FaultPlan.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <deque>

class QTcpSocket;

namespace servicesim {

/// One client: lines in, lines out, and what the fault plan does to the latter.
///
/// What a client has sent is told even if the connection has ended meanwhile; what it is sent
/// after that end is dropped.
class Connection : public QObject
{
    Q_OBJECT

public:
    /// Takes `socket` over.
    Connection(QTcpSocket *socket, const FaultSettings &faults, quint32 number);

    /// Of this connection, counted from 1 since the simulator's start.
    quint32 number() const { return number_; }

    /// Sends the line and a line feed, or whatever the fault plan makes of it.
    void say(const QByteArray &line);
    /// Sends the line and a line feed, whatever the fault plan says; in its turn.
    void sendAsItStands(const QByteArray &line);

Q_SIGNALS:
    /// Without its line feed.
    void lineReceived(const QByteArray &line);
    /// What came was no line: it was too long, or the connection ended before its line feed.
    void lineBroken(const QString &what);
    /// A line has met its fate.
    void spoilt(const QString &how);
    void ended();

private:
    struct Action
    {
        enum class Kind { Write, Pause, Close, Reset };

        Kind kind;
        QByteArray bytes;
    };

    void onReadyRead();
    void onDisconnected();
    void enqueue(Action::Kind kind, const QByteArray &bytes = {});
    void work();

    QTcpSocket *socket;
    FaultPlan plan;
    quint32 number_;
    int linesPerSilence;
    int silentLines = 0;
    std::deque<Action> actions;
    QTimer pause;
    QByteArray unfinished;
    bool skipping = false;
};

} // namespace servicesim
