#pragma once

class QWidget;

namespace ui {

/// To be called before the window is shown: it comes up without taking the keyboard or bringing its
/// parent along, and asks for attention as other programs do, for example in the task bar. On
/// Wayland the compositor decides.
void comeUpQuietly(QWidget *window);

} // namespace ui
