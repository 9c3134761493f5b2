#pragma once

#include <QToolButton>

namespace ui {

/// A button with a sign on it that Enter presses, too, once however long it is held: outside
/// dialogs the toolkit's own lets that key go by.
class ToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit ToolButton(QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace ui
