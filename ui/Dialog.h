#pragma once

#include <QDialog>

class QVBoxLayout;

namespace ui {

/// What the modal dialogs share: their look, and that the program keeps running when one of them is
/// closed while the main window is hidden in the tray.
class Dialog : public QDialog
{
protected:
    /// `styleSheet` is applied after the shared rules.
    Dialog(const QString &styleSheet, int minimumWidth, const QMargins &margins, int spacing,
           QWidget *parent);

    QVBoxLayout *const column;
};

} // namespace ui
