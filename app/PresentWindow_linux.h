#pragma once

#include <QByteArray>

class QWidget;

namespace app {

/// What an X11 launcher gave this process, so that the window which answers it may take the
/// foreground; ends in the time of the user's action. Empty if there is none; any bytes if
/// somebody else has set it.
QByteArray startupIdFromEnvironment();

/// Shows the window, also out of the minimised state, and brings it to the front with the dialog
/// that is open over it. On X11 the window manager is told that the user asked for it, and the
/// launcher that the start is over; the start-up id may be empty. On Wayland the compositor
/// decides: Qt reads no activation token there, so none is passed on.
void presentWindow(QWidget *window, const QByteArray &startupId);

} // namespace app
