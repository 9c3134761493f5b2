#include "app/Windowless.h"

#include <QByteArray>

namespace app {

void allowMissingDisplay()
{
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable)) {
            return;
        }
    }
    // Left alone, the toolkit would abort.
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

} // namespace app
