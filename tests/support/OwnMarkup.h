#pragma once

#include <QRegularExpression>
#include <QString>

namespace support {

/// True if every `<` in this text begins an element that a notice may have, written as
/// ui::safeMarkup() writes it.
inline bool isOwnMarkup(QString text)
{
    static const QRegularExpression own{
        QStringLiteral("</?(?:p|br|hr|b|strong|i|em|u|s|sub|sup|big|small|tt|code|pre|center|"
                       "blockquote|div|h[1-6]|ul|ol|li|font|span|a(?<=/a))\\s*/?>|"
                       "<font color=([\"'])(?:#[0-9a-f]{6}|[a-z]+)\\1>|"
                       "<span style=([\"'])color:(?:#[0-9a-f]{6}|[a-z]+)\\2>|"
                       "<a href=([\"'])(?:https?|mailto):[^\"'<>\\s]+\\3>"),
        QRegularExpression::CaseInsensitiveOption};
    return !text.remove(own).contains(QLatin1Char{'<'});
}

} // namespace support
