#include "ui/BackgroundGradient.h"

#include <QLinearGradient>
#include <QPainter>

namespace ui {

void paintBackgroundGradient(QPainter &painter, const QRect &rect)
{
    QLinearGradient gradient{0.0, 0.0, 0.0, static_cast<double>(rect.height())};
    gradient.setColorAt(0.0, QColor{27, 29, 61});
    gradient.setColorAt(1.0, QColor{15, 16, 36});
    painter.fillRect(rect, gradient);
}

} // namespace ui
