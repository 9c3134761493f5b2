#pragma once

/// What assistive technology, such as a screen reader, learns about the program's widgets beyond
/// Qt's own accessible objects.
namespace ui::accessibility {

/// After this call:
/// - the switch is a check box: checked while the tunnel is up or going down, busy and disabled
///   during a change; toggling it has the effect of a click, and none where a click has none;
/// - the text of a LiveLabel is a notification;
/// - the widgets that an Overlay covers are invisible;
/// - a LinkLabel that shows an address is a link that can be pressed;
/// - a dialog reports whether it is modal;
/// - an overlay is a group with its own name.
/// Further calls have no effect.
void install();

} // namespace ui::accessibility
