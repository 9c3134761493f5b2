#include "ui/WindowManager.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

namespace ui {

void hideInPlace(QWidget *window)
{
    QWindow *const handle = window->windowHandle();
    const QRect frame = handle->frameGeometry();
    // A window manager chooses a place for a window that has no position of the program's own.
    handle->setFramePosition(frame.topLeft());
    window->hide();

    auto *const once = new QObject{handle};
    QObject::connect(handle, &QWindow::visibleChanged, once, [once, handle, frame] {
        once->deleteLater();
        const QPoint handhold{frame.center().x(), frame.top()};
        if (QGuiApplication::screenAt(handhold) == nullptr) {
            handle->setFramePosition(handle->screen()->availableGeometry().topLeft());
            return;
        }
        // xfwm4 moves a window that it maps wholly onto the screen. It may go back afterwards.
        QMetaObject::invokeMethod(
            handle, [handle, frame] { handle->setFramePosition(frame.topLeft()); },
            Qt::QueuedConnection);
    });
}

} // namespace ui
