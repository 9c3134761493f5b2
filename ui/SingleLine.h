#pragma once

#include <QString>

namespace ui {

/// The first `length` characters of `text`, with an ellipsis if there are more; no character is
/// cut in half.
QString leftPart(const QString &text, int length);

/// What of `text` could ever be seen on one line of the window: its beginning, with blanks for
/// line breaks, tabs and control characters. The cost does not grow with the text's length.
QString singleLine(const QString &text);

} // namespace ui
