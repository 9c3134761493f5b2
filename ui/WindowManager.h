#pragma once

class QWidget;

namespace ui {

/// To be called before the window is shown: it comes up without taking the keyboard or bringing its
/// parent along, and asks for attention as other programs do, for example in the task bar. On
/// Wayland the compositor decides.
void comeUpQuietly(QWidget *window);

/// Hides the window so that it comes back where the user has put it, or into the corner if the
/// middle of its upper edge, by which it can be moved, is then on no screen. On Wayland the
/// compositor decides.
void hideInPlace(QWidget *window);

} // namespace ui
