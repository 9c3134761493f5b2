#include "ui/ToolButton.h"

#include <QKeyEvent>

namespace ui {

ToolButton::ToolButton(QWidget *parent)
    : QToolButton(parent)
{}

void ToolButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // Held, it would go on to press what has the keyboard next.
        if (!event->isAutoRepeat()) {
            click();
        }
    } else {
        QToolButton::keyPressEvent(event);
    }
}

} // namespace ui
