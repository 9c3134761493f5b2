#pragma once

#include "ui/Dialog.h"

namespace ui {

/// One notice from the service in a small modal dialog with an OK button.
///
/// The text may be rich text, of which safeMarkup() is shown. Its links open outside the program
/// and leave the dialog open. A notice that is too large for the screen scrolls, with the button in
/// sight.
/// The dialog knows nothing of other notices and does not follow a change of language.
class NoticeDialog : public Dialog
{
    Q_OBJECT

public:
    NoticeDialog(const QString &text, QWidget *parent);
};

} // namespace ui
