#pragma once

#include <QString>

namespace support {

/// The path of the program under test.
QString clientProgram();

/// The title of its window.
QString clientTitle();

} // namespace support
