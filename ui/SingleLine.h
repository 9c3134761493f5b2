#pragma once

#include <QString>

namespace ui {

constexpr QChar ellipsis{0x2026};

/// More characters than the window could ever show on one line.
constexpr int singleLineLimit = 256;

/// The first `length` characters of `text`, and an ellipsis if there are more; no character is cut
/// in half. The cost does not grow with the text's length.
QString beginning(const QString &text, int length);

/// The same, with blanks for line breaks, tabs and control characters.
QString singleLine(const QString &text, int length = singleLineLimit);

} // namespace ui
