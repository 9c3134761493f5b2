#include "app/QtEnvironment.h"

#include <QtGlobal>

namespace app {

QtEnvironment::~QtEnvironment()
{
    for (const char *name : ours) {
        qunsetenv(name);
    }
}

void QtEnvironment::setDefault(const char *name, const QByteArray &value)
{
    if (qEnvironmentVariableIsEmpty(name)) {
        qputenv(name, value);
        ours.push_back(name);
    }
}

} // namespace app
