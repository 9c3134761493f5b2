#pragma once

#include <QString>

namespace ui {

/// Includes the markup; a longer notice is elided.
constexpr int maxNoticeLength = 6'000;

/// Reduces rich text from the service to an allow-list, so that Qt loads nothing for it and its
/// layout takes a time that depends on its length only.
///
/// The allow-list: p br hr b strong i em u s sub sup big small tt code pre center blockquote div h1
/// to h6 ul ol li without attributes; font with a color and span with a style that is a color, by
/// name or as #rrggbb; a with an href that begins with http:, https: or mailto: and holds no white
/// space. Such text is returned unchanged.
///
/// Removed are other tags that Qt knows, other attributes, comments, end tags without a start tag,
/// tags deeper than 20 levels, and the content of style, script and title. Any other `<` or `&` is
/// escaped. Of more than 20 combining or invisible characters in a row the first 20 stay. Text
/// longer than maxNoticeLength is elided; invalid UTF-16 is shown as plain text.
QString safeMarkup(const QString &text);

} // namespace ui
