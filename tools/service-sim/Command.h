#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace servicesim {

/// What a client can ask of the service.
struct Command
{
    enum class Kind { Connect, Disconnect, Status, SetLanguage, SetReferral };

    Kind kind;
    /// The language tag or the referral code; empty for the other commands.
    QString argument;
};

struct ParsedCommand
{
    std::optional<Command> command;
    /// Why there is no command.
    QString fault;
};

/// Parses one line without its line feed. Stricter than a service need be, so that a client that
/// sends too much is noticed: keys that the command does not have are a fault.
ParsedCommand parseCommand(const QByteArray &line);

} // namespace servicesim
