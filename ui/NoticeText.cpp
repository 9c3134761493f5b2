#include "ui/NoticeText.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextObjectInterface>
#include <QUrl>

#include <vector>

namespace ui {

namespace {

const QColor linkColour{255, 138, 78};

QString linkStyle()
{
    return QStringLiteral("<style>a{color:#FF8A4E;text-decoration:none;font-weight:600;}</style>");
}

// A document asks its parent for resources first, and where the parent is a document too it does
// not look for files itself.
class ResourceRefusal : public QTextDocument
{
public:
    using QTextDocument::QTextDocument;

protected:
    QVariant loadResource(int /*type*/, const QUrl & /*name*/) override { return {}; }
};

// The toolkit's own image handler tries the name as a file when the document has no such resource.
class NoImage : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    using QObject::QObject;

    QSizeF intrinsicSize(QTextDocument * /*document*/, int /*position*/,
                         const QTextFormat & /*format*/) override
    {
        return {0.0, 0.0};
    }

    void drawObject(QPainter * /*painter*/, const QRectF & /*rect*/, QTextDocument * /*document*/,
                    int /*position*/, const QTextFormat & /*format*/) override
    {}
};

bool mayLeaveTheProgram(const QString &address)
{
    const QString scheme = QUrl{address}.scheme();
    return scheme == QLatin1String{"http"} || scheme == QLatin1String{"https"} ||
           scheme == QLatin1String{"mailto"};
}

bool isHarmless(const QTextCharFormat &format)
{
    const bool plainOrAllowed = !format.isAnchor() || format.anchorHref().isEmpty() ||
                                mayLeaveTheProgram(format.anchorHref());
    return plainOrAllowed && format.toolTip().isEmpty();
}

QTextCharFormat disarmed(QTextCharFormat format)
{
    format.clearProperty(QTextFormat::TextToolTip);
    if (!isHarmless(format)) {
        format.setAnchor(false);
        format.clearProperty(QTextFormat::AnchorHref);
        format.clearForeground();
        format.clearProperty(QTextFormat::FontWeight);
    }
    return format;
}

void disarm(QTextDocument &document)
{
    std::vector<QTextFragment> suspects;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (!isHarmless(it.fragment().charFormat())) {
                suspects.push_back(it.fragment());
            }
        }
    }
    // From the end, so that a fragment which merges with its neighbour leaves those before it
    // where they are.
    for (auto it = suspects.rbegin(); it != suspects.rend(); ++it) {
        QTextCursor cursor{&document};
        const QTextCharFormat format = disarmed(it->charFormat());
        const int start = it->position();
        const int length = it->length();
        cursor.setPosition(start);
        cursor.setPosition(start + length, QTextCursor::KeepAnchor);
        cursor.setCharFormat(format);
    }
}

} // namespace

NoticeText::NoticeText(const QString &text, QWidget *parent)
    : QLabel(parent)
{
    setWordWrap(true);
    setTextFormat(Qt::RichText);
    setTextInteractionFlags(Qt::TextBrowserInteraction);
    setOpenExternalLinks(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Link, linkColour);
    setPalette(colours);
    setText(linkStyle() + text);

    // The label has made its document by now, but parses the text only when it is measured.
    auto *const document = findChild<QTextDocument *>();
    Q_ASSERT(document != nullptr);
    document->setParent(new ResourceRefusal{this});
    document->documentLayout()->registerHandler(QTextFormat::ImageObject,
                                                new NoImage{document->documentLayout()});
    sizeHint();
    disarm(*document);
}

} // namespace ui

#include "NoticeText.moc"
