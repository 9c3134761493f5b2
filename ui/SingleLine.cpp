#include "ui/SingleLine.h"

namespace ui {

namespace {

// Far more characters than the widest window could show on one line.
constexpr int shownLimit = 256;

constexpr QChar ellipsis{0x2026};

bool breaksLines(QChar c)
{
    return c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph;
}

} // namespace

QString leftPart(const QString &text, int length)
{
    if (text.size() <= length) {
        return text;
    }
    return text.left(text.at(length - 1).isHighSurrogate() ? length - 1 : length) + ellipsis;
}

QString singleLine(const QString &text)
{
    QString line = leftPart(text, shownLimit);
    for (QChar &c : line) {
        if (breaksLines(c) || c.category() == QChar::Other_Control) {
            c = QLatin1Char{' '};
        }
    }
    return line;
}

} // namespace ui
