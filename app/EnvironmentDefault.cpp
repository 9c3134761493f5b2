#include "app/EnvironmentDefault.h"

#include <QtGlobal>

namespace app {

EnvironmentDefault::EnvironmentDefault(const char *name, const QByteArray &value)
    : variable(name)
    , ours(!qEnvironmentVariableIsSet(name))
{
    if (ours) {
        qputenv(variable, value);
    }
}

EnvironmentDefault::~EnvironmentDefault()
{
    if (ours) {
        qunsetenv(variable);
    }
}

} // namespace app
