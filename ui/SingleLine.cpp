#include "ui/SingleLine.h"

#include <algorithm>

namespace ui {

namespace {

bool breaksTheLine(QChar c)
{
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

} // namespace

QString beginning(const QString &text, int length)
{
    if (text.size() <= length) {
        return text;
    }
    const bool cutInHalf = length > 0 && text.at(length - 1).isHighSurrogate();
    return text.left(cutInHalf ? length - 1 : length) + ellipsis;
}

QString singleLine(const QString &text, int length)
{
    QString line = beginning(text, length);
    std::replace_if(line.begin(), line.end(), breaksTheLine, QLatin1Char{' '});
    return line;
}

} // namespace ui
