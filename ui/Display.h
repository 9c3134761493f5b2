#pragma once

#include "ui/ToggleSwitch.h"

#include <QString>

#include <optional>

namespace ipc::protocol {
struct Message;
}

namespace ui {

/// A change of the main screen after a message or a click. What is absent stays as it is. The texts
/// are source texts of the context MainWindow.
struct Display
{
    /// The switch's state and the text of the status line and the tray.
    struct State
    {
        ToggleSwitch::State toggle;
        const char *status;
    };

    struct Pill
    {
        /// `value` replaces %1; without a text `value` is shown untranslated.
        const char *text;
        QString value;
    };

    std::optional<State> state;
    std::optional<Pill> pill;

    /// Applies a later change on top of this one.
    void add(Display later);
};

/// Nothing for a notice, an unknown message and an unknown status word.
Display displayOf(const ipc::protocol::Message &message);

} // namespace ui
