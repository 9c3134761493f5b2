#include "ui/PillLabel.h"

#include "ui/SingleLine.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace ui {

namespace {

constexpr int toolTipLimit = 2000;

constexpr QChar ellipsis{0x2026};

} // namespace

PillLabel::PillLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
}

QSize PillLabel::sizeHint() const
{
    return sizeFor(beginning());
}

QSize PillLabel::minimumSizeHint() const
{
    return sizeFor(QString{ellipsis}).boundedTo(sizeHint());
}

QString PillLabel::shownText() const
{
    return fontMetrics().elidedText(beginning(), Qt::ElideRight, contentsRect().width());
}

bool PillLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        if (shownText() == text()) {
            QToolTip::hideText();
        } else {
            const QString part = leftPart(text(), toolTipLimit);
            QToolTip::showText(
                static_cast<QHelpEvent *>(event)->globalPos(),
                QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(part.toHtmlEscaped()),
                this);
        }
        return true;
    }
    return QLabel::event(event);
}

void PillLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    drawFrame(&painter);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                          isEnabled(), shownText(), foregroundRole());
}

QString PillLabel::beginning() const
{
    return singleLine(text());
}

QSize PillLabel::sizeFor(const QString &line) const
{
    const QMargins surround = contentsMargins();
    const QRect bounds =
        fontMetrics().boundingRect(QRect{0, 0, QWIDGETSIZE_MAX, QWIDGETSIZE_MAX},
                                   static_cast<int>(alignment()) | Qt::TextSingleLine, line);
    return bounds.size().grownBy(surround);
}

} // namespace ui
