#pragma once

#include "tools/service-sim/Command.h"
#include "tools/service-sim/Options.h"
#include "tools/service-sim/Tunnel.h"

#include <QObject>
#include <QString>
#include <QTcpServer>

#include <vector>

namespace servicesim {

class Connection;

/// The service as its clients see it: changes of the tunnel are reported to all of them, an answer
/// goes only to the client that asked.
class Simulator : public QObject
{
    Q_OBJECT

public:
    explicit Simulator(const Options &options);
    ~Simulator() override;

    /// False if the port is taken or forbidden; errorString() then says why.
    bool listen();
    QString errorString() const { return server.errorString(); }
    quint16 port() const { return server.serverPort(); }

    /// Sends the line unchanged, with a line feed, to every client.
    void sendAsItStands(const QByteArray &line);

    /// The values that a client set last; empty until then.
    const QString &language() const { return language_; }
    const QString &referralCode() const { return referralCode_; }

Q_SIGNALS:
    /// One line for the journal, with its time: every command that came, every line that went out,
    /// every connection's start and end.
    void noted(const QString &entry);

private:
    void onNewConnection();
    void onLine(Connection *connection, const QByteArray &line);
    void obey(Connection *connection, const Command &command);
    void sayToAll(const QString &line);
    void say(Connection *connection, const QString &line);
    void note(const QString &text);
    void note(const Connection *connection, const QString &text);

    Options options;
    QTcpServer server;
    Tunnel tunnel;
    std::vector<Connection *> connections;
    quint32 accepted = 0;
    QString language_;
    QString referralCode_;
};

} // namespace servicesim
