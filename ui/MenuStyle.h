#pragma once

#include <QString>

namespace ui {

/// The style sheet's rules for menus, such as those of links and text fields.
QString menuStyle();

} // namespace ui
