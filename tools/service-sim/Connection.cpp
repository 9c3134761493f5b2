#include "tools/service-sim/Connection.h"

#include "ipc/ResetOnClose.h"

#include <QTcpSocket>

#include <chrono>

namespace servicesim {

namespace {

// Long enough for the first piece to be read before the second one is there.
constexpr std::chrono::milliseconds pauseBetweenPieces{20};

constexpr int longestLine = 64 * 1024;

} // namespace

Connection::Connection(QTcpSocket *socket_, const FaultSettings &faults, quint32 number)
    : socket(socket_)
    , plan(faults, number)
    , number_(number)
    , linesPerSilence(faults.silentLines)
{
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, &Connection::onReadyRead);
    connect(socket, &QTcpSocket::disconnected, this, &Connection::onDisconnected);

    pause.setSingleShot(true);
    pause.setInterval(pauseBetweenPieces);
    connect(&pause, &QTimer::timeout, this, &Connection::work);
}

void Connection::say(const QByteArray &line)
{
    // A decision is drawn for lost lines too, so that the later ones stay the same.
    const FaultPlan::Decision decision = plan.next();
    if (silentLines > 0) {
        --silentLines;
        Q_EMIT spoilt(QStringLiteral("silent"));
        return;
    }
    const QByteArray whole = line + '\n';
    switch (decision.fault) {
    case Fault::None:
        enqueue(Action::Kind::Write, whole);
        break;
    case Fault::Close:
        Q_EMIT spoilt(QStringLiteral("close"));
        enqueue(Action::Kind::Close);
        break;
    case Fault::Reset:
        Q_EMIT spoilt(QStringLiteral("reset"));
        enqueue(Action::Kind::Reset);
        break;
    case Fault::Silence:
        Q_EMIT spoilt(QStringLiteral("silence"));
        silentLines = linesPerSilence - 1;
        break;
    case Fault::Split: {
        const int cut = 1 + static_cast<int>(decision.position * (whole.size() - 1));
        Q_EMIT spoilt(QStringLiteral("split after %1 of %2 bytes").arg(cut).arg(whole.size()));
        enqueue(Action::Kind::Write, whole.left(cut));
        enqueue(Action::Kind::Pause);
        enqueue(Action::Kind::Write, whole.mid(cut));
        break;
    }
    case Fault::Crlf:
        Q_EMIT spoilt(QStringLiteral("crlf"));
        enqueue(Action::Kind::Write, line + "\r\n");
        break;
    }
}

void Connection::sendAsItStands(const QByteArray &line)
{
    enqueue(Action::Kind::Write, line + '\n');
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

void Connection::enqueue(Action::Kind kind, const QByteArray &bytes)
{
    actions.push_back({kind, bytes});
    if (!pause.isActive()) {
        work();
    }
}

void Connection::work()
{
    while (!actions.empty() && socket->state() == QAbstractSocket::ConnectedState) {
        const Action action = actions.front();
        actions.pop_front();
        switch (action.kind) {
        case Action::Kind::Write:
            socket->write(action.bytes);
            socket->flush();
            break;
        case Action::Kind::Pause:
            pause.start();
            return;
        case Action::Kind::Close:
            socket->disconnectFromHost();
            return;
        case Action::Kind::Reset:
            ipc::resetOnClose(*socket);
            socket->abort();
            return;
        }
    }
}

} // namespace servicesim
