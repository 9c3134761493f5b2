#include "tools/service-sim/Command.h"

#include "ipc/Protocol.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace servicesim {

namespace {

namespace protocol = ipc::protocol;

struct CommandRow
{
    QLatin1String name;
    Command::Kind kind;
    /// Of the argument; empty if the command takes none.
    QLatin1String key;
};

constexpr std::array commandRows{
    CommandRow{protocol::connectCommand, Command::Kind::Connect, {}},
    CommandRow{protocol::disconnectCommand, Command::Kind::Disconnect, {}},
    CommandRow{protocol::statusCommand, Command::Kind::Status, {}},
    CommandRow{protocol::setLanguageCommand, Command::Kind::SetLanguage, protocol::languageKey},
    CommandRow{protocol::setReferralCommand, Command::Kind::SetReferral, protocol::referralCodeKey},
};

bool isAcceptable(const Command &command)
{
    static const QRegularExpression referralCode{QStringLiteral("\\A[A-Za-z0-9]{6}\\z")};
    switch (command.kind) {
    case Command::Kind::SetLanguage:
        return !command.argument.isEmpty();
    case Command::Kind::SetReferral:
        return referralCode.match(command.argument).hasMatch();
    default:
        return true;
    }
}

ParsedCommand faulty(const QString &fault)
{
    return {std::nullopt, fault};
}

} // namespace

ParsedCommand parseCommand(const QByteArray &line)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError) {
        return faulty(error.errorString());
    }
    if (!document.isObject()) {
        return faulty(QStringLiteral("not an object"));
    }
    const QJsonObject object = document.object();
    const QJsonValue name = object.value(protocol::commandKey);
    if (!name.isString()) {
        return faulty(QStringLiteral("no command"));
    }
    const auto row =
        std::find_if(commandRows.begin(), commandRows.end(),
                     [wanted = name.toString()](const CommandRow &r) { return wanted == r.name; });
    if (row == commandRows.end()) {
        return faulty(QStringLiteral("unknown command"));
    }

    Command command{row->kind, {}};
    int keys = 1;
    if (row->key.size() > 0) {
        const QJsonValue argument = object.value(row->key);
        if (!argument.isString()) {
            return faulty(QStringLiteral("no \"%1\"").arg(row->key));
        }
        command.argument = argument.toString();
        ++keys;
    }
    if (object.size() != keys) {
        return faulty(QStringLiteral("keys that the command does not have"));
    }
    if (!isAcceptable(command)) {
        return faulty(QStringLiteral("unusable \"%1\"").arg(row->key));
    }
    return {command, {}};
}

} // namespace servicesim
