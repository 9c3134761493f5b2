#pragma once

#include "ui/ToggleSwitch.h"

#include <QString>

#include <optional>

namespace ipc::protocol {
struct Message;
}

namespace ui {

/// What the main screen shows on account of what the service said or the user did. What is absent
/// stays as it is on the screen.
///
/// A value that knows no widget and holds no translation: the texts are those of the context
/// MainWindow, translated when they are shown.
struct Display
{
    /// The state of the switch with its word, which the status line and the tray show alike.
    struct State
    {
        ToggleSwitch::State toggle;
        const char *status;
    };

    /// The detail line.
    struct Pill
    {
        /// Null: `value` is shown as it came. Otherwise it takes the place of %1, if there is one.
        const char *text;
        QString value;
    };

    std::optional<State> state;
    std::optional<Pill> pill;

    /// The display after this one and then the later one.
    void add(Display later);
};

/// Nothing for a notice, an unknown message and an unknown status word.
Display displayOf(const ipc::protocol::Message &message);

} // namespace ui
