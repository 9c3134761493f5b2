#pragma once

/// What assistive technology, a screen reader for one, is told about the widgets of this program
/// beyond what the toolkit knows by itself. Nothing here runs while no such technology does.
namespace ui::accessibility {

/// From now on:
/// - the switch is a check box: checked while the tunnel is up or going down, busy and disabled
///   while a change is under way; to toggle it does what a left click in its middle would,
///   nothing where the click would not reach it;
/// - the texts of a LiveLabel are notifications;
/// - what an Overlay covers is not showing;
/// - a LinkLabel that shows an address is a link that can be pressed;
/// - a dialog says whether it is modal;
/// - pages and menu are panels with their own name.
/// More than once is as good as once.
void install();

} // namespace ui::accessibility
