#pragma once

#include <QString>

class QPainter;
class QRect;

namespace ui {

/// Fills `rect` with the dark vertical gradient that lies behind the main screen and the pages.
void paintBackgroundGradient(QPainter &painter, const QRect &rect);

/// The style sheet's rules for menus, such as those of links and text fields.
QString menuStyle();

} // namespace ui
