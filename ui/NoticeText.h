#pragma once

#include "ui/LinkLabel.h"

namespace ui {

/// A wrapped label for rich text that comes from outside the program.
///
/// text() is what was given, with a prefix that styles links. Showing it, copying from it or
/// reading it aloud loads nothing: no image, style or other resource from any file, device or
/// host. An image leaves nothing behind, and a tool tip asked for by the markup is not shown.
/// Links to http, https and mailto addresses open outside the program; every other link is plain
/// text. Tables too many or too deep to be laid out in reasonable time turn the whole into plain
/// text.
class NoticeText : public LinkLabel
{
    Q_OBJECT

public:
    NoticeText(const QString &text, QWidget *parent);
};

} // namespace ui
