#include "ui/LiveLabel.h"

#include <QAccessible>

namespace ui {

LiveLabel::LiveLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{}

void LiveLabel::announce(const QString &text)
{
    setText(text);
    if (QAccessible::isActive() &&
        !QAccessible::queryAccessibleInterface(this)->state().invisible) {
        // A changed name is announced only where the focus is, a notification that appears always.
        QAccessibleEvent event{this, QAccessible::ObjectShow};
        QAccessible::updateAccessibility(&event);
    }
}

void LiveLabel::announceChange(const QString &text_)
{
    if (text_ != text()) {
        announce(text_);
    }
}

void LiveLabel::setCovered(bool covered)
{
    if (covered) {
        textWhenCovered = text();
    } else if (text() != textWhenCovered) {
        announce(text());
    }
}

} // namespace ui
