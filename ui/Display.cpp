#include "ui/Display.h"

#include "ipc/Protocol.h"

#include <QtGlobal>

#include <utility>

namespace ui {

namespace {

using ipc::protocol::MessageKind;
using ipc::protocol::ServiceState;

Display displayOfStatus(const QString &word)
{
    using State = ToggleSwitch::State;

    const Display::State connecting{State::Connecting,
                                    QT_TRANSLATE_NOOP("MainWindow", "Connecting…")};
    const Display::State off{State::Off, QT_TRANSLATE_NOOP("MainWindow", "Disconnected")};
    const Display::Pill idle{QT_TRANSLATE_NOOP("MainWindow", "Idle"), {}};

    switch (ipc::protocol::parseState(word)) {
    case ServiceState::Running:
        return {Display::State{State::On, QT_TRANSLATE_NOOP("MainWindow", "Connected")},
                Display::Pill{QT_TRANSLATE_NOOP("MainWindow", "Tunnel up"), {}}};
    case ServiceState::Fetching:
        return {connecting, Display::Pill{QT_TRANSLATE_NOOP("MainWindow", "Fetching config…"), {}}};
    case ServiceState::Starting:
    case ServiceState::Connecting:
        return {connecting, std::nullopt};
    case ServiceState::Stopping:
        return {
            Display::State{State::Disconnecting, QT_TRANSLATE_NOOP("MainWindow", "Disconnecting…")},
            std::nullopt};
    case ServiceState::Stopped:
    case ServiceState::Disconnected:
        return {off, idle};
    case ServiceState::SubscriptionExpired:
        return {Display::State{State::Error, QT_TRANSLATE_NOOP("MainWindow", "Error")},
                Display::Pill{QT_TRANSLATE_NOOP("MainWindow", "Subscription expired"), {}}};
    case ServiceState::Failed:
        return {Display::State{State::Error, QT_TRANSLATE_NOOP("MainWindow", "Failed")},
                Display::Pill{nullptr, word}};
    case ServiceState::Unknown:
        break;
    }
    return {};
}

} // namespace

void Display::add(Display later)
{
    if (later.state) {
        state = later.state;
    }
    if (later.pill) {
        pill = std::move(later.pill);
    }
}

Display displayOf(const ipc::protocol::Message &message)
{
    switch (message.kind) {
    case MessageKind::Status:
        return displayOfStatus(message.rest);
    case MessageKind::Error:
        return {
            Display::State{ToggleSwitch::State::Error, QT_TRANSLATE_NOOP("MainWindow", "Error")},
            Display::Pill{nullptr, message.rest}};
    case MessageKind::ConfigBytes:
        return {std::nullopt,
                Display::Pill{QT_TRANSLATE_NOOP("MainWindow", "Config %1 bytes"), message.rest}};
    case MessageKind::Notice:
    case MessageKind::Unknown:
        break;
    }
    return {};
}

} // namespace ui
