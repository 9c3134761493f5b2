#pragma once

#include <QLabel>

namespace ui {

/// A label for rich text with links, which open outside the program.
///
/// Mouse and keyboard reach every link and, unlike with the toolkit's own label, the keyboard
/// leaves them in both directions.
class LinkLabel : public QLabel
{
    Q_OBJECT

public:
    explicit LinkLabel(QWidget *parent);

protected:
    bool focusNextPrevChild(bool next) override;
};

} // namespace ui
