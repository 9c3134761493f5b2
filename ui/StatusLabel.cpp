#include "ui/StatusLabel.h"

#include <QAccessible>

namespace ui {

StatusLabel::StatusLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{}

void StatusLabel::say(const QString &text_)
{
    if (text_ != text()) {
        answer(text_);
    }
}

void StatusLabel::answer(const QString &text)
{
    setText(text);
    if (QAccessible::isActive()) {
        readOut();
    }
}

void StatusLabel::readOut()
{
    const QAccessibleInterface *const seen = QAccessible::queryAccessibleInterface(this);
    if (seen != nullptr && !seen->state().invisible) {
        // A change of name alone is spoken only where the user is; a notification that appears,
        // always.
        QAccessibleEvent appeared{this, QAccessible::ObjectShow};
        QAccessible::updateAccessibility(&appeared);
    }
}

} // namespace ui
