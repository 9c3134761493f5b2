#pragma once

#include <QWidget>

class QLabel;
class QToolButton;
class QVBoxLayout;

namespace ui {

/// What the overlay pages of the main window share: the gradient, a header with a back button and
/// a title, a separating line, and a body below it. It covers its parent wholly when opened and
/// does not follow the parent's later resizes.
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

    /// Lays the page over its parent as that is now, and shows it.
    void cover();

    /// A small caption in capitals above a group.
    QLabel *makeSectionCaption(const QString &text);

    void paintEvent(QPaintEvent *event) override;

    QToolButton *backButton;
    QLabel *titleLabel;
    QVBoxLayout *body;
};

} // namespace ui
