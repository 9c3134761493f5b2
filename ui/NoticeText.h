#pragma once

#include "ui/LinkLabel.h"

#include <QRect>

class QTextDocument;

namespace ui {

/// A wrapped label for rich text that comes from outside the program.
///
/// text() is what was given, with a prefix that styles links. Showing it, copying from it or
/// reading it aloud loads nothing: no image, style or other resource from any file, device or
/// host. An image leaves nothing behind, and a tool tip asked for by the markup is not shown.
/// Links to http, https and mailto addresses open outside the program; every other link is plain
/// text.
///
/// What would keep the window from answering is shown as plain text: more than 1,000 tags, closing
/// ones included, or 30,000 characters with them; with what may be a style element, more than 20
/// tags or 2,000 characters in all; with what may be a table, more than 100,000 as the number of
/// tags times the sum of that and all column spans; more than 6,000 characters without markup, half
/// of that for each level of tables; more than five levels; more than 1,000 breaks of lines; more
/// than 20 fonts, the label's own among them; letters of more than 100 pixels or 75 points; any
/// other measure or count of more than 500, except of an image; more than 20 marks or invisible
/// characters in a row; half a character. Of such a text the first 1,000 lines or 6,000 characters
/// are shown, of each such row the first 20, and an ellipsis if there are more lines or characters;
/// text() is then without markup, too, if that could not be parsed at all.
class NoticeText : public LinkLabel
{
    Q_OBJECT

public:
    NoticeText(const QString &text, QWidget *parent);

    /// Where the selected text begins, on one line, in the coordinates of a label that is no higher
    /// than its text; null without one.
    QRect selectedPlace() const;

protected:
    bool hasLink() const override;

private:
    QTextDocument *document;
};

} // namespace ui
