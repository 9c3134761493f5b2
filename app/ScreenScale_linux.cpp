#include "app/ScreenScale.h"

namespace app {

ScreenScale::ScreenScale() = default;

} // namespace app
