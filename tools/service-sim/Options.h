#pragma once

#include "tools/service-sim/Tunnel.h"

#include "ipc/Protocol.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <chrono>
#include <optional>

namespace servicesim {

struct Notice
{
    /// After the client has connected.
    std::chrono::milliseconds delay;
    QString text;
};

struct Options
{
    /// 0 stands for any free port.
    quint16 port = ipc::protocol::servicePort;
    bool quiet = false;
    TunnelSettings tunnel;
    QVector<Notice> notices;
};

/// The outcome of parsing a command line: exactly one of the three is set.
struct ParsedOptions
{
    std::optional<Options> options;
    /// What `--help` prints.
    QString help;
    QString fault;
};

/// `arguments` begins with the program's name.
ParsedOptions parseOptions(const QStringList &arguments);

} // namespace servicesim
