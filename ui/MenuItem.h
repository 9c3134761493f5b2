#pragma once

#include <QAbstractButton>

namespace ui {

/// One row of the side menu: an icon drawn with strokes and a label beside it.
///
/// It takes no keyboard focus and has no text elision: the menu makes itself as wide as its
/// widest row.
class MenuItem : public QAbstractButton
{
    Q_OBJECT

public:
    /// Which icon a row draws. Any other number draws none.
    enum Kind : qint32 { Gear = 0, Key = 1, Envelope = 2, Door = 3 };

    MenuItem(qint32 kind, const QString &text, QWidget *parent);

    /// Sets the text and lets width and picture follow it.
    void setLabel(const QString &label);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const qint32 kind;
};

} // namespace ui
