#pragma once

#include <QAbstractButton>

namespace ui {

/// A row of the side menu: an icon and a label. It takes no focus and elides no text: the menu is
/// as wide as its widest row.
class MenuItem : public QAbstractButton
{
    Q_OBJECT

public:
    /// The icon. Any other number draws none.
    enum Kind : qint32 { Gear = 0, Key = 1, Envelope = 2, Door = 3 };

    MenuItem(qint32 kind, const QString &text, QWidget *parent);

    /// Sets the text and updates size and painting.
    void setLabel(const QString &label);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const qint32 kind;
};

} // namespace ui
