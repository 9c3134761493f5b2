#include "ui/PillLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace ui {

namespace {

// Far more characters than the widest window could show on one line.
constexpr int shownLimit = 256;
constexpr int toolTipLimit = 2000;

constexpr QChar ellipsis{0x2026};

QString onOneLine(QString text)
{
    for (QChar &c : text) {
        if (c.isSpace() || c.category() == QChar::Other_Control) {
            c = QLatin1Char{' '};
        }
    }
    return text;
}

// A cut between the two halves of a character would leave half of it.
QString leftPart(const QString &text, int length)
{
    if (text.size() <= length) {
        return text;
    }
    return text.left(text.at(length - 1).isHighSurrogate() ? length - 1 : length) + ellipsis;
}

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
    return onOneLine(leftPart(text(), shownLimit));
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
