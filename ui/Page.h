#pragma once

#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace ui {

class ToolButton;

/// What the overlay pages of the main window share: the gradient, a header with a back button and
/// a title, a separating line, and a body below it. It covers its parent wholly when opened and
/// does not follow the parent's later resizes.
///
/// An open page has the keyboard for itself: Tab goes round among its own widgets, not among those
/// that it hides from view, and Escape works as the back button does.
///
/// A page is created once, hidden, and reused. It never hides itself: it asks its owner to.
class Page : public QWidget
{
    Q_OBJECT

public:
    ~Page() override = default;

protected:
    /// `styleSheet` is applied to the page after the rules that all pages share.
    Page(const QString &styleSheet, QWidget *parent);

    /// Lays the page over its parent as that is now, shows it and gives it the keyboard.
    void cover();

    /// Both also name what they belong to for those who cannot see it: the page, and the button,
    /// on which there is only an arrow.
    void setHeader(const QString &title, const QString &back);

    /// A small caption in capitals above a group.
    QLabel *makeSectionCaption(const QString &text);

    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    ToolButton *backButton;
    QVBoxLayout *body;

private:
    QLabel *titleLabel;
};

} // namespace ui
