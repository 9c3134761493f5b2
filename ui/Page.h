#pragma once

#include "ui/Overlay.h"

class QLabel;
class QVBoxLayout;

namespace ui {

class ToolButton;

/// What the overlay pages of the main window share: the gradient, a header with a back button and
/// a title, a separating line, and a body below it. Escape works as the back button does.
///
/// A page is created once, hidden, and reused. The back button asks the owner to hide it.
class Page : public Overlay
{
    Q_OBJECT

Q_SIGNALS:
    void closeRequested();

protected:
    /// `styleSheet` is applied to the page after the rules that all pages share.
    Page(const QString &styleSheet, QWidget *parent);

    /// Covers the parent and takes the focus.
    void open();
    /// Sets the texts in the current language; also called when that changes.
    virtual void retranslateUi() = 0;

    /// Sets the title and the tool tip of the back button, also as accessible names.
    void setHeader(const QString &title, const QString &back);

    /// A small caption in capitals above a group.
    QLabel *makeSectionCaption(const QString &text);

    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    ToolButton *backButton;
    QVBoxLayout *body;

private:
    QLabel *titleLabel;
};

} // namespace ui
