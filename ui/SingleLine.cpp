#include "ui/SingleLine.h"

#include <algorithm>

namespace ui {

namespace {

constexpr QChar ellipsis{0x2026};

bool breaksTheLine(QChar c)
{
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

} // namespace

QString singleLine(const QString &text, int length)
{
    QString line = text;
    if (text.size() > length) {
        line = text.left(text.at(length - 1).isHighSurrogate() ? length - 1 : length) + ellipsis;
    }
    std::replace_if(line.begin(), line.end(), breaksTheLine, QLatin1Char{' '});
    return line;
}

} // namespace ui
