#include "ui/PillLabel.h"

#include "ui/SingleLine.h"

#include <QHelpEvent>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>

namespace ui {

namespace {

constexpr int maxToolTipLength = 2000;

constexpr int maxToolTipColumns = 80;
constexpr double maxShareOfScreen = 0.8;

QString withoutTrailingBlanks(QString line)
{
    while (!line.isEmpty() && line.back().isSpace()) {
        line.chop(1);
    }
    return line;
}

// A tool tip by itself wraps only at spaces and grows beyond the screen.
QString wrapped(const QString &text, const QFont &font, const QSize &maximum)
{
    QTextOption wrapping;
    wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout{text, font};
    layout.setTextOption(wrapping);

    QStringList lines;
    double height = 0.0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(maximum.width());
        height += line.height();
        if (height > maximum.height() && !lines.isEmpty()) {
            lines.last() += ellipsis;
            break;
        }
        // Unlike QTextLayout, the tool tip does not let spaces hang over the end of a line.
        lines.append(withoutTrailingBlanks(text.mid(line.textStart(), line.textLength())));
    }
    layout.endLayout();
    return lines.join(QLatin1Char{'\n'});
}

} // namespace

PillLabel::PillLabel(const QString &text, QWidget *parent)
    : LiveLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
}

void PillLabel::announce(const QString &text)
{
    LiveLabel::announce(text);
    // The tool tip would go on showing the old text.
    if (underMouse()) {
        QToolTip::hideText();
    }
}

QSize PillLabel::sizeHint() const
{
    return sizeFor(singleLine(text()));
}

QSize PillLabel::minimumSizeHint() const
{
    return sizeFor(QString{ellipsis}).boundedTo(sizeHint());
}

QString PillLabel::shownText() const
{
    return fontMetrics().elidedText(singleLine(text()), Qt::ElideRight, contentsRect().width());
}

bool PillLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const bool isShortened =
            text().size() > singleLineLimit || shownText() != singleLine(text());
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                           isShortened ? toolTipText() : QString{}, this);
        return true;
    }
    return LiveLabel::event(event);
}

void PillLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    drawFrame(&painter);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                          isEnabled(), shownText(), foregroundRole());
}

QString PillLabel::toolTipText() const
{
    const QString part = singleLine(text(), maxToolTipLength);
    const QFont font = QToolTip::font();
    QSize maximum = screen()->availableSize() * maxShareOfScreen;
    maximum.setWidth(
        std::min(maximum.width(), maxToolTipColumns * QFontMetrics{font}.averageCharWidth()));
    return QStringLiteral("<p dir='%1' style='white-space:pre'>%2</p>")
        .arg(part.isRightToLeft() ? QLatin1String{"rtl"} : QLatin1String{"ltr"},
             wrapped(part, font, maximum).toHtmlEscaped());
}

QSize PillLabel::sizeFor(const QString &line) const
{
    const QFontMetrics metrics = fontMetrics();
    QSize size{metrics.averageCharWidth(), metrics.lineSpacing()};
    if (!line.isEmpty()) {
        // Centring would lose a pixel to rounding.
        size = metrics
                   .boundingRect(QRect{0, 0, QWIDGETSIZE_MAX, QWIDGETSIZE_MAX}, Qt::TextSingleLine,
                                 line)
                   .size();
    }
    return size.grownBy(contentsMargins());
}

} // namespace ui
