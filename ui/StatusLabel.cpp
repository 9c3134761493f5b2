#include "ui/StatusLabel.h"

#include <QAccessible>
#include <QToolTip>

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
    // It would go on telling the whole of the old text.
    if (underMouse() && QToolTip::isVisible()) {
        QToolTip::hideText();
    }
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
