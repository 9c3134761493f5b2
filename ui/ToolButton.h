#pragma once

#include <QToolButton>

namespace ui {

/// A tool button that Enter presses, too, and whose size hint is within its minimum and maximum.
class ToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit ToolButton(QWidget *parent);

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace ui
