#include "tests/fuzz/NoticeInspection.h"

#include "tests/fuzz/Finding.h"
#include "tests/support/ShownDocument.h"
#include "ui/NoticeDialog.h"
#include "ui/NoticeText.h"

#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

#include <array>
#include <cstdint>

namespace fuzz {

namespace {

enum Feature { Blocks, Fragments, Links, Tables, Frames, Lists, Depth, Scrolls, Styles, Count };

// The toolkit is not instrumented: this is how the fuzzer learns of new kinds of documents.
__attribute__((section("__libfuzzer_extra_counters"))) std::array<std::uint8_t, Count> features;

void count(Feature feature)
{
    if (features.at(feature) < UINT8_MAX) {
        ++features.at(feature);
    }
}

bool mayBeFollowed(const QString &address)
{
    const QString scheme = QUrl{address}.scheme();
    return scheme == QStringLiteral("http") || scheme == QStringLiteral("https") ||
           scheme == QStringLiteral("mailto");
}

void inspectFragment(const QTextFragment &fragment)
{
    const QTextCharFormat format = fragment.charFormat();
    count(Fragments);
    require(!format.isImageFormat(), "an image in a notice");
    if (!format.anchorHref().isEmpty()) {
        count(Links);
        require(mayBeFollowed(format.anchorHref()), "a link in a notice:", format.anchorHref());
    }
    if (format.hasProperty(QTextFormat::ForegroundBrush)) {
        count(Styles);
    }
}

void inspectFrames(const QTextFrame &frame, int depth)
{
    require(depth <= 100, "frames nested too deep to be laid out");
    for (int i = static_cast<int>(features.at(Depth)); i < depth; ++i) {
        count(Depth);
    }
    for (const QTextFrame *const child : frame.childFrames()) {
        count(qobject_cast<const QTextTable *>(child) != nullptr ? Tables : Frames);
        inspectFrames(*child, depth + 1);
    }
}

} // namespace

void inspectNotice(ui::NoticeDialog &dialog, const QString &text)
{
    const auto *const label = dialog.findChild<ui::NoticeText *>();
    // What is too much to be parsed loses its markup; of styles and tables, little is too much.
    const int tags = text.count(QLatin1Char{'<'}) + text.count(QChar::LineSeparator) +
                     text.count(QChar::ParagraphSeparator);
    const auto mayHold = [&text](const char *element) {
        return text.contains(QLatin1String{element}, Qt::CaseInsensitive) ||
               text.contains(QRegularExpression{QStringLiteral("<[^<>=]*[&\"']")});
    };
    const bool mayLoseMarkup =
        tags > 1'000 || (mayHold("style") && (tags > 20 || text.size() > 2'000)) ||
        (mayHold("table") && (tags > 300 || text.contains(QLatin1String{"&#"}) ||
                              text.contains(QLatin1String{"span"}, Qt::CaseInsensitive)));
    require(label != nullptr && (label->text().endsWith(text) || mayLoseMarkup),
            "another notice:", text);

    const QTextDocument *const document = support::shownDocument(label);
    const QString name = document->isEmpty() ? QStringLiteral(" ") : document->toPlainText();
    require(label->accessibleName() == name, "not what a notice shows:", text);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        count(Blocks);
        if (block.textList() != nullptr) {
            count(Lists);
        }
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            inspectFragment(it.fragment());
        }
    }
    inspectFrames(*document->rootFrame(), 0);

    const QSize room = dialog.screen()->availableSize();
    require(dialog.width() <= room.width() && dialog.height() <= room.height(),
            "a notice larger than the screen");
    const auto *const ok = dialog.findChild<QPushButton *>();
    require(ok != nullptr && ok->isVisible() && dialog.rect().contains(ok->geometry()),
            "no button in sight");
    if (!dialog.rect().contains(label->rect())) {
        count(Scrolls);
    }
    dialog.grab();
}

} // namespace fuzz
