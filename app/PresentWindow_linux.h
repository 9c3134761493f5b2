#pragma once

#include <QByteArray>

class QWidget;

namespace app {

/// Shows the window, restores it if it is minimised, and raises and activates it with its open
/// dialog. On X11 it tells the window manager that the user asked for this, and the launcher that
/// the start is complete; the start-up ID, which ends in the time of the user's action, may be
/// empty. On Wayland the compositor decides.
void presentWindow(QWidget *window, const QByteArray &startupId);

} // namespace app
