#include "app/Application.h"

#include "app/Identity.h"

#include <QEvent>
#include <QtGlobal>

#include <cstdlib>

namespace app {

namespace {

QtMessageHandler usualHandler = nullptr;

void exitOnFatalMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    usualHandler(type, context, message);
    if (type == QtFatalMsg) {
        std::_Exit(EXIT_FAILURE);
    }
}

int &afterHandlerIsInstalled(int &argc)
{
    usualHandler = qInstallMessageHandler(exitOnFatalMessage);
    return argc;
}

} // namespace

Application::Application(int &argc, char **argv)
    : QApplication(afterHandlerIsInstalled(argc), argv)
{
    qInstallMessageHandler(usualHandler);
    setFallbackSessionManagementEnabled(false);
    setIdentity();
}

bool Application::event(QEvent *event)
{
    if (event->type() == QEvent::Quit) {
        exit();
        return true;
    }
    return QApplication::event(event);
}

} // namespace app
