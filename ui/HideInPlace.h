#pragma once

class QWidget;

namespace ui {

/// Hides the window so that it comes back where the user has put it, or into the corner if the
/// middle of its upper edge, by which it can be moved, is then on no screen. On Wayland the
/// compositor decides.
void hideInPlace(QWidget *window);

} // namespace ui
