#include "ui/CopyButton.h"

#include "ui/SingleLine.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace ui {

CopyButton::CopyButton(const QString &text, QWidget *parent)
    : QPushButton(text, parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    // A click would give it the focus frame, which is for those who use the keyboard.
    setFocusPolicy(Qt::TabFocus);
    // Outside dialogs Enter would have no effect.
    setAutoDefault(true);
}

QSize CopyButton::sizeHint() const
{
    return sizeFor(singleLine(text()));
}

QSize CopyButton::minimumSizeHint() const
{
    return sizeFor(QString{ellipsis}).boundedTo(sizeHint());
}

QString CopyButton::shownText() const
{
    const QString line = singleLine(text());
    const QStyleOptionButton option = optionFor(line);
    const QRect room = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    return fontMetrics().elidedText(line, Qt::ElideRight, room.width());
}

void CopyButton::paintEvent(QPaintEvent * /*event*/)
{
    QStylePainter painter{this};
    painter.drawControl(QStyle::CE_PushButton, optionFor(shownText()));
}

QStyleOptionButton CopyButton::optionFor(const QString &line) const
{
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = line;
    option.text.replace(QLatin1Char{'&'}, QLatin1String{"&&"});
    return option;
}

QSize CopyButton::sizeFor(const QString &line) const
{
    ensurePolished();
    const QStyleOptionButton option = optionFor(line);
    return style()->sizeFromContents(QStyle::CT_PushButton, &option,
                                     fontMetrics().size(Qt::TextSingleLine, line), this);
}

} // namespace ui
