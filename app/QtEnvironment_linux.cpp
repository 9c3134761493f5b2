#include "app/QtEnvironment.h"

#include <QtGlobal>

namespace app {

void QtEnvironment::prepare(Run run)
{
    setDefault("QT_XCB_GL_INTEGRATION", QByteArrayLiteral("none"));

    const bool hasDisplay =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (run == Run::WithoutWindow && !hasDisplay) {
        // Left alone, Qt would abort.
        setDefault("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
    }
}

} // namespace app
