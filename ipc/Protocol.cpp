#include "ipc/Protocol.h"

#include <algorithm>
#include <array>

namespace ipc::protocol {

namespace {

struct PrefixRow
{
    QLatin1String prefix;
    MessageKind kind;
};

constexpr std::array prefixRows{
    PrefixRow{statusPrefix, MessageKind::Status},
    PrefixRow{errorPrefix, MessageKind::Error},
    PrefixRow{configBytesPrefix, MessageKind::ConfigBytes},
    PrefixRow{noticePrefix, MessageKind::Notice},
};

enum class Match { Whole, Beginning };

struct StateRow
{
    QLatin1String word;
    Match match;
    ServiceState state;
};

constexpr std::array stateRows{
    StateRow{word("running"), Match::Whole, ServiceState::Running},
    StateRow{word("fetching"), Match::Beginning, ServiceState::Fetching},
    StateRow{word("starting"), Match::Whole, ServiceState::Starting},
    StateRow{word("connecting"), Match::Whole, ServiceState::Connecting},
    StateRow{word("stopping"), Match::Whole, ServiceState::Stopping},
    StateRow{word("stopped"), Match::Whole, ServiceState::Stopped},
    StateRow{word("disconnected"), Match::Whole, ServiceState::Disconnected},
    StateRow{subscriptionExpired, Match::Whole, ServiceState::SubscriptionExpired},
    StateRow{word("failed"), Match::Beginning, ServiceState::Failed},
};

} // namespace

Message parseMessage(const QString &line)
{
    const auto row =
        std::find_if(prefixRows.begin(), prefixRows.end(),
                     [&line](const PrefixRow &r) { return line.startsWith(r.prefix); });
    if (row == prefixRows.end()) {
        return {MessageKind::Unknown, {}};
    }
    QString rest = line.mid(row->prefix.size());
    if (row->kind == MessageKind::Error && rest == subscriptionExpired) {
        return {MessageKind::Status, std::move(rest)};
    }
    return {row->kind, std::move(rest)};
}

ServiceState parseState(const QString &stateWord)
{
    const auto row =
        std::find_if(stateRows.begin(), stateRows.end(), [&stateWord](const StateRow &r) {
            return r.match == Match::Whole ? stateWord == r.word : stateWord.startsWith(r.word);
        });
    return row == stateRows.end() ? ServiceState::Unknown : row->state;
}

} // namespace ipc::protocol
