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
    /// Says whether an overlay covers the label. A change made meanwhile is announced when the
    /// label is uncovered.
    void setCovered(bool covered);

private:
    QString textWhenCovered;
};

} // namespace ui
