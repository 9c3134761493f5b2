#include "app/ScreenScale.h"

namespace app {

ScreenScale::ScreenScale()
{
    followScreens.emplace("QT_ENABLE_HIGHDPI_SCALING", QByteArrayLiteral("1"));
    exactly.emplace("QT_SCALE_FACTOR_ROUNDING_POLICY", QByteArrayLiteral("PassThrough"));
}

} // namespace app
