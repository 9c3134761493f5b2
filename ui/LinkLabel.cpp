#include "ui/LinkLabel.h"

namespace ui {

namespace {

const QColor linkColour{255, 138, 78};

} // namespace

LinkLabel::LinkLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::TextBrowserInteraction);
    setOpenExternalLinks(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Link, linkColour);
    setPalette(colours);
}

bool LinkLabel::focusNextPrevChild(bool next)
{
    const int link = selectionStart();
    if (!QLabel::focusNextPrevChild(next)) {
        return false;
    }
    // Backwards from the first link the toolkit chooses that link again, for ever.
    const bool isStuck = hasFocus() && link >= 0 && selectionStart() == link;
    // Past the label's own way, which is what sticks. NOLINTNEXTLINE(bugprone-parent-virtual-call)
    return !isStuck || QWidget::focusNextPrevChild(next);
}

} // namespace ui
