#pragma once

#include <QStringList>

class QLabel;
class QToolButton;
class QVBoxLayout;
class QWidget;

namespace support {

/// The parts that every overlay page has, found by their place in its layouts. Ends the test run
/// if the page is built in another way.
struct PageParts
{
    explicit PageParts(const QWidget *page);

    QToolButton *back;
    QLabel *title;
    QWidget *separator;
    QVBoxLayout *body;
};

/// True if a page is painted from its first row to its last with the dark gradient, looked at
/// along its left edge.
bool hasGradient(QWidget *page);

/// Presses Tab, or with `back` Shift+Tab, until the focus is where it was. Returns the object names
/// of the widgets on the way, or their class names where they have none. A widget that takes more
/// than one press, as one with links does, comes once.
QStringList tabRound(const QWidget *window, bool back = false);

} // namespace support
