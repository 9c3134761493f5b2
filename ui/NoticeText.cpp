#include "ui/NoticeText.h"

#include "ui/PlainMarkup.h"
#include "ui/SingleLine.h"

#include <QAbstractTextDocumentLayout>
#include <QRegularExpression>
#include <QSet>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace ui {

namespace {

// Each level of tables doubles the toolkit's work, and wide spans multiply the cells that the
// parser makes before anybody can count them.
constexpr int deepestTable = 5;
constexpr double mostCells = 100'000.0;

// The toolkit takes a time that is quadratic in the number of elements and lines, and up to some
// two hundred milliseconds for a thousand characters. With these it stays below two seconds.
constexpr int mostTags = 1'000;
constexpr int longestMarkup = 30'000;
constexpr int longestText = 6'000;
constexpr int mostLines = 1'000;

// Each rule of a style is held against each element and all that the element stands in.
constexpr int mostStyledTags = 20;
constexpr int longestStyledMarkup = 2'000;

// Each font is looked for, and one more for every script that it lacks.
constexpr int mostFonts = 20;

// Where lines and distances add up to some million pixels, the layout never ends.
constexpr double largestMeasure = 500.0;

// The larger the letters, the longer it takes to draw each that is new.
constexpr double largestPixels = 100.0;
constexpr double largestPoints = 75.0;

// The shaping of marks on one letter takes a time that is quadratic in their number.
constexpr int highestPile = 20;

QString linkStyle()
{
    return QStringLiteral("<style>a{color:#FF8A4E;text-decoration:none;font-weight:600;}</style>");
}

// A document asks its parent for resources first. An empty answer that is not null also keeps it
// from decoding those that are part of their own address.
class ResourceRefusal : public QTextDocument
{
public:
    using QTextDocument::QTextDocument;

protected:
    QVariant loadResource(int /*type*/, const QUrl & /*name*/) override { return QByteArray{""}; }
};

// Keeps the toolkit's layout away from a text until that is known to be harmless.
class NoLayout : public QAbstractTextDocumentLayout
{
public:
    using QAbstractTextDocumentLayout::QAbstractTextDocumentLayout;

    void draw(QPainter * /*painter*/, const PaintContext & /*context*/) override {}
    int hitTest(const QPointF & /*point*/, Qt::HitTestAccuracy /*accuracy*/) const override
    {
        return -1;
    }
    int pageCount() const override { return 1; }
    QSizeF documentSize() const override { return {0.0, 0.0}; }
    QRectF frameBoundingRect(QTextFrame * /*frame*/) const override { return {}; }
    QRectF blockBoundingRect(const QTextBlock & /*block*/) const override { return {}; }

protected:
    void documentChanged(int /*from*/, int /*removed*/, int /*added*/) override {}
};

bool mayLeaveTheProgram(const QString &address)
{
    const QString scheme = QUrl{address}.scheme();
    return scheme == QLatin1String{"http"} || scheme == QLatin1String{"https"} ||
           scheme == QLatin1String{"mailto"};
}

bool isHarmless(const QTextCharFormat &format)
{
    return format.anchorHref().isEmpty() || mayLeaveTheProgram(format.anchorHref());
}

QTextCharFormat withoutLink(QTextCharFormat format)
{
    format.setAnchor(false);
    format.clearProperty(QTextFormat::AnchorHref);
    format.clearForeground();
    format.clearProperty(QTextFormat::FontWeight);
    format.setFontUnderline(false);
    return format;
}

// The toolkit reads the name of an element past spaces, without its quotes, and with what its
// entities stand for.
bool mayHold(const QString &markup, const QString &element)
{
    const QRegularExpression name{QStringLiteral("<\\s*+(?:%1|[\"']|[^\\s<>=&]*+&)").arg(element),
                                  QRegularExpression::CaseInsensitiveOption |
                                      QRegularExpression::UseUnicodePropertiesOption};
    return markup.contains(name);
}

// What a character written as a number stands for, at least wherever the toolkit reads it, or the
// same as before. What needs more than 16 bits, or is half a character, is no part of a word.
QString resolved(const QRegularExpressionMatch &reference)
{
    constexpr int decimal = 10;
    constexpr int hexadecimal = 16;
    constexpr uint last = 0xffff;
    const QStringRef number = reference.capturedRef(1);
    const bool isHexadecimal = number.startsWith(QLatin1Char{'x'}, Qt::CaseInsensitive);
    bool isNumber = false;
    const uint code =
        number.mid(isHexadecimal ? 1 : 0).toUInt(&isNumber, isHexadecimal ? hexadecimal : decimal);
    return isNumber && code <= last && !QChar::isSurrogate(code) ? QString{QChar{code}}
                                                                 : reference.captured();
}

QString withNumbersResolved(const QString &markup)
{
    // It needs no end where the text ends, which can be before a comment.
    static const QRegularExpression reference{QStringLiteral("&#([^&;<]++)(?:;|(?=<)|\\z)")};
    QString result;
    int end = 0;
    for (auto references = reference.globalMatch(markup); references.hasNext();) {
        const QRegularExpressionMatch match = references.next();
        result += markup.midRef(end, match.capturedStart() - end) + resolved(match);
        end = match.capturedEnd();
    }
    return result + markup.midRef(end);
}

bool haveModestSpans(const QString &markup, qint64 tags)
{
    if (!mayHold(markup, QStringLiteral("table"))) {
        return true;
    }
    static const QRegularExpression span{QStringLiteral("colspan[^0-9<>]*+([0-9]++)"),
                                         QRegularExpression::CaseInsensitiveOption};
    const QString spelledOut = withNumbersResolved(markup);
    auto columns = static_cast<double>(tags);
    for (auto spans = span.globalMatch(spelledOut); spans.hasNext();) {
        columns += spans.next().captured(1).toDouble();
    }
    return static_cast<double>(tags) * columns <= mostCells;
}

bool canBeParsed(const QString &markup)
{
    if (markup.size() > longestMarkup || !markup.isValidUtf16()) {
        return false;
    }
    const auto costs = [](QChar c) {
        return c == QLatin1Char{'<'} || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
    };
    const qint64 tags = std::count_if(markup.cbegin(), markup.cend(), costs);
    const bool styled = (tags > mostStyledTags || markup.size() > longestStyledMarkup) &&
                        mayHold(markup, QStringLiteral("style"));
    return tags <= mostTags && !styled && haveModestSpans(markup, tags);
}

double limitOf(int property)
{
    switch (property) {
    case QTextFormat::FontPixelSize:
        return largestPixels;
    case QTextFormat::FontPointSize:
        return largestPoints;
    case QTextFormat::ImageWidth:
    case QTextFormat::ImageHeight:
        // No image is there any more when the text is laid out.
        return std::numeric_limits<double>::infinity();
    default:
        return largestMeasure;
    }
}

bool isWithin(double limit, const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::Double:
        return std::abs(value.toDouble()) <= limit;
    case QMetaType::QTextLength:
        return std::abs(value.value<QTextLength>().rawValue()) <= limit;
    case QMetaType::QVariantList: {
        const QVariantList parts = value.toList();
        return std::all_of(parts.cbegin(), parts.cend(),
                           [limit](const QVariant &part) { return isWithin(limit, part); });
    }
    default:
        return true;
    }
}

bool isModest(const QTextFormat &format)
{
    const QMap<int, QVariant> properties = format.properties();
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        if (!isWithin(limitOf(it.key()), it.value())) {
            return false;
        }
    }
    return true;
}

bool areModest(const QVector<QTextFormat> &formats)
{
    QSet<QString> fonts;
    for (const QTextFormat &format : formats) {
        if (!isModest(format)) {
            return false;
        }
        if (format.isCharFormat()) {
            fonts += format.toCharFormat().font().key();
        }
    }
    return fonts.size() <= mostFonts;
}

bool isPiledUp(uint character)
{
    // Two vowels are taken apart into a mark and a letter.
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

QString withoutPiles(const QString &text)
{
    const QVector<uint> characters = text.toUcs4();
    QVector<uint> kept;
    kept.reserve(characters.size());
    int height = 0;
    for (const uint character : characters) {
        height = isPiledUp(character) ? height + 1 : 0;
        if (height <= highestPile) {
            kept += character;
        }
    }
    return QString::fromUcs4(kept.constData(), kept.size());
}

bool canBeLaidOut(const QTextDocument &document)
{
    const QString text = document.toPlainText();
    if (text.count(QLatin1Char{'\n'}) > mostLines || withoutPiles(text) != text ||
        !areModest(document.allFormats())) {
        return false;
    }
    std::vector<std::pair<const QTextFrame *, int>> waiting{{document.rootFrame(), 0}};
    while (!waiting.empty()) {
        const auto [frame, depth] = waiting.back();
        waiting.pop_back();
        if (depth > deepestTable || text.size() << depth > longestText) {
            return false;
        }
        for (const QTextFrame *const child : frame->childFrames()) {
            waiting.emplace_back(child, depth + 1);
        }
    }
    return true;
}

void dropIfEmpty(const QTextBlock &block)
{
    QTextCursor here{block};
    const QTextCursor next{block.next()};
    if (block.length() == 1 && block.next().isValid() &&
        here.currentFrame() == next.currentFrame() &&
        (here.currentTable() == nullptr ||
         here.currentTable()->cellAt(here) == next.currentTable()->cellAt(next))) {
        here.deleteChar();
    }
}

void makePlain(QTextDocument &document)
{
    QStringList lines =
        withoutPiles(document.toPlainText()).split(QLatin1Char{'\n'}, Qt::SkipEmptyParts);
    if (lines.size() > mostLines) {
        lines = lines.mid(0, mostLines) << QString{QChar{0x2026}};
    }
    document.setPlainText(beginning(lines.join(QLatin1Char{'\n'}), longestText));
}

void disarm(QTextDocument &document)
{
    // Not the fragments themselves: they change as their neighbours do.
    struct Suspect
    {
        int start;
        int end;
        QTextCharFormat format;
    };
    std::vector<Suspect> suspects;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment part = it.fragment();
            const QTextCharFormat format = part.charFormat();
            if (format.isImageFormat() || !isHarmless(format)) {
                suspects.push_back({part.position(), part.position() + part.length(), format});
            }
        }
    }
    QTextCursor cursor{&document};
    cursor.beginEditBlock();
    // From the end, so that what is removed leaves the places before it where they are.
    for (auto it = suspects.rbegin(); it != suspects.rend(); ++it) {
        cursor.setPosition(it->start);
        cursor.setPosition(it->end, QTextCursor::KeepAnchor);
        if (it->format.isImageFormat()) {
            cursor.removeSelectedText();
            dropIfEmpty(cursor.block());
        } else {
            cursor.setCharFormat(withoutLink(it->format));
        }
    }
    cursor.endEditBlock();
}

} // namespace

NoticeText::NoticeText(const QString &text, QWidget *parent)
    : LinkLabel(parent)
{
    // For a label without a name, assistive technology gets a text that is parsed once more, in a
    // document that loads what it likes.
    setAccessibleName(QStringLiteral(" "));
    const bool parsed = canBeParsed(text);
    setText(linkStyle() + (parsed ? text : plainMarkup(text, longestMarkup)));

    // The label has made its document by now, but parses the text only when it is measured.
    document = findChild<QTextDocument *>();
    Q_ASSERT(document != nullptr);
    document->setParent(new ResourceRefusal{this});
    document->setDocumentLayout(new NoLayout{document});
    sizeHint();
    if (parsed && canBeLaidOut(*document)) {
        disarm(*document);
    } else {
        makePlain(*document);
    }
    document->setDocumentLayout(nullptr);
    if (!document->isEmpty()) {
        setAccessibleName(document->toPlainText());
    }
    // Also makes the label forget what it has measured.
    setWordWrap(true);
}

QRect NoticeText::selectedPlace() const
{
    if (!hasSelectedText()) {
        return {};
    }
    const QTextBlock block = document->findBlock(selectionStart());
    const int start = selectionStart() - block.position();
    const QTextLine line = block.layout()->lineForTextPosition(start);
    const int end = std::min(start + selectedText().size(), line.textStart() + line.textLength());
    const QPointF corner = document->documentLayout()->blockBoundingRect(block).topLeft();
    const double left = std::min(line.cursorToX(start), line.cursorToX(end));
    const double right = std::max(line.cursorToX(start), line.cursorToX(end));
    return QRectF{left, line.y(), right - left, line.height()}
        .translated(corner + contentsRect().topLeft())
        .toAlignedRect();
}

bool NoticeText::hasLink() const
{
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (it.fragment().charFormat().hasProperty(QTextFormat::AnchorHref)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace ui
