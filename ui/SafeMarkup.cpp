#include "ui/SafeMarkup.h"

#include "ui/SingleLine.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace ui {

namespace {

constexpr int maxTags = 20;
constexpr int maxMarks = 20;

QRegularExpression pattern(const char *text)
{
    return QRegularExpression{QString::fromLatin1(text),
                              QRegularExpression::CaseInsensitiveOption |
                                  QRegularExpression::DotMatchesEverythingOption};
}

bool isPrintable(uint character)
{
    return character <= QChar::LastValidCodePoint && !QChar::isNonCharacter(character) &&
           !QChar::isSurrogate(character) && QChar::category(character) != QChar::Other_Control;
}

bool isMark(uint character)
{
    // Qt decomposes these two vowels into a mark and a letter.
    constexpr uint thaiAm = 0xe33;
    constexpr uint laoAm = 0xeb3;
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return true;
    default:
        return character == thaiAm || character == laoAm;
    }
}

class Cleaner
{
public:
    explicit Cleaner(const QString &markup)
        : text(markup)
    {}

    QString clean()
    {
        while (position < text.size()) {
            const QChar next = text.at(position);
            if (next == QLatin1Char{'&'}) {
                readAmpersand();
            } else if (next != QLatin1Char{'<'}) {
                readCharacter();
            } else if (!readTag()) {
                ++position;
                append(u"&lt;", false);
            }
        }
        return result;
    }

private:
    QRegularExpressionMatch matchHere(const QRegularExpression &wanted) const
    {
        return wanted.match(text, position, QRegularExpression::NormalMatch,
                            QRegularExpression::AnchoredMatchOption);
    }

    void append(QStringView shown, bool mark)
    {
        marks = mark ? marks + 1 : 0;
        if (marks <= maxMarks) {
            result.append(shown.data(), static_cast<int>(shown.size()));
        }
    }

    void readCharacter()
    {
        const int start = position++;
        uint code = text.at(start).unicode();
        if (QChar::isHighSurrogate(code)) {
            code = QChar::surrogateToUcs4(text.at(start), text.at(position++));
        }
        append(QStringView{text}.mid(start, position - start), isMark(code));
    }

    void readAmpersand()
    {
        constexpr int decimal = 10;
        constexpr int hexadecimal = 16;
        static const QRegularExpression entity =
            pattern("&(?:#([0-9]{1,7})|#x([0-9a-f]{1,6})|([a-z][a-z0-9]{1,7}));");
        static const QRegularExpression alone = pattern("&(?!#|[a-z0-9]*+[;<])");
        static const QRegularExpression invisible = pattern("&(?:lrm|rlm|shy|zwj|zwnj);");
        const QRegularExpressionMatch found = matchHere(entity);
        const bool isName = found.capturedLength(3) > 0;
        const uint number = found.capturedLength(1) > 0
                                ? found.capturedRef(1).toUInt(nullptr, decimal)
                                : found.capturedRef(2).toUInt(nullptr, hexadecimal);
        if (isName || isPrintable(number)) {
            append(found.capturedView(), isName ? matchHere(invisible).hasMatch() : isMark(number));
            position = found.capturedEnd();
        } else {
            append(matchHere(alone).hasMatch() ? u"&" : u"&amp;", false);
            ++position;
        }
    }

    bool readTag()
    {
        static const QRegularExpression hidden = pattern(
            "<!--.*?-->|<!doctype[^<>]*+>|<(script|style|title)(?=[\\s/>])[^>]*+>.*?</\\1\\s*+>");
        // All elements that Qt knows: those kept, those replaced by a space, those dropped.
        static const QRegularExpression tag = pattern(
            "<(/?)(?:(a|b|big|blockquote|br|center|code|div|em|font|h[1-6]|hr|i|li|ol|p|pre|s|small"
            "|span|strong|sub|sup|tt|u|ul)|(address|caption|d[dlt]|table|tbody|t[dhr]|tfoot|thead)"
            "|body|cite|dfn|head|html|img|kbd|link|meta|nobr|qt|samp|script|style|title|var)"
            "((?=[\\s/>])(?:[^<>\"']|\"[^\"]*+\"|'[^']*+')*+)>");
        QRegularExpressionMatch found = matchHere(hidden);
        if (!found.hasMatch()) {
            found = matchHere(tag);
            if (found.capturedLength(2) > 0) {
                found.capturedLength(1) > 0 ? end(found.captured(2))
                                            : start(found.captured(2), found.captured(4));
            } else if (found.capturedLength(3) > 0) {
                append(u" ", false);
            }
        }
        position = std::max(position, found.capturedEnd());
        return found.hasMatch();
    }

    void start(const QString &written, QString attributes)
    {
        static const QRegularExpression none = pattern("\\A\\s*+/?\\z");
        // The one attribute that an element may have.
        static const QRegularExpression wanted =
            pattern("\\A(?|a\\b.*?\\s(href)\\s*+=\\s*+([\"']?)((?:https?|mailto):"
                    "(?:[^\"'<>&\\s\\x00-\\x1f\\x7f]|&(?!#))++)"
                    "|font\\b.*?\\s(color)\\s*+=\\s*+([\"']?)(#[0-9a-f]{6}|[a-z]{1,20}+)"
                    "|span\\b.*?\\s(style)\\s*+=\\s*+([\"'])(?:[^\"']*;)?\\s*+color\\s*+:\\s*+"
                    "(#[0-9a-f]{6}|[a-z]{1,20}+)\\s*+(?:;[^\"']*+)?)\\2(?=[\\s/]|\\z)");
        const QString name = written.toLower();
        const bool isLink = name == QLatin1String{"a"};
        const bool closesLast = name == QLatin1String{"p"} || name == QLatin1String{"li"};
        if (isLink || !none.match(attributes).hasMatch()) {
            const QRegularExpressionMatch found = wanted.match(name + attributes);
            if (isLink && !found.hasMatch()) {
                return;
            }
            const QString quote =
                found.capturedLength(2) > 0 ? found.captured(2) : QStringLiteral("\"");
            const QLatin1String property{name == QLatin1String{"span"} ? "color:" : ""};
            attributes = found.hasMatch()
                             ? QLatin1Char{' '} + found.captured(1) + QLatin1Char{'='} + quote +
                                   property + found.captured(3) + quote
                             : QString{};
        }
        if (name != QLatin1String{"br"} && name != QLatin1String{"hr"}) {
            if (closesLast && !openTags.isEmpty() && openTags.constLast() == name) {
                openTags.removeLast();
            }
            if (openTags.size() == maxTags) {
                return;
            }
            openTags += name;
        }
        result += QLatin1Char{'<'} + written + attributes + QLatin1Char{'>'};
    }

    void end(const QString &written)
    {
        if (const int level = openTags.lastIndexOf(written.toLower()); level >= 0) {
            openTags.erase(openTags.begin() + level, openTags.end());
            result += QStringLiteral("</") + written + QLatin1Char{'>'};
        }
    }

    const QString &text;
    QString result;
    QStringList openTags;
    int position = 0;
    int marks = 0;
};

} // namespace

QString safeMarkup(const QString &text)
{
    if (!text.isValidUtf16()) {
        return safeMarkup(QString::fromUtf8(text.toUtf8()).toHtmlEscaped());
    }
    QString markup = beginning(text, maxNoticeLength);
    if (text.size() > maxNoticeLength) {
        static const QRegularExpression halfTag = pattern("</?[a-z][^<>]{0,200}\\z");
        markup.replace(halfTag, markup.right(1));
    }
    return Cleaner{markup}.clean();
}

} // namespace ui
