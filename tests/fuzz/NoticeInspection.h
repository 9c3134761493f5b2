#pragma once

#include <QString>

namespace ui {
class NoticeDialog;
}

namespace fuzz {

/// Looks at an open notice the way a user does, and paints it. Ends the run if the notice is not
/// `text`, keeps an image, a link that must not be followed or a resource, or does not fit on the
/// screen. Tells the fuzzer what kinds of things the document holds.
void inspectNotice(ui::NoticeDialog &dialog, const QString &text);

} // namespace fuzz
