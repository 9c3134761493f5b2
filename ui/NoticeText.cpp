#include "ui/NoticeText.h"

#include "ui/PlainMarkup.h"
#include "ui/SingleLine.h"

#include <QAbstractTextDocumentLayout>
#include <QRegularExpression>
#include <QSet>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace ui {

namespace {

// Each level of tables doubles the toolkit's work, and wide spans multiply cells.
constexpr int deepestTable = 5;
constexpr int mostCells = 10'000;

// The toolkit takes a time that is quadratic in the number of elements and lines, and up to some
// two hundred milliseconds for a thousand characters. With these it stays below a second or so.
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
bool mayBeStyled(const QString &markup)
{
    static const QRegularExpression style{QStringLiteral("<\\s*+(?:style|[\"']|[^\\s<>=&]*+&)"),
                                          QRegularExpression::CaseInsensitiveOption |
                                              QRegularExpression::UseUnicodePropertiesOption};
    return markup.contains(style);
}

bool canBeParsed(const QString &markup)
{
    if (markup.size() > longestMarkup) {
        return false;
    }
    const auto costs = [](QChar c) {
        return c == QLatin1Char{'<'} || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
    };
    const auto tags = std::count_if(markup.cbegin(), markup.cend(), costs);
    return tags <= mostStyledTags ? markup.size() <= longestStyledMarkup || !mayBeStyled(markup)
                                  : tags <= mostTags && !mayBeStyled(markup);
}

bool isModest(const QVariant &property)
{
    switch (property.userType()) {
    case QMetaType::Int:
    case QMetaType::Double:
        return std::abs(property.toDouble()) <= largestMeasure;
    case QMetaType::QTextLength:
        return std::abs(property.value<QTextLength>().rawValue()) <= largestMeasure;
    case QMetaType::QVariantList: {
        const QVariantList parts = property.toList();
        return std::all_of(parts.cbegin(), parts.cend(),
                           [](const QVariant &part) { return isModest(part); });
    }
    default:
        return true;
    }
}

bool isModest(const QTextFormat &format)
{
    QMap<int, QVariant> properties = format.properties();
    // No image is there any more when the text is laid out.
    properties.remove(QTextFormat::ImageWidth);
    properties.remove(QTextFormat::ImageHeight);
    return std::all_of(properties.cbegin(), properties.cend(),
                       [](const QVariant &property) { return isModest(property); });
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

bool canBeLaidOut(const QTextDocument &document)
{
    if (document.characterCount() - 1 > longestText || !areModest(document.allFormats())) {
        return false;
    }
    qint64 cells = 0;
    std::vector<std::pair<const QTextFrame *, int>> waiting{{document.rootFrame(), 0}};
    while (!waiting.empty()) {
        const auto [frame, depth] = waiting.back();
        waiting.pop_back();
        if (const auto *const table = qobject_cast<const QTextTable *>(frame)) {
            cells += qint64{table->rows()} * table->columns();
        }
        if (depth > deepestTable || cells > mostCells) {
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
    QStringList lines = document.toPlainText().split(QLatin1Char{'\n'}, Qt::SkipEmptyParts);
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
    auto *const document = findChild<QTextDocument *>();
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

} // namespace ui
