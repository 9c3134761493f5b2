#include "ui/PressFilter.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

namespace ui {

namespace {

bool isHeld(const QKeyEvent &event)
{
    return event.isAutoRepeat() && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
                                    event.key() == Qt::Key_Escape);
}

} // namespace

PressFilter::PressFilter(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool PressFilter::eventFilter(QObject *watched, QEvent *event)
{
    // Windows get events first. A press that is dropped there gives no widget a release or focus.
    if (!watched->isWindowType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return isStray(*static_cast<QWindow *>(watched), *static_cast<QMouseEvent *>(event));
    case QEvent::KeyPress:
        return isHeld(*static_cast<QKeyEvent *>(event));
    default:
        return false;
    }
}

bool PressFilter::isStray(QWindow &window, const QMouseEvent &event)
{
    QWidget *const top = QWidget::find(window.winId());
    QWidget *const child = top == nullptr ? nullptr : top->childAt(event.pos());
    QWidget *const target = child == nullptr ? top : child;
    // Before a double click the window gets the second press, too.
    const bool isSecond = event.type() == QEvent::MouseButtonDblClick ||
                          event.flags().testFlag(Qt::MouseEventCreatedDoubleClick);
    if (!isSecond) {
        pressed = target;
    }
    return target != pressed;
}

} // namespace ui
