#pragma once

#include <QString>

namespace ui {

constexpr QChar ellipsis{0x2026};

/// More characters than the window can show on one line.
constexpr int singleLineLimit = 256;

/// The first `length` characters of `text`, and an ellipsis if it is longer. Does not split a
/// surrogate pair.
QString beginning(const QString &text, int length);

/// The same, with spaces for line breaks, tabs and control characters.
QString singleLine(const QString &text, int length = singleLineLimit);

} // namespace ui
