#include "tools/service-sim/Simulator.h"

#include "tools/service-sim/Connection.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTime>
#include <QTimer>

#include <algorithm>

namespace servicesim {

namespace {

constexpr int longestQuotation = 200;

// Bytes from outside must neither break the journal's lines nor reach the terminal as commands.
QString quoted(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes.left(longestQuotation));
    QString harmless;
    for (const QChar c : text) {
        if (c.isPrint() || c.isSurrogate()) {
            harmless += c;
        } else {
            harmless += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char{'0'});
        }
    }
    return bytes.size() > longestQuotation ? harmless + QLatin1String{"..."} : harmless;
}

} // namespace

Simulator::Simulator(const Options &options_)
    : options(options_)
    , tunnel(options_.tunnel)
{
    connect(&server, &QTcpServer::newConnection, this, &Simulator::onNewConnection);
    connect(&tunnel, &Tunnel::said, this, &Simulator::sayToAll);
}

Simulator::~Simulator()
{
    for (Connection *const connection : connections) {
        connection->disconnect(this);
        delete connection;
    }
}

bool Simulator::listen()
{
    return server.listen(QHostAddress{QString{ipc::protocol::serviceHost}}, options.port);
}

void Simulator::sendAsItStands(const QByteArray &line)
{
    note(QStringLiteral("> as it stands: %1").arg(quoted(line)));
    for (Connection *const connection : std::vector{connections}) {
        connection->say(line);
    }
}

void Simulator::onNewConnection()
{
    while (QTcpSocket *const socket = server.nextPendingConnection()) {
        auto *const connection = new Connection{socket, ++accepted};
        connection->setParent(this);
        connections.push_back(connection);
        note(connection, QStringLiteral("connected"));

        connect(connection, &Connection::lineReceived, this,
                [this, connection](const QByteArray &line) { onLine(connection, line); });
        connect(connection, &Connection::lineBroken, this, [this, connection](const QString &what) {
            note(connection, QStringLiteral("malformed: %1").arg(what));
        });
        connect(connection, &Connection::ended, this, [this, connection] {
            connections.erase(std::remove(connections.begin(), connections.end(), connection),
                              connections.end());
            note(connection, QStringLiteral("disconnected"));
            connection->deleteLater();
        });
        for (const Notice &notice : options.notices) {
            QTimer::singleShot(notice.delay, connection, [this, connection, text = notice.text] {
                say(connection, ipc::protocol::noticePrefix + text);
            });
        }
    }
}

void Simulator::onLine(Connection *connection, const QByteArray &line)
{
    note(connection, QStringLiteral("< %1").arg(quoted(line)));
    const ParsedCommand parsed = parseCommand(line);
    if (parsed.command) {
        obey(connection, *parsed.command);
    } else {
        note(connection, QStringLiteral("malformed: %1").arg(parsed.fault));
    }
}

void Simulator::obey(Connection *connection, const Command &command)
{
    bool answered = false;
    switch (command.kind) {
    case Command::Kind::Connect:
        answered = tunnel.requestUp();
        break;
    case Command::Kind::Disconnect:
        answered = tunnel.requestDown();
        break;
    case Command::Kind::Status:
        break;
    case Command::Kind::SetLanguage:
        language_ = command.argument;
        note(QStringLiteral("language: %1").arg(quoted(language_.toUtf8())));
        answered = true;
        break;
    case Command::Kind::SetReferral:
        referralCode_ = command.argument;
        note(QStringLiteral("referral code: %1").arg(referralCode_));
        answered = true;
        break;
    }
    if (!answered) {
        say(connection, tunnel.stateLine());
    }
}

void Simulator::sayToAll(const QString &line)
{
    note(QStringLiteral("> %1").arg(line));
    for (Connection *const connection : std::vector{connections}) {
        connection->say(line.toUtf8());
    }
}

void Simulator::say(Connection *connection, const QString &line)
{
    note(connection, QStringLiteral("> %1").arg(line));
    connection->say(line.toUtf8());
}

void Simulator::note(const QString &text)
{
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    Q_EMIT noted(QStringLiteral("%1 %2").arg(time, text));
}

void Simulator::note(const Connection *connection, const QString &text)
{
    note(QStringLiteral("#%1 %2").arg(connection->number()).arg(text));
}

} // namespace servicesim
