#pragma once

#include "ui/Dialog.h"

namespace ui {

/// One notice from the service in a small modal dialog with an OK button.
///
/// It shows safeMarkup() of the text. Links open outside the program and leave the dialog open. A
/// notice that is too large for the screen scrolls above the button. The dialog does not follow a
/// change of language. Made while none of the program's windows has the keyboard, it does not take
/// it, and asks for attention.
class NoticeDialog : public Dialog
{
    Q_OBJECT

public:
    NoticeDialog(const QString &text, QWidget *parent);
};

} // namespace ui
