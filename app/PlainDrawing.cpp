#include "app/PlainDrawing.h"

namespace app {

PlainDrawing::PlainDrawing()
    : withoutOpenGl("QT_XCB_GL_INTEGRATION", QByteArrayLiteral("none"))
{}

} // namespace app
