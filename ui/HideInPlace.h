#pragma once

class QWidget;

namespace ui {

/// Hides the window so that it comes back where the user has put it, or into the corner if the
/// screen there has gone meanwhile. On Wayland the compositor decides.
void hideInPlace(QWidget *window);

} // namespace ui
