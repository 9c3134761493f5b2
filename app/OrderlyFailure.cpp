#include "app/OrderlyFailure.h"

#include <QtGlobal>

#include <cstdlib>

namespace app {

namespace {

QtMessageHandler usual = nullptr;

void endOnFatal(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    usual(type, context, message);
    if (type == QtFatalMsg) {
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

OrderlyFailure::OrderlyFailure()
{
    usual = qInstallMessageHandler(endOnFatal);
}

OrderlyFailure::~OrderlyFailure()
{
    qInstallMessageHandler(usual);
}

} // namespace app
