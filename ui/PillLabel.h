#pragma once

#include "ui/LiveLabel.h"

namespace ui {

/// A live label of one line for texts of any length and content.
///
/// It shows the beginning of text() as plain text, elided to its width, with spaces for line breaks
/// and control characters. The tool tip of an elided text shows up to 2,000 characters, wrapped
/// inside words if necessary, as far as the screen has room. The label's minimum width is that of
/// the ellipsis, so that a long text moves nothing. Painting costs the same for any length.
class PillLabel : public LiveLabel
{
    Q_OBJECT

public:
    explicit PillLabel(const QString &text, QWidget *parent = nullptr);

    /// Also hides a tool tip that shows the old text.
    void announce(const QString &text) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// The elided text that is painted.
    QString shownText() const;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString toolTipText() const;
    QSize sizeFor(const QString &line) const;
};

} // namespace ui
