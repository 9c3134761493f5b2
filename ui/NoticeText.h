#pragma once

#include <QLabel>

class QTextDocument;

namespace ui {

/// A wrapped label for rich text that comes from outside the program.
///
/// text() is what was given, with a prefix that styles links. Showing it loads nothing: no image,
/// style or other resource from any file, device or host; an image is not drawn, and a tool tip
/// asked for by the markup is not shown. Links to http, https and mailto addresses open outside
/// the program; every other link is plain text.
class NoticeText : public QLabel
{
    Q_OBJECT

public:
    NoticeText(const QString &text, QWidget *parent);
};

} // namespace ui
