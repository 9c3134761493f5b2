#pragma once

#include "tests/support/StyleRules.h"

#include <QString>

class QLabel;
class QLayout;
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

/// The rules that every page's style sheet begins with, and those in `others`.
StyleRules pageRulesAnd(const QString &others);

/// Margins and spacing of a layout as one text: "left top right bottom, spacing".
QString measures(const QLayout *layout);

/// True if a page is painted from its first row to its last with the dark gradient, looked at
/// along its left edge.
bool hasGradient(QWidget *page);

/// Presses Tab, or with `back` Shift and Tab, until the keyboard is where it was; the object names
/// of the widgets on the way, or their class names where they have none. A widget that takes more
/// than one press, as one with links does, comes once.
QStringList tabRound(const QWidget *window, bool back = false);

} // namespace support
