#pragma once

#include <QPushButton>

class QStyleOptionButton;

namespace ui {

/// A button for a value of any length and content.
///
/// It shows the beginning of text() on one line, elided to its width; an ampersand is shown, not a
/// mnemonic. It may be narrower than its size hint. Enter presses it, as the space bar does.
class CopyButton : public QPushButton
{
    Q_OBJECT

public:
    CopyButton(const QString &text, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// The elided text that is painted.
    QString shownText() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QStyleOptionButton optionFor(const QString &line) const;
    QSize sizeFor(const QString &line) const;
};

} // namespace ui
