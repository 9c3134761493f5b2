#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

class QMouseEvent;
class QWindow;

namespace ui {

/// While it exists, a press has one effect, in every window of the program.
///
/// The second press of a double click is dropped if the first one went to another widget, which has
/// since opened or closed something under the pointer. Enter and Escape are dropped while they
/// auto-repeat.
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
