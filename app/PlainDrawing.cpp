#include "app/PlainDrawing.h"

#include <QByteArray>

namespace app {

namespace {

constexpr char variable[] = "QT_XCB_GL_INTEGRATION";

} // namespace

PlainDrawing::PlainDrawing()
    : ours(!qEnvironmentVariableIsSet(variable))
{
    if (ours) {
        qputenv(variable, QByteArrayLiteral("none"));
    }
}

PlainDrawing::~PlainDrawing()
{
    if (ours) {
        qunsetenv(variable);
    }
}

} // namespace app
