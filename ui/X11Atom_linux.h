#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

namespace ui {

/// The atom of this name on the display of the windows, or none. Only on Qt's X11 platform.
xcb_atom_t x11Atom(const QByteArray &name);

} // namespace ui
