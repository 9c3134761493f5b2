#pragma once

#include <QByteArray>

class QWidget;

namespace app {

/// What the desktop gave a start of the program, so that the window which answers it may take the
/// foreground. Both may be empty.
struct LaunchContext
{
    /// Start-up id of an X11 launcher; ends in the time of the user's action.
    QByteArray startupId;
    /// Activation token of a Wayland compositor.
    QByteArray activationToken;
};

/// From the environment of this process; values with line breaks count as empty.
LaunchContext launchContextFromEnvironment();

/// Shows the window, also out of the minimised state, and brings it to the front with the dialog
/// that is open over it. On X11 the window manager is told that the user asked for it, and the
/// launcher that the start is over. On Wayland the compositor decides, by the token.
void showAtUserRequest(QWidget *window, const LaunchContext &launch);

} // namespace app
