#include "ui/WindowManager.h"

#include <QApplication>
#include <QWidget>

namespace ui {

void comeUpQuietly(QWidget *window)
{
    window->setAttribute(Qt::WA_ShowWithoutActivating);
    QMetaObject::invokeMethod(
        window, [window] { QApplication::alert(window); }, Qt::QueuedConnection);
}

} // namespace ui
