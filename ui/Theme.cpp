#include "ui/Theme.h"

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

QString menuStyle()
{
    return QStringLiteral(
        "QMenu { background: #232548; color: #F2F2FA; border: 1px solid rgba(255,255,255,30);"
        " border-radius: 8px; padding: 6px 0; }"
        "QMenu::item { padding: 8px 24px; background: transparent; }"
        "QMenu::item:selected { background: rgba(255,255,255,30); }");
}

} // namespace ui
