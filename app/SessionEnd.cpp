#include "app/SessionEnd.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>

namespace app {

SessionEnd::SessionEnd(QCoreApplication &application)
{
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    application.installEventFilter(this);
}

bool SessionEnd::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == QCoreApplication::instance() && event->type() == QEvent::Quit) {
        QCoreApplication::exit();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace app
