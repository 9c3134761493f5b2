#pragma once

#include <QToolButton>

namespace ui {

/// A button with a sign on it that Enter presses as the space bar does: outside dialogs the
/// toolkit's own lets that key go by.
class ToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit ToolButton(QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace ui
