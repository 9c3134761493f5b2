#include "ui/ToolButton.h"

#include <QKeyEvent>

namespace ui {

ToolButton::ToolButton(QWidget *parent)
    : QToolButton(parent)
{}

QSize ToolButton::sizeHint() const
{
    return QToolButton::sizeHint().expandedTo(minimumSize()).boundedTo(maximumSize());
}

void ToolButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
    } else {
        QToolButton::keyPressEvent(event);
    }
}

} // namespace ui
