#pragma once

#include <QString>

namespace ui {

/// Rich text without its elements, for texts that the toolkit takes too long to parse: what is
/// left is rich text still, with entities, and one `<br>` where lines of their own began or ended.
/// Of comments, styles, scripts and titles nothing can be read. Something that only begins like an
/// element stays as characters. What would be longer than `most` characters, an entity of ours or a
/// `<br>` counting as one, is cut and ends with an ellipsis. The cost grows with the text's length
/// and with nothing else.
QString plainMarkup(const QString &markup, int most);

} // namespace ui
