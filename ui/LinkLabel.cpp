#include "ui/LinkLabel.h"

#include <QFocusEvent>

namespace ui {

namespace {

const QColor linkColour{255, 138, 78};
const QLatin1String linkStyle{"color:#FF8A4E;text-decoration:none;font-weight:600;"};

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

void LinkLabel::focusInEvent(QFocusEvent *event)
{
    QLabel::focusInEvent(event);
    // A dialog that opens gives this reason, too, before the label has the focus.
    const bool byTab = hasFocus() && (event->reason() == Qt::TabFocusReason ||
                                      event->reason() == Qt::BacktabFocusReason);
    // Without a link Qt would only pass the focus on.
    if (byTab && !hasSelectedText() && hasLink()) {
        moveToLink(event->reason() == Qt::TabFocusReason);
    }
}

void LinkLabel::showAddress(const QString &address)
{
    shownAddress = address;
    setAccessibleName(address);
    setText(QStringLiteral("<a style=\"%1\" href=\"%2\">%2</a>").arg(linkStyle, address));
}

void LinkLabel::showMarkup(const QString &markup)
{
    setText(QStringLiteral("<style>a{") + linkStyle + QStringLiteral("}</style>") + markup);
}

bool LinkLabel::focusNextPrevChild(bool next)
{
    const int link = selectionStart();
    if (!moveToLink(next)) {
        return false;
    }
    // Backwards from the first link, Qt selects that link again and again.
    const bool isStuck = hasFocus() && link >= 0 && selectionStart() == link;
    // QLabel would select the link again. NOLINTNEXTLINE(bugprone-parent-virtual-call)
    return !isStuck || QWidget::focusNextPrevChild(next);
}

bool LinkLabel::hasLink() const
{
    return text().contains(QLatin1String{"<a "}, Qt::CaseInsensitive);
}

bool LinkLabel::moveToLink(bool next)
{
    const int before = selectionStart();
    const bool moved = QLabel::focusNextPrevChild(next);
    if (moved && hasFocus() && hasSelectedText() && selectionStart() != before) {
        Q_EMIT linkReached();
    }
    return moved;
}

} // namespace ui
