#include "tests/support/Painted.h"
#include "tests/support/WindowBench.h"
#include "ui/PillLabel.h"

#include <QElapsedTimer>
#include <QHelpEvent>
#include <QImage>
#include <QScreen>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

using support::painted;
using support::WindowBench;
using ui::PillLabel;

namespace {

constexpr QChar ellipsis{0x2026};
constexpr int lineLimit = 256;
constexpr int toolTipLimit = 2000;

/// The style sheet of the main window's pill, with any font.
QString pillStyle(const QString &font = QStringLiteral("font-size: 12px;"))
{
    return QStringLiteral("QLabel { background: rgba(255, 255, 255, 25); color: #C9CBE6;"
                          " padding: 8px 18px; border-radius: 14px; %1 }")
        .arg(font);
}

/// A pill of a fixed size, shown.
class Pill : public PillLabel
{
public:
    explicit Pill(const QString &text, int width = 304)
        : PillLabel(text, nullptr)
    {
        setAlignment(Qt::AlignCenter);
        setStyleSheet(pillStyle());
        resize(width, 31);
        show();
    }
};

/// Rests the mouse on a label and returns the tool tip's text; empty if there is none. Line
/// breaks that only fit the text into the tool tip are taken out.
QString toolTipOf(QWidget &label)
{
    const QPoint middle = label.rect().center();
    QHelpEvent rest{QEvent::ToolTip, middle, label.mapToGlobal(middle)};
    QCoreApplication::sendEvent(&label, &rest);
    const QString html = QToolTip::text();
    return QTextDocumentFragment::fromHtml(html).toPlainText().remove(QLatin1Char{'\n'});
}

QWidget *toolTipWindow()
{
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget *const window : windows) {
        if (window->inherits("QTipLabel") && window->isVisible()) {
            return window;
        }
    }
    return nullptr;
}

/// True if no surrogate is without its pair.
bool isWellFormed(const QString &text)
{
    return QString::fromUtf8(text.toUtf8()) == text;
}

QString repeated(const char *text, int count)
{
    return QString::fromUtf8(text).repeated(count);
}

} // namespace

class tst_PillLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void textStaysAsSet_data();
    void textStaysAsSet();
    void looksLikeAPlainLabel_data();
    void looksLikeAPlainLabel();
    void markupLoadsNothing();
    void shownOnOneLine_data();
    void shownOnOneLine();
    void longTextIsShortened_data();
    void longTextIsShortened();
    void followsItsWidth();
    void neverAsksForMuch();
    void noHalfCharacters();
    void shownUpToItsLimit();

    void noToolTipForWholeText_data();
    void noToolTipForWholeText();
    void toolTipHoldsMore();
    void toolTipEndsAtItsLimit();
    void toolTipShowsMarkup();
    void toolTipRunsAsItBegins_data();
    void toolTipRunsAsItBegins();
    void toolTipIsOnTheScreen_data();
    void toolTipIsOnTheScreen();
    void toolTipGoesWithTheLongText();
    void toolTipGoesWithItsText();
    void toolTipsOfOthersStay();

    void costDoesNotGrow();

    void longTextMovesNothing_data();
    void longTextMovesNothing();
    void hugeLineFromTheService();
};

void tst_PillLabel::initTestCase()
{
    WindowBench::resetWorld();
}

void tst_PillLabel::cleanup()
{
    QToolTip::hideText();
    QVERIFY(support::waitFor([] { return !QToolTip::isVisible(); }));
}

void tst_PillLabel::textStaysAsSet_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << QString{};
    QTest::newRow("short") << QStringLiteral("Tunnel up");
    QTest::newRow("markup") << QStringLiteral("<b>a</b> &amp; %1");
    QTest::newRow("several lines") << QStringLiteral("a\nb\tc\u2028d");
    QTest::newRow("blanks at the ends") << QStringLiteral("  a  ");
    QTest::newRow("long") << repeated("no route to host ", 100);
    QTest::newRow("huge") << repeated("x", 1 << 20);
}

void tst_PillLabel::textStaysAsSet()
{
    QFETCH(QString, text);
    Pill pill{text};
    QCOMPARE(pill.text(), text);
    pill.setText(QStringLiteral("other"));
    pill.setText(text);
    painted(pill);
    toolTipOf(pill);
    QCOMPARE(pill.text(), text);
    QCOMPARE(pill.textFormat(), Qt::PlainText);
}

void tst_PillLabel::looksLikeAPlainLabel_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("style");

    const std::pair<const char *, QString> texts[] = {
        {"empty", QString{}},
        {"one letter", QStringLiteral("x")},
        {"idle", QStringLiteral("Idle")},
        {"overhang", QStringLiteral("fjord Wavy")},
        {"sentence", QStringLiteral("Waiting for service…")},
        {"blanks", QStringLiteral("  a   b  ")},
        {"other blanks", QStringLiteral("a\u00a0b\u3000c")},
        {"bold", QStringLiteral("<b>bold</b>")},
        {"image", QStringLiteral("<img src='x.png'>")},
        {"entity", QStringLiteral("a &amp; b")},
        {"ampersand", QStringLiteral("&File && more")},
        {"placeholder", QStringLiteral("Config %1 bytes")},
        {"Japanese", QStringLiteral("サービス待機中…")},
        {"Russian", QStringLiteral("Ожидание службы…")},
        {"Hebrew", QStringLiteral("שגיאה 12!")},
        {"both directions", QStringLiteral("failed: שגיאה (12)")},
        {"combining", QStringLiteral("e\u0301a\u0308")},
        {"beyond the basic plane", QStringLiteral("\U0001f512 locked")},
    };
    const std::pair<const char *, QString> styles[] = {
        {"window's style", pillStyle()},
        {"small", pillStyle(QStringLiteral("font-size: 7px;"))},
        {"large", pillStyle(QStringLiteral("font-size: 31px;"))},
        {"points", pillStyle(QStringLiteral("font-size: 11pt;"))},
        {"serif", pillStyle(QStringLiteral("font: bold italic 14px serif;"))},
        {"monospace", pillStyle(QStringLiteral("font: 13px monospace; letter-spacing: 2px;"))},
        {"no style", QString{}},
        {"frame", QStringLiteral("border: 3px solid red; margin: 2px;")},
    };
    for (const auto &[styleName, style] : styles) {
        for (const auto &[textName, text] : texts) {
            QTest::addRow("%s, %s", textName, styleName) << text << style;
        }
    }
}

void tst_PillLabel::looksLikeAPlainLabel()
{
    QFETCH(QString, text);
    QFETCH(QString, style);

    PillLabel pill{text, nullptr};
    QLabel plain{text};
    plain.setTextFormat(Qt::PlainText);
    for (QLabel *const label : {static_cast<QLabel *>(&pill), &plain}) {
        label->setAlignment(Qt::AlignCenter);
        label->setStyleSheet(style);
        label->ensurePolished();
    }
    QCOMPARE(pill.sizeHint(), plain.sizeHint());
    pill.resize(pill.sizeHint());
    plain.resize(plain.sizeHint());
    QCOMPARE(pill.shownText(), text);
    QCOMPARE(painted(pill), painted(plain));
}

void tst_PillLabel::markupLoadsNothing()
{
    const QDir folder{QDir::tempPath()};
    const QString file = folder.filePath(QStringLiteral("vivid.png"));
    QImage vivid{100, 100, QImage::Format_RGB32};
    vivid.fill(Qt::green);
    QVERIFY(vivid.save(file));

    Pill pill{QStringLiteral("<img src='%1'>").arg(file)};
    QCOMPARE(pill.sizeHint().height(), Pill{QStringLiteral("x")}.sizeHint().height());
    const QImage image = painted(pill);
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            QVERIFY(image.pixelColor(x, y) != QColor{Qt::green});
        }
    }
}

void tst_PillLabel::shownOnOneLine_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("line feed") << QStringLiteral("one\ntwo");
    QTest::newRow("carriage return") << QStringLiteral("one\rtwo");
    QTest::newRow("tab") << QStringLiteral("one\ttwo");
    QTest::newRow("vertical tab") << QStringLiteral("one\vtwo");
    QTest::newRow("form feed") << QStringLiteral("one\ftwo");
    QTest::newRow("null character") << QStringLiteral("one\0two");
    QTest::newRow("escape") << QStringLiteral("one\u001btwo");
    QTest::newRow("delete") << QStringLiteral("one\u007ftwo");
    QTest::newRow("next line") << QStringLiteral("one\u0085two");
    QTest::newRow("string terminator") << QStringLiteral("one\u009ctwo");
    QTest::newRow("line separator") << QStringLiteral("one\u2028two");
    QTest::newRow("paragraph separator") << QStringLiteral("one\u2029two");
}

void tst_PillLabel::shownOnOneLine()
{
    QFETCH(QString, text);
    Pill pill{text};
    Pill blank{QStringLiteral("one two")};
    QCOMPARE(pill.shownText(), blank.text());
    QCOMPARE(pill.sizeHint(), blank.sizeHint());
    QCOMPARE(painted(pill), painted(blank));
}

void tst_PillLabel::longTextIsShortened_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("words") << repeated("no route to host ", 20);
    QTest::newRow("no blank") << repeated("0123456789abcdef", 100);
    QTest::newRow("narrow letters") << repeated("il", 200);
    QTest::newRow("wide letters") << repeated("W", 60);
    QTest::newRow("Japanese") << repeated("接続", 100);
    QTest::newRow("right to left") << repeated("שגיאה ברשת ", 30);
    QTest::newRow("beyond the basic plane") << repeated("\xf0\x9f\x94\x92", 200);
    QTest::newRow("markup") << repeated("<b>loud</b>", 40);
    QTest::newRow("huge") << repeated("a b ", 1 << 18);
}

void tst_PillLabel::longTextIsShortened()
{
    QFETCH(QString, text);
    const Pill pill{text};
    const QString shown = pill.shownText();
    const QString beginning = shown.chopped(1);
    QCOMPARE(shown.back(), ellipsis);
    QVERIFY(!beginning.isEmpty());
    QVERIFY(text.startsWith(beginning));
    QVERIFY(isWellFormed(shown));

    // As much as fits, and no more.
    const QFontMetrics metrics = pill.fontMetrics();
    const int room = pill.contentsRect().width();
    QVERIFY(metrics.horizontalAdvance(shown) <= room);
    const QString more = text.left(beginning.size() + 4) + ellipsis;
    QVERIFY(metrics.horizontalAdvance(more) > room);
}

void tst_PillLabel::followsItsWidth()
{
    const QString text = QStringLiteral("no route to host");
    Pill pill{text};
    const int needed = pill.sizeHint().width();
    pill.resize(needed, pill.height());
    QCOMPARE(pill.shownText(), text);
    // The bearing of slanted letters may add a pixel or two to the width of a text.
    pill.resize(needed - pill.fontMetrics().averageCharWidth(), pill.height());
    QCOMPARE(pill.shownText().back(), ellipsis);
    pill.resize(needed, pill.height());
    QCOMPARE(pill.shownText(), text);
}

void tst_PillLabel::neverAsksForMuch()
{
    const Pill one{QString{ellipsis}};
    const Pill little{QStringLiteral("i")};
    const Pill much{repeated("x", 1000)};
    const Pill huge{repeated("x", 1 << 20)};
    QCOMPARE(much.minimumSizeHint(), one.sizeHint());
    QCOMPARE(huge.minimumSizeHint(), one.sizeHint());
    QCOMPARE(little.minimumSizeHint(), little.sizeHint());
    QCOMPARE(huge.sizeHint(), much.sizeHint());
    QCOMPARE(huge.sizeHint().height(), one.sizeHint().height());
    QCOMPARE(huge.sizePolicy().hasHeightForWidth(), false);
}

void tst_PillLabel::noHalfCharacters()
{
    // Surrogate pairs at even and at odd places, so that every cut comes inside a pair once.
    for (int before = 0; before < 2; ++before) {
        const QString text = repeated("x", before) + repeated("\xf0\x9f\x94\x92", 3000);
        Pill wide{text, 20000};
        QVERIFY(wide.shownText().size() > 200);
        QVERIFY(isWellFormed(wide.shownText()));
        const QString tip = toolTipOf(wide);
        QVERIFY(tip.size() > 200);
        QVERIFY(isWellFormed(tip));
    }
}

void tst_PillLabel::shownUpToItsLimit()
{
    Pill wide{repeated(".", lineLimit), 20000};
    QCOMPARE(wide.shownText(), wide.text());
    QVERIFY(toolTipOf(wide).isEmpty());
    wide.setText(repeated(".", lineLimit + 1));
    QCOMPARE(wide.shownText(), repeated(".", lineLimit) + ellipsis);
    QCOMPARE(toolTipOf(wide), wide.text());
}

void tst_PillLabel::noToolTipForWholeText_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << QString{};
    QTest::newRow("short") << QStringLiteral("Tunnel up");
    QTest::newRow("markup") << QStringLiteral("<b>x</b>");
    QTest::newRow("ellipsis of its own") << QStringLiteral("Waiting for service…");
    QTest::newRow("tab") << QStringLiteral("one\ttwo");
}

void tst_PillLabel::noToolTipForWholeText()
{
    QFETCH(QString, text);
    Pill pill{text};
    toolTipOf(pill);
    QVERIFY(!QToolTip::isVisible());
    pill.resize(40, pill.height());
    QCOMPARE(toolTipOf(pill).isEmpty(), text.isEmpty());
}

void tst_PillLabel::toolTipHoldsMore()
{
    QString text;
    for (int i = 0; i < 100; ++i) {
        text += QStringLiteral("word%1 ").arg(i);
    }
    text = text.trimmed();
    Pill pill{text};
    const QString tip = toolTipOf(pill);
    QVERIFY(toolTipWindow() != nullptr);
    // The tool tip may have lost line breaks that replaced spaces.
    QCOMPARE(tip.simplified().remove(QLatin1Char{' '}), QString{text}.remove(QLatin1Char{' '}));
}

void tst_PillLabel::toolTipEndsAtItsLimit()
{
    Pill pill{repeated(".", toolTipLimit)};
    QCOMPARE(toolTipOf(pill), pill.text());
    pill.setText(repeated(".", toolTipLimit + 1));
    QCOMPARE(toolTipOf(pill), repeated(".", toolTipLimit) + ellipsis);
    pill.setText(repeated(".", 1 << 20));
    QCOMPARE(toolTipOf(pill), repeated(".", toolTipLimit) + ellipsis);
}

void tst_PillLabel::toolTipShowsMarkup()
{
    const QString text =
        QStringLiteral("<b>a</b>&amp;<img/src='x.png'>&lt;%1\"%2'</p><script>").repeated(8);
    Pill pill{text};
    QCOMPARE(toolTipOf(pill), text);
    QVERIFY(!QToolTip::text().contains(QLatin1String{"<b>"}));
    QVERIFY(!QToolTip::text().contains(QLatin1String{"<img"}));
}

void tst_PillLabel::toolTipRunsAsItBegins_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Qt::LayoutDirection>("direction");

    QTest::newRow("to the left") << QStringLiteral("שגיאה ") + repeated("no route to host ", 20)
                                 << Qt::RightToLeft;
    QTest::newRow("to the right") << QStringLiteral("error ") + repeated("שגיאה ברשת ", 30)
                                  << Qt::LeftToRight;
}

// All lines of the tool tip have the direction of the text's beginning.
void tst_PillLabel::toolTipRunsAsItBegins()
{
    QFETCH(QString, text);
    QFETCH(Qt::LayoutDirection, direction);
    Pill pill{text};
    QVERIFY(!toolTipOf(pill).isEmpty());
    QTextDocument lines;
    lines.setHtml(QToolTip::text());
    QVERIFY(lines.blockCount() > 1);
    for (QTextBlock line = lines.begin(); line.isValid(); line = line.next()) {
        QCOMPARE(line.textDirection(), direction);
    }
}

void tst_PillLabel::toolTipIsOnTheScreen_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("words") << repeated("no route to host ", 1000);
    QTest::newRow("no blank") << repeated("W", 5000);
    QTest::newRow("long word after short") << QStringLiteral("failed: ") + repeated("/abc", 800);
    QTest::newRow("address") << repeated("https://example.org/a?b=c&d=", 100);
    QTest::newRow("Japanese") << repeated("接続", 2000);
    QTest::newRow("right to left") << repeated("שגיאה ברשת ", 300);
    QTest::newRow("line separators") << QString{3000, QChar{0x2028}};
    QTest::newRow("blanks") << QString{3000, QLatin1Char{' '}};
    QTest::newRow("every other one a line separator") << repeated("x\u2028", 2000);
    QTest::newRow("tabs") << repeated("\t\t\tx", 1000);
}

void tst_PillLabel::toolTipIsOnTheScreen()
{
    QFETCH(QString, text);
    Pill pill{text};
    toolTipOf(pill);
    const QWidget *const tip = toolTipWindow();
    QVERIFY(tip != nullptr);
    const QRect screen = pill.screen()->availableGeometry();
    QVERIFY2(screen.contains(tip->geometry()),
             qPrintable(QStringLiteral("%1 x %2").arg(tip->width()).arg(tip->height())));
}

void tst_PillLabel::toolTipGoesWithTheLongText()
{
    // A tool tip of this length would stay for longer than this test waits.
    Pill pill{repeated("x", toolTipLimit)};
    QVERIFY(QTest::qWaitForWindowActive(&pill));
    QVERIFY(!toolTipOf(pill).isEmpty());
    QVERIFY(QToolTip::isVisible());
    pill.setText(QStringLiteral("short"));
    toolTipOf(pill);
    QVERIFY(support::waitFor([] { return !QToolTip::isVisible(); }));
}

void tst_PillLabel::toolTipGoesWithItsText()
{
    Pill pill{repeated("x", toolTipLimit)};
    QVERIFY(QTest::qWaitForWindowActive(&pill));
    // The mouse may be there already, and a move to the same place sends no event.
    QTest::mouseMove(&pill, QPoint{1, 1});
    QTest::mouseMove(&pill, pill.rect().center());
    QTRY_VERIFY(pill.underMouse());
    QVERIFY(!toolTipOf(pill).isEmpty());
    pill.announceChange(repeated("x", toolTipLimit));
    QVERIFY(QToolTip::isVisible());
    // The mouse rests, and no event asks for a tool tip.
    pill.announceChange(repeated("y", toolTipLimit));
    QVERIFY(support::waitFor([] { return !QToolTip::isVisible(); }));
}

void tst_PillLabel::toolTipsOfOthersStay()
{
    QWidget window;
    Pill other{repeated("x", toolTipLimit)};
    Pill pill{QStringLiteral("one")};
    auto *const column = new QVBoxLayout{&window};
    column->addWidget(&other);
    column->addWidget(&pill);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::mouseMove(&other, QPoint{1, 1});
    QTest::mouseMove(&other, other.rect().center());
    QTRY_VERIFY(other.underMouse());
    QVERIFY(!toolTipOf(other).isEmpty());
    pill.announceChange(QStringLiteral("another"));
    // Qt hides a tool tip after 300 ms, and shows another where the mouse rests after 700.
    constexpr int goneByThenMs = 600;
    QVERIFY(!QTest::qWaitFor([] { return !QToolTip::isVisible(); }, goneByThenMs));
    QToolTip::hideText();
}

void tst_PillLabel::costDoesNotGrow()
{
    Pill pill{QString{}};
    const auto cost = [&pill](const QString &text) {
        constexpr int rounds = 20;
        qint64 least = std::numeric_limits<qint64>::max();
        for (int i = 0; i < rounds; ++i) {
            pill.setText(QStringLiteral("other"));
            QElapsedTimer timer;
            timer.start();
            pill.setText(text);
            pill.sizeHint();
            pill.minimumSizeHint();
            painted(pill);
            toolTipOf(pill);
            least = std::min(least, timer.nsecsElapsed());
        }
        return least;
    };
    const qint64 ofThousand = cost(repeated("word ", 200));
    const qint64 ofMillion = cost(repeated("word ", (1 << 20) / 5));
    QVERIFY2(ofMillion <= 20 * ofThousand,
             qPrintable(QStringLiteral("%1 and %2 ns").arg(ofThousand).arg(ofMillion)));
}

void tst_PillLabel::longTextMovesNothing_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("sentence") << QByteArray{"no route to host "}.repeated(20);
    QTest::newRow("no blank") << QByteArray{"W"}.repeated(3000);
    QTest::newRow("line separators") << QByteArray{"one\xe2\x80\xa8"}.repeated(50);
    QTest::newRow("markup") << QByteArray{"<h1>loud</h1><br>"}.repeated(50);
    QTest::newRow("one letter") << QByteArray{"x"};
}

void tst_PillLabel::longTextMovesNothing()
{
    QFETCH(QByteArray, text);

    WindowBench bench;
    QVERIFY(bench.greeted());
    const PillLabel *const pill = bench.pill();
    const auto geometries = [&] {
        QStringList all;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        const auto widgets = bench.window->findChildren<QWidget *>();
        for (const QWidget *const widget : widgets) {
            if (widget != pill) {
                const QRect place = widget->geometry();
                all.append(QStringLiteral("%1 %2 %3 %4")
                               .arg(place.x())
                               .arg(place.y())
                               .arg(place.width())
                               .arg(place.height()));
            }
        }
        return all;
    };
    QVERIFY(bench.say("error: broken"));
    const QStringList before = geometries();
    const QRect pillBefore = pill->geometry();
    QVERIFY(bench.say("error: " + text));
    QCOMPARE(geometries(), before);
    QCOMPARE(bench.window->size(), (QSize{360, 560}));
    QCOMPARE(pill->y(), pillBefore.y());
    QCOMPARE(pill->height(), pillBefore.height());
    const QRect room = bench.window->centralWidget()->rect().marginsRemoved({28, 18, 28, 22});
    QVERIFY(room.contains(pill->geometry()));
    QVERIFY(std::abs(pill->geometry().center().x() - room.center().x()) <= 1);
    if (text.size() > 200) {
        QCOMPARE(pill->width(), room.width());
    }
    QCOMPARE(pill->text(), QString::fromUtf8(text).trimmed());
}

void tst_PillLabel::hugeLineFromTheService()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    const QByteArray text = QByteArray{"0123456789abcde "}.repeated((1 << 20) / 16);
    QVERIFY(bench.say("error: " + text));
    PillLabel &pill = *bench.pill();
    QCOMPARE(pill.text(), QString::fromLatin1(text).trimmed());
    QVERIFY(support::waitFor(
        [&] { return pill.shownText().startsWith(QStringLiteral("0123456789abcde 0123")); }));
    QCOMPARE(pill.shownText().back(), ellipsis);
    QVERIFY(toolTipOf(pill).size() > pill.shownText().size());
    QVERIFY(bench.say("status: running"));
    QVERIFY(support::waitFor([&] { return pill.shownText() == QStringLiteral("Tunnel up"); }));
}

QTEST_MAIN(tst_PillLabel)

#include "tst_pilllabel.moc"
