#include "ui/PlainMarkup.h"

#include "ui/SingleLine.h"

#include <QStringList>

namespace ui {

namespace {

QString lineBreak()
{
    return QStringLiteral("<br>");
}

bool isLetter(QChar c)
{
    return (c >= QLatin1Char{'a'} && c <= QLatin1Char{'z'}) ||
           (c >= QLatin1Char{'A'} && c <= QLatin1Char{'Z'});
}

bool hidesItsText(const QString &name)
{
    static const QStringList names{QStringLiteral("style"), QStringLiteral("script"),
                                   QStringLiteral("title")};
    return names.contains(name);
}

bool staysInLine(const QString &name)
{
    static const QStringList names{
        QStringLiteral("a"),      QStringLiteral("b"),     QStringLiteral("i"),
        QStringLiteral("u"),      QStringLiteral("s"),     QStringLiteral("em"),
        QStringLiteral("strong"), QStringLiteral("span"),  QStringLiteral("font"),
        QStringLiteral("big"),    QStringLiteral("small"), QStringLiteral("code"),
        QStringLiteral("tt"),     QStringLiteral("sub"),   QStringLiteral("sup"),
        QStringLiteral("img")};
    return names.contains(name);
}

/// Goes through a text once. What is not found from one place on is not looked for again.
class Scanner
{
public:
    explicit Scanner(const QString &markup)
        : text(markup)
    {}

    QString plain(int most)
    {
        QString result;
        for (int left = most; place < text.size();) {
            const int start = text.indexOf(QLatin1Char{'<'}, place);
            const int length = (start < 0 ? text.size() : start) - place;
            if (length > left) {
                return result + beginning(text.mid(place, left + 1), left);
            }
            result += text.midRef(place, length);
            left -= length;
            if (start < 0) {
                break;
            }
            place = start;
            const QString element = passElement();
            if (element.isEmpty() || (element == lineBreak() && result.endsWith(element))) {
                continue;
            }
            if (left == 0) {
                return result + beginning(element, 0);
            }
            result += element;
            --left;
        }
        return result;
    }

private:
    // What stands for the element at the present place.
    QString passElement()
    {
        if (text.midRef(place, 4) == QLatin1String{"<!--"}) {
            return passTo(QStringLiteral("-->"));
        }
        int end = place + 1;
        if (end < text.size() && text.at(end) == QLatin1Char{'/'}) {
            ++end;
        }
        const int nameStart = end;
        while (end < text.size() && (isLetter(text.at(end)) || text.at(end).isDigit())) {
            ++end;
        }
        const QString name = text.mid(nameStart, end - nameStart).toLower();
        if (name.isEmpty() || !isLetter(name.front())) {
            return passCharacter();
        }
        if (hidesItsText(name) && nameStart == place + 1) {
            return passTo(QStringLiteral("</") + name);
        }
        const QString left = passTo(QStringLiteral(">"));
        return left.isEmpty() && !staysInLine(name) ? lineBreak() : left;
    }

    QString passTo(const QString &sign)
    {
        const int end =
            missing.contains(sign) ? -1 : text.indexOf(sign, place + 1, Qt::CaseInsensitive);
        if (end < 0) {
            missing += sign;
            return passCharacter();
        }
        place = end + (sign.startsWith(QLatin1Char{'<'}) ? 0 : sign.size());
        return {};
    }

    QString passCharacter()
    {
        ++place;
        return QStringLiteral("&lt;");
    }

    const QString &text;
    int place = 0;
    QStringList missing;
};

} // namespace

QString plainMarkup(const QString &markup, int most)
{
    return Scanner{markup}.plain(most);
}

} // namespace ui
