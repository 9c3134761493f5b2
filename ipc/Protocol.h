#pragma once

#include <QLatin1String>
#include <QString>

#include <cstddef>

/// The vocabulary spoken with the background service: JSON commands out, text lines in.
///
/// Knows words and their order of matching. Knows neither the connection that carries them
/// (ServiceClient) nor what any of them shows to the user (MainWindow).
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

/// The one error text that is a state of its own.
inline constexpr QLatin1String subscriptionExpired = word("subscription_expired");

enum class MessageKind { Status, Error, ConfigBytes, Notice, Unknown };

/// One line from the service, taken apart.
struct Message
{
    MessageKind kind;
    /// What follows the prefix, unchanged. For an error that reports the expired subscription
    /// the kind is Status, since both spellings mean the same. Empty if the kind is Unknown.
    QString rest;
};

/// Takes apart a line that is already free of white space at its ends. Prefixes are compared
/// case-sensitively and include their blank: "status:running" is Unknown.
Message parseMessage(const QString &line);

/// The states that the service reports, in the order in which the words are tried.
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

/// Case-sensitive. "fetching" and "failed" match any word that begins with them, the others
/// only the whole word; what matches nothing is Unknown.
ServiceState parseState(const QString &stateWord);

} // namespace ipc::protocol
