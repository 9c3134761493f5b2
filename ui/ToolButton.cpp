#include "ui/ToolButton.h"

#include <QKeyEvent>

namespace ui {

ToolButton::ToolButton(QWidget *parent)
    : QToolButton(parent)
{}

void ToolButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // Repeated, the key would press the next widget with focus.
        if (!event->isAutoRepeat()) {
            click();
        }
    } else {
        QToolButton::keyPressEvent(event);
    }
}

} // namespace ui
