#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

class QMouseEvent;
class QWindow;

namespace ui {

/// Lets a press do one thing, in every window of the program, while it exists.
///
/// The second half of a double click is lost if the first one went to another widget, which has
/// opened or closed something under the pointer since. Enter and Escape are lost while they repeat
/// because they are held.
class PressFilter : public QObject
{
    Q_OBJECT

public:
    explicit PressFilter(QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isStray(QWindow &window, const QMouseEvent &event);

    QPointer<QWidget> pressed;
};

} // namespace ui
