#pragma once

#include <QLabel>

namespace ui {

/// A label whose text is news: what is said through it is also read out to users who cannot see
/// the screen, wherever they are in the window.
class StatusLabel : public QLabel
{
    Q_OBJECT

public:
    explicit StatusLabel(const QString &text, QWidget *parent = nullptr);

    /// Shows the text, and has it read out if it is another one and the label can be seen. Without
    /// a screen reader it is setText(), and the end of a tool tip that told the old text.
    void say(const QString &text);
    /// As say(), but it is also read out if it is the same again: the user has just done something
    /// and waits for what comes of it.
    void answer(const QString &text);

private:
    void readOut();
};

} // namespace ui
