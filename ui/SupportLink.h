#pragma once

#include <QString>

namespace ui {

/// The https address at which users reach support; fixed when the program is built.
QString supportLink();

} // namespace ui
