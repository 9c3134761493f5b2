#pragma once

#include "ui/LiveLabel.h"

namespace ui {

/// A status label of one line for texts of any length and content.
///
/// text() is always what was set. Shown are its beginning, as plain characters whatever markup
/// they may hold, and an ellipsis where it does not fit. Line breaks and control characters are
/// shown as blanks. The tool tip of a shortened text shows more of it: the first 2,000 characters,
/// or fewer where the screen cannot hold them, in lines that are broken inside a word if need be.
/// The label never asks for more width than its parent has to give, so a long text moves nothing.
/// The cost of showing a text does not grow with its length.
class PillLabel : public LiveLabel
{
    Q_OBJECT

public:
    explicit PillLabel(const QString &text, QWidget *parent = nullptr);

    /// Also ends a tool tip that shows the old text.
    void announce(const QString &text) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// What is painted: the text on one line, shortened to the present width.
    QString shownText() const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString toolTipText() const;
    QSize sizeFor(const QString &line) const;
};

} // namespace ui
