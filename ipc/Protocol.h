#pragma once

#include <QLatin1String>
#include <QString>

#include <cstddef>

/// The words of the protocol with the background service: JSON commands out, text lines in.
namespace ipc::protocol {

template <std::size_t N> constexpr QLatin1String word(const char (&text)[N])
{
    return QLatin1String{text, static_cast<int>(N) - 1};
}

inline constexpr QLatin1String serviceHost = word("127.0.0.1");
inline constexpr quint16 servicePort = 47652;

inline constexpr QLatin1String commandKey = word("cmd");
inline constexpr QLatin1String languageKey = word("lang");
inline constexpr QLatin1String referralCodeKey = word("code");

inline constexpr QLatin1String connectCommand = word("connect");
inline constexpr QLatin1String disconnectCommand = word("disconnect");
inline constexpr QLatin1String statusCommand = word("status");
inline constexpr QLatin1String setLanguageCommand = word("set-lang");
inline constexpr QLatin1String setReferralCommand = word("set-referral");

inline constexpr QLatin1String statusPrefix = word("status: ");
inline constexpr QLatin1String errorPrefix = word("error: ");
inline constexpr QLatin1String configBytesPrefix = word("config-bytes: ");
inline constexpr QLatin1String noticePrefix = word("notice: ");

/// The error text that is a state of its own.
inline constexpr QLatin1String subscriptionExpired = word("subscription_expired");

enum class MessageKind { Status, Error, ConfigBytes, Notice, Unknown };

/// A parsed line from the service.
struct Message
{
    MessageKind kind;
    /// The text after the prefix; empty if the kind is Unknown. The error of an expired
    /// subscription has the kind Status, because both spellings mean the same.
    QString rest;
};

/// Parses a trimmed line. Prefixes are case-sensitive and include their space: "status:running" is
/// Unknown.
Message parseMessage(const QString &line);

/// The states that the service reports, in the order in which the words are matched.
enum class ServiceState {
    Running,
    Fetching,
    Starting,
    Connecting,
    Stopping,
    Stopped,
    Disconnected,
    SubscriptionExpired,
    Failed,
    Unknown
};

/// Case-sensitive. "fetching" and "failed" are prefixes, the others must be the whole word.
ServiceState parseState(const QString &stateWord);

} // namespace ipc::protocol
