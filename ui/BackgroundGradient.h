#pragma once

class QPainter;
class QRect;

namespace ui {

/// Fills `rect` with the dark vertical gradient that lies behind the main screen and the pages.
void paintBackgroundGradient(QPainter &painter, const QRect &rect);

} // namespace ui
