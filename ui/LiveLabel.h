#pragma once

#include <QLabel>

namespace ui {

/// A label whose changes a screen reader announces, wherever in the window the focus is.
class LiveLabel : public QLabel
{
    Q_OBJECT

public:
    explicit LiveLabel(const QString &text, QWidget *parent = nullptr);

    /// Shows the text and has it announced if the label is visible, even if the text is the same
    /// again: for the answer to what the user has just done.
    virtual void announce(const QString &text);
    /// As announce(), but does nothing if the label has this text.
    void announceChange(const QString &text);
    /// An overlay covers the label, or does so no longer. What has changed meanwhile is announced.
    void setCovered(bool covered);

private:
    QString textWhenCovered;
};

} // namespace ui
