#pragma once

#include <QString>

namespace ui {

/// The longest notice that is shown whole, markup included.
constexpr int maxNoticeLength = 6'000;

/// Rich text from outside the program, as far as it keeps to a short list, so that the toolkit only
/// ever parses markup of ours: nothing in it can be loaded, and what it costs to lay out depends on
/// its length alone.
///
/// The list: p br hr b strong i em u s sub sup big small tt code pre center blockquote div h1 to h6
/// ul ol li without attributes; font with a color and span with a style that is a color, by name
/// or as #rrggbb; a with an href that begins with http:, https: or mailto: and holds no white
/// space. Text that keeps to it comes back unchanged.
///
/// Other elements that the toolkit knows, other attributes, comments, end tags that end nothing and
/// what stands deeper than 20 levels lose their tags; style, script and title their content too. A
/// `<` that begins nothing of this kind is shown as it is, and so is a `&` without an entity that
/// may be shown. Of more than 20 marks or invisible characters in a row the first 20 stay. What is
/// longer than maxNoticeLength is cut there and ends with an ellipsis. A text that holds half a
/// character is shown without any markup.
QString safeMarkup(const QString &text);

} // namespace ui
