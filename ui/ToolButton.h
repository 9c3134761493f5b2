#pragma once

#include <QToolButton>

namespace ui {

/// A tool button that Enter presses, too.
class ToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit ToolButton(QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace ui
