#pragma once

#include <QPushButton>

class QStyleOptionButton;

namespace ui {

/// A button on which a value stands, whatever its length and content.
///
/// text() is always what was set. Shown is its beginning on one line, with an ellipsis where it
/// does not fit; an ampersand is shown as such. The button gives way where its parent has less
/// room than it would like. Enter works on it as the space bar does. What a click does is its
/// owner's business.
class CopyButton : public QPushButton
{
    Q_OBJECT

public:
    CopyButton(const QString &text, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// What is painted: the text on one line, shortened to the present width.
    QString shownText() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QStyleOptionButton optionFor(const QString &line) const;
    QSize sizeFor(const QString &line) const;
};

} // namespace ui
