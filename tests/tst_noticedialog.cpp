#include "tests/support/NoticeSamples.h"
#include "tests/support/ShownDocument.h"
#include "ui/NoticeDialog.h"

#include <QAbstractTextDocumentLayout>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QMimeData>
#include <QProxyStyle>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QTimer>
#include <QToolTip>

#include <cmath>

using ui::NoticeDialog;

namespace {

const char prefix[] = "<style>a{color:#FF8A4E;text-decoration:none;font-weight:600;}</style>";
const QColor background{0x1b, 0x1d, 0x3d};
const QColor linkColour{255, 138, 78};

QLabel *labelOf(const NoticeDialog &dialog)
{
    return dialog.findChild<QLabel *>();
}

QPushButton *okOf(const NoticeDialog &dialog)
{
    return dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
}

QTextDocument *documentOf(const NoticeDialog &dialog)
{
    return support::shownDocument(labelOf(dialog));
}

QString plainText(const NoticeDialog &dialog)
{
    return documentOf(dialog)->toPlainText();
}

/// The parts of the text that have this property, joined.
QString partsWith(const QTextDocument *document, bool (*property)(const QTextCharFormat &))
{
    QString text;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (property(it.fragment().charFormat())) {
                text += it.fragment().text();
            }
        }
    }
    return text;
}

bool isLink(const QTextCharFormat &format)
{
    return format.isAnchor() || !format.anchorHref().isEmpty();
}

/// Moves the pointer as far as the program is concerned; by default to the widget's middle.
void hover(const QWidget *widget, QPoint position = {-1, -1})
{
    if (position == QPoint{-1, -1}) {
        position = widget->rect().center();
    }
    const QWidget *const window = widget->window();
    QTest::mouseMove(window->windowHandle(), widget->mapTo(window, position));
}

bool isImage(const QTextCharFormat &format)
{
    return format.isImageFormat();
}

/// Where the text can be clicked, in the label's coordinates.
QPoint positionOf(const NoticeDialog &dialog, const QString &text)
{
    const QLabel *const label = labelOf(dialog);
    QTextDocument *const document = documentOf(dialog);
    const QTextCursor found = document->find(text);
    const QTextBlock block = found.block();
    const int middle = (found.selectionStart() + found.selectionEnd()) / 2 - block.position();
    const QTextLine line = block.layout()->lineForTextPosition(middle);
    const QPointF inDocument = document->documentLayout()->blockBoundingRect(block).topLeft() +
                               QPointF{line.cursorToX(middle), line.y() + line.height() / 2.0};
    // A label centres its text vertically.
    const QRect content = label->contentsRect();
    const int slack = content.height() - static_cast<int>(std::ceil(document->size().height()));
    return content.topLeft() + QPoint{0, std::max(0, slack / 2)} + inDocument.toPoint();
}

int count(const QImage &image, const std::function<bool(QRgb)> &condition)
{
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            found += condition(image.pixel(x, y)) ? 1 : 0;
        }
    }
    return found;
}

int countOf(const QImage &image, const QColor &colour)
{
    return count(image, [rgb = colour.rgb()](QRgb pixel) { return pixel == rgb; });
}

/// Also the shades in which text of this colour ends.
int countOfOrange(const QImage &image)
{
    return count(image, [](QRgb pixel) { return qRed(pixel) > qBlue(pixel) + 40; });
}

QImage pictureOf(QWidget *widget)
{
    return widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

bool showsTexture(const QTextDocument *document)
{
    for (const QTextFormat &format : document->allFormats()) {
        if (format.background().style() == Qt::TexturePattern ||
            format.foreground().style() == Qt::TexturePattern) {
            return true;
        }
    }
    return false;
}

/// Records what is to be opened outside the program, for every scheme that a test uses.
class Outside : public QObject
{
    Q_OBJECT

public:
    Outside()
    {
        for (const char *scheme : schemes) {
            QDesktopServices::setUrlHandler(QLatin1String{scheme}, this, "open");
        }
    }
    ~Outside() override
    {
        for (const char *scheme : schemes) {
            QDesktopServices::unsetUrlHandler(QLatin1String{scheme});
        }
    }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened.append(url); }

private:
    static constexpr const char *schemes[] = {
        "",         "http",   "https", "mailto", "file",   "ftp",    "javascript",
        "data",     "qrc",    "smb",   "tel",    "ixovpn", "ssh",    "vbscript",
        "ms-setup", "callto", "c",     "about",  "blob",   "https-", "x-http"};
};

/// A notice under test, on the screen.
class Shown
{
public:
    explicit Shown(const QString &text)
        : dialog(text, nullptr)
    {
        dialog.show();
        // Where the links are is not known before the first picture.
        dialog.grab();
    }
    NoticeDialog *operator->() { return &dialog; }
    NoticeDialog &operator*() { return dialog; }

private:
    NoticeDialog dialog;
};

} // namespace

class tst_NoticeDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void construction();
    void textLabel();
    void textIsPrefixAndNotice_data();
    void textIsPrefixAndNotice();
    void styleSheet();
    void coloursOnScreen();
    void okAccepts();
    void enterAccepts();
    void escapeRejects();
    void closeButtonRejects();
    void okShowsNoPicture();
    void markupIsInterpreted();
    void emptyNotice();
    void titleIsSetOnce();

    void allowedLinks_data();
    void allowedLinks();
    void keyboardShowsTheLink_data();
    void keyboardShowsTheLink();
    void keyboardComesBack_data();
    void keyboardComesBack();
    void linksByKeyboard_data();
    void linksByKeyboard();
    void refusedLinks_data();
    void refusedLinks();
    void refusedLinkBesideAllowedOne();
    void linkStyleOnScreen();

    void nothingIsDrawn_data();
    void nothingIsDrawn();
    void imageLeavesNothingBehind_data();
    void imageLeavesNothingBehind();
    void staysDisarmed_data();
    void staysDisarmed();
    void copiedText();
    void nameForAssistiveTechnology_data();
    void nameForAssistiveTechnology();
    void tablesThatNoLayoutCopesWith_data();
    void tablesThatNoLayoutCopesWith();
    void spansThatNoParserCopesWith_data();
    void spansThatNoParserCopesWith();
    void markupThatNoParserCopesWith_data();
    void markupThatNoParserCopesWith();
    void textsThatNobodyReads_data();
    void textsThatNobodyReads();
    void pilesOfMarks_data();
    void pilesOfMarks();

    void shortNoticeDoesNotScroll();
    void longNotice_data();
    void longNotice();
    void scrolledColours();
    void middlingNoticeIsWhole();

    void programGoesOnWithHiddenWindow();
    void thousandDialogsLeaveNothing();
};

void tst_NoticeDialog::initTestCase()
{
    support::bait::layOut();
}

void tst_NoticeDialog::construction()
{
    QWidget parent;
    const NoticeDialog dialog{QStringLiteral("Hello"), &parent};
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Notice"));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    QCOMPARE(dialog.windowFlags(),
             QDialog{&parent}.windowFlags() & ~Qt::WindowContextHelpButtonHint);
    QVERIFY(dialog.isModal());
    QCOMPARE(dialog.minimumWidth(), 360);
    QCOMPARE(dialog.minimumHeight(), 0);
    QCOMPARE(dialog.metaObject()->methodCount(), QDialog::staticMetaObject.methodCount());

    auto *const column = qobject_cast<QVBoxLayout *>(dialog.layout());
    QVERIFY(column != nullptr);
    QCOMPARE(column->contentsMargins(), QMargins(24, 22, 24, 18));
    QCOMPARE(column->spacing(), 16);
    QCOMPARE(column->count(), 2);
    QCOMPARE(column->itemAt(0)->widget(), labelOf(dialog));
    const auto *const buttons = qobject_cast<QDialogButtonBox *>(column->itemAt(1)->widget());
    QVERIFY(buttons != nullptr);
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok);
    QCOMPARE(buttons->buttons().size(), 1);

    const QList<QWidget *> children =
        dialog.findChildren<QWidget *>(QString{}, Qt::FindDirectChildrenOnly);
    QCOMPARE(children.size(), 2);
    QCOMPARE(children.at(0), labelOf(dialog));
    QCOMPARE(children.at(1), buttons);
}

void tst_NoticeDialog::textLabel()
{
    const NoticeDialog dialog{QStringLiteral("Hello"), nullptr};
    const QLabel *const label = labelOf(dialog);
    QVERIFY(label->wordWrap());
    QCOMPARE(label->textFormat(), Qt::RichText);
    QCOMPARE(label->textInteractionFlags(), Qt::TextBrowserInteraction);
    QVERIFY(label->openExternalLinks());
    QCOMPARE(label->palette().color(QPalette::Link), linkColour);
    QCOMPARE(label->objectName(), QString{});
}

void tst_NoticeDialog::textIsPrefixAndNotice_data()
{
    QTest::addColumn<QString>("notice");
    QTest::newRow("words") << QStringLiteral("Hello there");
    QTest::newRow("empty") << QString{};
    QTest::newRow("blanks around") << QStringLiteral("  \t Hello \n ");
    QTest::newRow("markup") << QStringLiteral("<b>1 < 2 & 3</b> &amp; \"x\" '");
    QTest::newRow("image") << QStringLiteral("<img src=\"/tmp/bait/picture.png\">");
    QTest::newRow("refused link") << QStringLiteral("<a href=\"file:///tmp\">x</a>");
    QTest::newRow("deep tables") << QStringLiteral("<table><tr><td>").repeated(50);
    QTest::newRow("wide table") << QStringLiteral("<table>") + QStringLiteral("<tr>").repeated(98) +
                                       QStringLiteral("<td colspan=900>x");
    QTest::newRow("other scripts") << QStringLiteral(u"Привет, 世界 \U0001f600 \u202e");
}

void tst_NoticeDialog::textIsPrefixAndNotice()
{
    QFETCH(QString, notice);
    Shown dialog{notice};
    QCOMPARE(labelOf(*dialog)->text(), QLatin1String{prefix} + notice);
}

void tst_NoticeDialog::styleSheet()
{
    const NoticeDialog dialog{QStringLiteral("Hello"), nullptr};
    QCOMPARE(dialog.styleSheet().simplified().remove(QLatin1Char{' '}),
             QStringLiteral("QDialog{background:#1B1D3D;}"
                            "QLabel{color:#F2F2FA;font-size:13px;}"
                            "QPushButton{background:#E25822;color:#F2F2FA;border:none;"
                            "border-radius:8px;padding:7px22px;min-width:80px;}"
                            "QPushButton:hover{background:#FF6A30;}"));
}

void tst_NoticeDialog::coloursOnScreen()
{
    Shown dialog{QStringLiteral("Hello")};
    const QImage picture = pictureOf(&*dialog);
    QCOMPARE(picture.pixelColor(2, 2), background);
    QVERIFY(countOf(pictureOf(labelOf(*dialog)), QColor{0xf2, 0xf2, 0xfa}) > 0);

    QPushButton *const ok = okOf(*dialog);
    QCOMPARE(labelOf(*dialog)->font().pixelSize(), 13);
    const QPoint inside{ok->width() / 2, 3};
    hover(labelOf(*dialog));
    QTRY_COMPARE(pictureOf(ok).pixelColor(inside), QColor(0xe2, 0x58, 0x22));
    hover(ok);
    QTRY_COMPARE(pictureOf(ok).pixelColor(inside), QColor(0xff, 0x6a, 0x30));
    QVERIFY(ok->width() >= 80 + 2 * 22);
}

void tst_NoticeDialog::okAccepts()
{
    Shown dialog{QStringLiteral("Hello")};
    const QSignalSpy accepted{&*dialog, &QDialog::accepted};
    QTest::mouseClick(okOf(*dialog), Qt::LeftButton);
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(dialog->result(), static_cast<int>(QDialog::Accepted));
    QVERIFY(!dialog->isVisible());
}

void tst_NoticeDialog::enterAccepts()
{
    Shown dialog{QStringLiteral("Hello <a href='https://example.com'>there</a>")};
    const QSignalSpy accepted{&*dialog, &QDialog::accepted};
    QTest::keyClick(&*dialog, Qt::Key_Return);
    QCOMPARE(accepted.count(), 1);
}

void tst_NoticeDialog::escapeRejects()
{
    Shown dialog{QStringLiteral("Hello")};
    const QSignalSpy rejected{&*dialog, &QDialog::rejected};
    QTest::keyClick(labelOf(*dialog), Qt::Key_Escape);
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(dialog->result(), static_cast<int>(QDialog::Rejected));
}

void tst_NoticeDialog::closeButtonRejects()
{
    Shown dialog{QStringLiteral("Hello")};
    const QSignalSpy rejected{&*dialog, &QDialog::rejected};
    dialog->close();
    QCOMPARE(rejected.count(), 1);
}

void tst_NoticeDialog::okShowsNoPicture()
{
    // A style that puts pictures on the buttons of dialogs.
    class Style : public QProxyStyle
    {
    public:
        int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                      QStyleHintReturn *data) const override
        {
            return hint == SH_DialogButtonBox_ButtonsHaveIcons
                       ? 1
                       : QProxyStyle::styleHint(hint, option, widget, data);
        }
    };
    const QString before = QApplication::style()->objectName();
    QApplication::setStyle(new Style);
    const QDialogButtonBox plain{QDialogButtonBox::Ok};
    const bool styleShowsPictures = !plain.button(QDialogButtonBox::Ok)->icon().isNull();
    {
        Shown dialog{QStringLiteral("Hello")};
        QVERIFY(okOf(*dialog)->icon().isNull());
        QCOMPARE(okOf(*dialog)->text(), plain.button(QDialogButtonBox::Ok)->text());
        QEvent change{QEvent::StyleChange};
        QCoreApplication::sendEvent(dialog->findChild<QDialogButtonBox *>(), &change);
        QVERIFY(okOf(*dialog)->icon().isNull());
    }
    QApplication::setStyle(before);
    QVERIFY2(styleShowsPictures, "The style of this test puts no picture on any button");
}

void tst_NoticeDialog::markupIsInterpreted()
{
    const NoticeDialog dialog{QStringLiteral("1 &lt; 2<br><b>bold</b> &amp; more"), nullptr};
    QCOMPARE(plainText(dialog), QStringLiteral("1 < 2\nbold & more"));
    QCOMPARE(
        partsWith(documentOf(dialog),
                  [](const QTextCharFormat &format) { return format.fontWeight() == QFont::Bold; }),
        QStringLiteral("bold"));
}

void tst_NoticeDialog::emptyNotice()
{
    Shown dialog{QString{}};
    QVERIFY(dialog->isVisible());
    QCOMPARE(plainText(*dialog), QString{});
    QVERIFY(labelOf(*dialog)->isVisible());
    QVERIFY(okOf(*dialog)->isVisible());
    QCOMPARE(dialog->width(), 360);
}

void tst_NoticeDialog::titleIsSetOnce()
{
    Shown dialog{QStringLiteral("Hello")};
    dialog->setWindowTitle(QStringLiteral("Other"));
    QEvent change{QEvent::LanguageChange};
    QCoreApplication::sendEvent(&*dialog, &change);
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Other"));
}

void tst_NoticeDialog::allowedLinks_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QUrl>("opened");
    const auto row = [](const char *address) {
        QTest::newRow(address) << QString::fromLatin1(address)
                               << QUrl{QString::fromLatin1(address)};
    };
    row("http://example.com");
    row("https://example.com");
    row("https://example.com/a/b?c=d&e=f#g");
    row("https://user@example.com:8443/");
    row("mailto:help@example.com");
    row("mailto:help@example.com?subject=Hello%20there");
    // A scheme is the same in any case.
    QTest::newRow("scheme in capitals")
        << QStringLiteral("HTTPS://example.com") << QUrl{QStringLiteral("https://example.com")};
}

void tst_NoticeDialog::allowedLinks()
{
    QFETCH(QString, address);
    QFETCH(QUrl, opened);
    Outside outside;
    Shown dialog{QStringLiteral("See <a href=\"%1\">this page</a>, please.").arg(address)};
    QCOMPARE(partsWith(documentOf(*dialog), isLink), QStringLiteral("this page"));

    QLabel *const label = labelOf(*dialog);
    const QPoint link = positionOf(*dialog, QStringLiteral("this page"));
    QTest::mouseClick(label, Qt::LeftButton, {}, positionOf(*dialog, QStringLiteral("please")));
    QCOMPARE(outside.opened, QList<QUrl>{});
    // The pointer may stand where the last row left it.
    hover(label, {0, 0});
    hover(label, link);
    QTRY_COMPARE(label->cursor().shape(), Qt::PointingHandCursor);
    QTest::mouseClick(label, Qt::LeftButton, {}, link);
    QCOMPARE(outside.opened, QList<QUrl>{opened});
    QVERIFY(dialog->isVisible());
}

void tst_NoticeDialog::keyboardShowsTheLink_data()
{
    const QString lines = QStringLiteral("A line.<br>").repeated(200);
    const QString word = QStringLiteral("w").repeated(2'400);
    const QString link = QStringLiteral("<a href='https://one.example'>LINK</a>");
    QTest::addColumn<QString>("notice");
    QTest::newRow("among lines") << lines + link + QStringLiteral("<br>") + lines;
    QTest::newRow("at the end") << lines + link;
    QTest::newRow("behind a long word") << word + link + word;
}

void tst_NoticeDialog::keyboardShowsTheLink()
{
    QFETCH(QString, notice);
    Shown dialog{notice};
    QVERIFY(QTest::qWaitForWindowActive(&*dialog));
    QLabel *const label = labelOf(*dialog);
    const QPoint link = positionOf(*dialog, QStringLiteral("LINK"));
    QVERIFY(!label->visibleRegion().contains(link));
    QVERIFY(!label->hasSelectedText());
    QTest::keyClick(label, Qt::Key_Tab);
    QCOMPARE(label->selectedText(), QStringLiteral("LINK"));
    QVERIFY(label->visibleRegion().contains(link));

    dialog->findChild<QScrollArea *>()->ensureVisible(0, 0);
    QVERIFY(!label->visibleRegion().contains(link));
    QTest::keyClick(label, Qt::Key_Tab);
    QCOMPARE(dialog->focusWidget(), okOf(*dialog));
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Backtab);
    QCOMPARE(label->selectedText(), QStringLiteral("LINK"));
    QVERIFY(label->visibleRegion().contains(link));
}

void tst_NoticeDialog::keyboardComesBack_data()
{
    const QString words = QStringLiteral("We are <b>sorry</b>. ");
    QTest::addColumn<QString>("notice");
    QTest::newRow("without markup") << words.repeated(400);
    QTest::newRow("a named place") << words.repeated(400) + QStringLiteral("<a name='x'>y</a>");
    QTest::newRow("a link that is refused")
        << words.repeated(400) + QStringLiteral("<a href='file:///x'>y</a>");
    QTest::newRow("a link in a text that is too long")
        << words.repeated(300) + QStringLiteral("<a href='https://one.example'>y</a>") +
               QStringLiteral("w").repeated(6'000);
}

void tst_NoticeDialog::keyboardComesBack()
{
    QFETCH(QString, notice);
    Shown dialog{notice};
    QVERIFY(QTest::qWaitForWindowActive(&*dialog));
    QLabel *const label = labelOf(*dialog);
    QVERIFY(dialog->findChild<QScrollArea *>() != nullptr);
    QCOMPARE(dialog->focusWidget(), label);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        QTest::keyClick(label, Qt::Key_Tab);
        QCOMPARE(dialog->focusWidget(), okOf(*dialog));
        QTest::keyClick(dialog->focusWidget(), key);
        QCOMPARE(dialog->focusWidget(), label);
    }
}

void tst_NoticeDialog::linksByKeyboard_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QUrl>("opened");
    QTest::newRow("first") << 1 << QStringLiteral("one")
                           << QUrl{QStringLiteral("https://one.example")};
    QTest::newRow("over the refused one")
        << 2 << QStringLiteral("three") << QUrl{QStringLiteral("mailto:three@example.com")};
}

void tst_NoticeDialog::linksByKeyboard()
{
    QFETCH(int, tabs);
    QFETCH(QString, text);
    QFETCH(QUrl, opened);
    Outside outside;
    Shown dialog{QStringLiteral("<a href='https://one.example'>one</a> <a href='file:///two'>two"
                                "</a> <a href='mailto:three@example.com'>three</a>")};
    QLabel *const label = labelOf(*dialog);
    label->setFocus();
    for (int i = 0; i < tabs; ++i) {
        QTest::keyClick(label, Qt::Key_Tab);
    }
    QCOMPARE(label->selectedText(), text);
    QTest::keyClick(label, Qt::Key_Return);
    QCOMPARE(outside.opened, QList<QUrl>{opened});
    QVERIFY(dialog->isVisible());
}

void tst_NoticeDialog::refusedLinks_data()
{
    QTest::addColumn<QString>("address");
    const auto row = [](const char *name, const QString &address) {
        QTest::newRow(name) << address;
    };
    const auto same = [](const char *address) {
        QTest::newRow(address) << QString::fromLatin1(address);
    };
    same("file:///etc/passwd");
    same("file://server/share/program.exe");
    same("FILE:///etc/passwd");
    same("FiLe:///etc/passwd");
    same("file:/etc/passwd");
    same("/etc/passwd");
    same("etc/passwd");
    same("../passwd");
    same("//example.com/x");
    same("\\\\server\\share\\program.exe");
    same("//server/share/program.exe");
    same("C:\\Windows\\System32\\calc.exe");
    same("c:/Windows/System32/calc.exe");
    same("ftp://example.com/x");
    same("FTP://example.com/x");
    same("javascript:alert(1)");
    same("JavaScript:alert(1)");
    same("vbscript:x");
    same("data:text/html,x");
    same("DATA:text/html;base64,eA==");
    same("blob:https://example.com/x");
    same("about:blank");
    same("qrc:/assets/world-map.png");
    same(":/assets/world-map.png");
    same("smb://server/share");
    same("ssh://server");
    same("tel:123");
    same("callto:123");
    same("ixovpn:connect");
    same("ms-setup:x");
    same("https-:x");
    same("x-http://example.com");
    same("example.com");
    same("#part");
    same("?x=y");
    same("http");
    same("://example.com");
    same("http//example.com");
    row("blank before", QStringLiteral(" https://example.com"));
    row("line feed before", QStringLiteral("\nhttps://example.com"));
    row("tab before", QStringLiteral("&#9;https://example.com"));
    row("no-break space before", QStringLiteral("&nbsp;https://example.com"));
    row("control character before", QStringLiteral("\x01https://example.com"));
    row("zero-width space before", QStringLiteral(u"\u200bhttps://example.com"));
    row("turned writing direction before", QStringLiteral(u"\u202ehttps://example.com"));
    row("blank before a script", QStringLiteral(" javascript:alert(1)"));
    row("tab within the scheme", QStringLiteral("java\tscript:alert(1)"));
    row("line feed within the scheme", QStringLiteral("ht\ntps://example.com"));
    row("entity within the scheme", QStringLiteral("java&#115;cript:alert(1)"));
    row("null within the scheme", QStringLiteral("htt") + QChar{0} + QStringLiteral("ps://e.com"));
    row("letters that look alike", QStringLiteral(u"һttps://example.com"));
    row("wide letters", QStringLiteral(u"ｈｔｔｐｓ://example.com"));
    row("wide colon", QStringLiteral(u"https：//example.com"));
}

void tst_NoticeDialog::refusedLinks()
{
    QFETCH(QString, address);
    Outside outside;
    Shown dialog{QStringLiteral("<a href=\"%1\">click me</a>").arg(address)};
    QCOMPARE(plainText(*dialog), QStringLiteral("click me"));
    QCOMPARE(partsWith(documentOf(*dialog), isLink), QString{});

    QLabel *const label = labelOf(*dialog);
    QCOMPARE(countOfOrange(pictureOf(label)), 0);
    for (int x = 2; x < label->width(); x += 5) {
        hover(label, {x, label->height() / 2});
        QTest::mouseClick(label, Qt::LeftButton, {}, {x, label->height() / 2});
        QVERIFY(label->cursor().shape() != Qt::PointingHandCursor);
    }
    label->setFocus();
    QTest::keyClick(label, Qt::Key_Tab);
    QVERIFY(!label->hasSelectedText());
    QCOMPARE(dialog->focusWidget(), okOf(*dialog));
    QCOMPARE(outside.opened, QList<QUrl>{});
}

void tst_NoticeDialog::refusedLinkBesideAllowedOne()
{
    Outside outside;
    Shown dialog{QStringLiteral("<a href='file:///x' style='text-decoration:underline'>bad</a>"
                                "<a href='https://e.com' style='text-decoration:underline'>good</a>"
                                "<a href='file:///x'>bad <b>and worse</b></a>")};
    const QTextDocument *const document = documentOf(*dialog);
    QCOMPARE(plainText(*dialog), QStringLiteral("badgoodbad and worse"));
    QCOMPARE(partsWith(document, isLink), QStringLiteral("good"));
    QCOMPARE(partsWith(document, [](const QTextCharFormat &f) { return f.fontUnderline(); }),
             QStringLiteral("good"));
    QCOMPARE(partsWith(document,
                       [](const QTextCharFormat &f) {
                           return f.hasProperty(QTextFormat::ForegroundBrush);
                       }),
             QStringLiteral("good"));
}

void tst_NoticeDialog::linkStyleOnScreen()
{
    Shown dialog{QStringLiteral("<a href='https://example.com'>click me</a>")};
    QVERIFY(countOf(pictureOf(labelOf(*dialog)), linkColour) > 0);
    const QTextDocument *const document = documentOf(*dialog);
    const QTextCharFormat format = document->begin().begin().fragment().charFormat();
    QCOMPARE(format.foreground().color(), linkColour);
    QVERIFY(!format.fontUnderline());
    // What the toolkit makes of a style's 600.
    QCOMPARE(format.fontWeight(), 600 / 8);
}

void tst_NoticeDialog::nothingIsDrawn_data()
{
    QTest::addColumn<QString>("notice");
    for (const support::NoticeSample &sample : support::hostileNotices()) {
        QTest::newRow(sample.name.constData()) << sample.text;
    }
}

void tst_NoticeDialog::nothingIsDrawn()
{
    QFETCH(QString, notice);
    Shown dialog{notice};
    QCOMPARE(countOf(pictureOf(&*dialog), QColor{support::bait::colour}), 0);
    const QTextDocument *const document = documentOf(*dialog);
    QCOMPARE(partsWith(document, isImage), QString{});
    QVERIFY(!showsTexture(document));
    QVERIFY(dialog->screen()->availableGeometry().size().expandedTo(dialog->size()) ==
            dialog->screen()->availableGeometry().size());
    QVERIFY(
        dialog->rect().contains(QRect{okOf(*dialog)->mapTo(&*dialog, {}), okOf(*dialog)->size()}));
}

void tst_NoticeDialog::imageLeavesNothingBehind_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("likeThis");
    const auto row = [](const char *name, const char *notice, const char *likeThis) {
        QTest::newRow(name) << QString::fromLatin1(notice).replace(
                                   QLatin1String{"IMG"},
                                   QLatin1String{"<img src='/tmp/bait/picture.png' width=90 "
                                                 "height=90>"})
                            << QString::fromLatin1(likeThis);
    };
    row("alone", "IMG", "");
    row("in a paragraph", "one<p>IMG</p>two", "one<p>two</p>");
    row("between paragraphs", "<p>one</p>IMG<p>two</p>", "<p>one</p><p>two</p>");
    row("within a word", "<p>onIMGe</p>", "<p>one</p>");
    row("in a row", "<p>one</p>IMGIMG<br>IMG<p>two</p>", "<p>one</p><br><p>two</p>");
    row("first", "IMG<p>one</p>", "<p>one</p>");
    row("in a cell", "<table><tr><td>IMG</td><td>one</td></tr></table>",
        "<table><tr><td></td><td>one</td></tr></table>");
    row("before a table", "IMG<table><tr><td>one</td></tr></table>",
        "<table><tr><td>one</td></tr></table>");
    row("only one in its list", "one<ul><li>IMG</ul>two", "one<ul><li></ul>two");
    row("floating", "<img src='/tmp/bait/picture.png' style='float:left' width=90 height=90>one",
        "one");
}

void tst_NoticeDialog::imageLeavesNothingBehind()
{
    QFETCH(QString, notice);
    QFETCH(QString, likeThis);
    Shown dialog{notice};
    Shown model{likeThis};
    QCOMPARE(plainText(*dialog).simplified(), plainText(*model).simplified());
    QVERIFY(!plainText(*dialog).contains(QChar::ObjectReplacementCharacter));
    QVERIFY2(dialog->height() <= model->height(),
             QByteArray::number(dialog->height() - model->height()).constData());
}

void tst_NoticeDialog::staysDisarmed_data()
{
    QTest::addColumn<int>("change");
    int change = 0;
    for (const char *name :
         {"font", "application's font", "palette", "style", "style sheet", "polish", "language",
          "shown twice", "resized", "selected", "margins", "alignment", "interaction", "screen"}) {
        QTest::newRow(name) << change++;
    }
}

void tst_NoticeDialog::staysDisarmed()
{
    QFETCH(int, change);
    Outside outside;
    Shown dialog{QStringLiteral("<style>@import '/tmp/bait/style.css';</style>"
                                "<body background='/tmp/bait/picture.png'><p>text <img "
                                "src='/tmp/bait/picture.png'> <a href='file:///tmp'>here</a></p>"
                                "<table background='/tmp/bait/picture.png'><tr><td>cell</table>")};
    QLabel *const label = labelOf(*dialog);
    const auto send = [&](QEvent::Type type) {
        for (QWidget *widget : {static_cast<QWidget *>(label), static_cast<QWidget *>(&*dialog)}) {
            QEvent event{type};
            QCoreApplication::sendEvent(widget, &event);
        }
    };
    const QFont applicationFont = QApplication::font();
    switch (change) {
    case 0:
        label->setFont(QFont{QStringLiteral("Monospace"), 20});
        break;
    case 1:
        QApplication::setFont(QFont{QStringLiteral("Monospace"), 20});
        send(QEvent::ApplicationFontChange);
        break;
    case 2:
        label->setPalette(QPalette{Qt::darkGreen});
        break;
    case 3:
        dialog->setStyle(QApplication::style());
        send(QEvent::StyleChange);
        break;
    case 4:
        dialog->setStyleSheet(QStringLiteral("QLabel { font-size: 20px; color: white; }"));
        break;
    case 5:
        label->style()->unpolish(label);
        label->style()->polish(label);
        label->ensurePolished();
        break;
    case 6:
        send(QEvent::LanguageChange);
        send(QEvent::LocaleChange);
        break;
    case 7:
        dialog->accept();
        dialog->show();
        break;
    case 8:
        dialog->resize(700, 500);
        break;
    case 9:
        label->setSelection(0, documentOf(*dialog)->characterCount() - 1);
        QTest::mouseClick(label, Qt::LeftButton);
        break;
    case 10:
        label->setMargin(9);
        label->setIndent(9);
        break;
    case 11:
        label->setAlignment(Qt::AlignCenter);
        break;
    case 12:
        label->setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
        break;
    case 13:
        send(QEvent::ScreenChangeInternal);
        break;
    default:
        QFAIL("No such change");
    }
    dialog->grab();

    const QTextDocument *const document = documentOf(*dialog);
    QCOMPARE(countOf(pictureOf(&*dialog), QColor{support::bait::colour}), 0);
    QCOMPARE(partsWith(document, isImage), QString{});
    QCOMPARE(partsWith(document, isLink), QString{});
    QVERIFY(!showsTexture(document));
    QVERIFY(plainText(*dialog).contains(QStringLiteral("text")));
    QVERIFY(labelOf(*dialog)->text().contains(QStringLiteral("<img")));
    QTest::mouseClick(label, Qt::LeftButton, {}, positionOf(*dialog, QStringLiteral("here")));
    QCOMPARE(outside.opened, QList<QUrl>{});
    QApplication::setFont(applicationFont);
}

void tst_NoticeDialog::copiedText()
{
    Shown dialog{QStringLiteral("one <img src='/tmp/bait/picture.png'><b>two</b> "
                                "<a href='file:///x'>three</a>")};
    QLabel *const label = labelOf(*dialog);
    label->setFocus();
    QTest::mouseDClick(label, Qt::LeftButton, {}, positionOf(*dialog, QStringLiteral("two")));
    QTRY_COMPARE(label->selectedText().trimmed(), QStringLiteral("two"));
    label->setSelection(0, documentOf(*dialog)->characterCount() - 1);
    QTest::keyClick(label, Qt::Key_C, Qt::ControlModifier);
    const QMimeData *const copied = QGuiApplication::clipboard()->mimeData();
    QCOMPARE(copied->text(), QStringLiteral("one two three"));
    QVERIFY(copied->html().contains(QStringLiteral("two")));
    QVERIFY(!copied->html().contains(QStringLiteral("bait")));
    QVERIFY(!copied->html().contains(QStringLiteral("href")));
}

void tst_NoticeDialog::nameForAssistiveTechnology_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("name");
    QTest::newRow("text") << QStringLiteral("one <b>two</b>") << QStringLiteral("one two");
    QTest::newRow("empty") << QString{} << QStringLiteral(" ");
    QTest::newRow("only an image") << QStringLiteral("<img src=x>") << QStringLiteral(" ");
}

void tst_NoticeDialog::nameForAssistiveTechnology()
{
    QFETCH(QString, notice);
    QFETCH(QString, name);
    const NoticeDialog dialog{notice, nullptr};
    QCOMPARE(QAccessible::queryAccessibleInterface(labelOf(dialog))->text(QAccessible::Name), name);
}

void tst_NoticeDialog::tablesThatNoLayoutCopesWith_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("stillTable");
    const auto nested = [](int depth) {
        return QStringLiteral("<table><tr><td>").repeated(depth) +
               QStringLiteral("<a href='https://e.com'>x</a>");
    };
    QTest::newRow("some levels") << nested(5) << QStringLiteral("x") << true;
    QTest::newRow("more levels") << nested(6) << QStringLiteral("x") << false;
    QTest::newRow("no end of levels") << nested(300) << QStringLiteral("x") << false;
    QTest::newRow("some columns") << QStringLiteral(
                                         "<table><tr><td colspan=200>x</td></tr></table>")
                                  << QStringLiteral("x") << true;
    QTest::newRow("too many columns")
        << QStringLiteral("<table><tr><td colspan=20000>x</td></tr></table>") << QStringLiteral("x")
        << false;
    QTest::newRow("too many cells in all")
        << QStringLiteral("<table><tr><td colspan=200>x</td></tr></table>").repeated(51)
        << QStringLiteral("x\n").repeated(51).chopped(1) << false;
    const auto rows = [](int count, const char *cell) {
        return QStringLiteral("<table>") + QStringLiteral("<tr>").repeated(count) +
               QString::fromLatin1(cell);
    };
    QTest::newRow("characters as numbers")
        << QStringLiteral("<table><td col&#115;pan=&#50;>&#120;</table>") << QStringLiteral("x")
        << true;
    QTest::newRow("a number without its end")
        << QStringLiteral("x") + rows(98, "<td colspan=90&#49")
        << QStringLiteral("x\n<td colspan=901") << false;
    QTest::newRow("wide rows") << rows(5, "<td colspan=199>x") << QStringLiteral("x") << true;
    QTest::newRow("high cells") << rows(5, "<td rowspan=20480>x") << QStringLiteral("x") << true;
    const auto filled = [](int levels, int length) {
        return QStringLiteral("<table><tr><td>").repeated(levels) +
               QStringLiteral("y").repeated(length);
    };
    QTest::newRow("text in a table")
        << filled(1, 2'998) << QStringLiteral("y").repeated(2'998) << true;
    QTest::newRow("more text in a table")
        << filled(1, 2'999) << QStringLiteral("y").repeated(2'999) << false;
    QTest::newRow("text in tables") << filled(3, 744) << QStringLiteral("y").repeated(744) << true;
    QTest::newRow("more text in tables")
        << filled(3, 745) << QStringLiteral("y").repeated(745) << false;
}

void tst_NoticeDialog::tablesThatNoLayoutCopesWith()
{
    QFETCH(QString, notice);
    QFETCH(QString, text);
    QFETCH(bool, stillTable);
    Shown dialog{notice};
    const QTextDocument *const document = documentOf(*dialog);
    QString shown = plainText(*dialog);
    if (stillTable) {
        shown.remove(QLatin1Char{'\n'});
    } else {
        QCOMPARE(document->blockCount(), text.count(QLatin1Char{'\n'}) + 1);
        QCOMPARE(partsWith(document, isLink), QString{});
    }
    QCOMPARE(shown, text);
    QCOMPARE(!document->rootFrame()->childFrames().isEmpty(), stillTable);
}

void tst_NoticeDialog::spansThatNoParserCopesWith_data()
{
    QTest::addColumn<QString>("notice");
    const QString table = QStringLiteral("<table>") + QStringLiteral("<tr>").repeated(98);
    QTest::newRow("wide") << table + QStringLiteral("<td colspan=901>x");
    QTest::newRow("wide cells") << table + QStringLiteral("<td colspan=90>").repeated(10) +
                                       QStringLiteral("x");
    QTest::newRow("written otherwise") << table + QStringLiteral("<td \"ColSpan\" = ' 20480'>x");
    QTest::newRow("name in numbers") << table + QStringLiteral("<td col&#115;pan=901>x");
    QTest::newRow("name in hexadecimal") << table + QStringLiteral("<td &#X43;olspan=901>x");
    QTest::newRow("figure in numbers") << table + QStringLiteral("<td colspan=&#57;01>x");
    QTest::newRow("figure among signs")
        << table + QStringLiteral("<td colspan='&#+57;0&#x0x31;'>x");
    QTest::newRow("number behind the start of one")
        << table + QStringLiteral("<td a=&# &#99;olspan=901>x");
    QTest::newRow("half a character in an attribute")
        << table + QStringLiteral("<td a=&#xD800; colspan=901>x");
    QTest::newRow("half a character behind")
        << table + QStringLiteral("<td colspan=901 a=&#57343;>x");
    QTest::newRow("number cut off by a comment")
        << QStringLiteral("<!--StartFragment-->") + table +
               QStringLiteral("<td colspan=90&#49<!--EndFragment-->x");
    QTest::newRow("in disguise") << QStringLiteral("<ta&#98;le>") +
                                        QStringLiteral("<tr>").repeated(98) +
                                        QStringLiteral("<td colspan=901>x");
    QTest::newRow("many rows") << QStringLiteral("<table>") + QStringLiteral("<tr>").repeated(316) +
                                      QStringLiteral("<td>x");
}

void tst_NoticeDialog::spansThatNoParserCopesWith()
{
    QFETCH(QString, notice);
    Shown dialog{notice};
    QCOMPARE(labelOf(*dialog)->text(), QLatin1String{prefix} + QStringLiteral("<br>x"));
}

void tst_NoticeDialog::markupThatNoParserCopesWith_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("stillBold");
    QTest::newRow("many elements") << QStringLiteral("<b>").repeated(1'000) + QStringLiteral("x")
                                   << QStringLiteral("x") << true;
    QTest::newRow("one more") << QStringLiteral("<b>").repeated(1'001) + QStringLiteral("x")
                              << QStringLiteral("x") << false;
    QTest::newRow("no end of levels")
        << QStringLiteral("<b>").repeated(8'000) + QStringLiteral("<a href='https://e.com'>x</a>")
        << QStringLiteral("x") << false;
    QTest::newRow("levels that seem to end")
        << QStringLiteral("<b></x>").repeated(8'000) + QStringLiteral("x") << QStringLiteral("x")
        << false;
    QTest::newRow("side by side") << QStringLiteral("<b>x</b>").repeated(5'000)
                                  << QStringLiteral("x").repeated(5'000) << false;
    QTest::newRow("entities") << QStringLiteral("<b>").repeated(8'000) +
                                     QStringLiteral("1 &lt; 2 &amp;&amp; 3 > 2")
                              << QStringLiteral("1 < 2 && 3 > 2") << false;
    QTest::newRow("nothing but signs")
        << QStringLiteral("<").repeated(5'000) << QStringLiteral("<").repeated(5'000) << false;
    const auto styled = [](const QString &rule, int rules, int tags) {
        return QStringLiteral("<STYLE>") + rule.repeated(rules) + QStringLiteral("</style>") +
               QStringLiteral("<b>").repeated(tags) + QStringLiteral("x");
    };
    QTest::newRow("a style") << styled(QStringLiteral("x b{}"), 380, 18) << QStringLiteral("x")
                             << true;
    QTest::newRow("a style that grows")
        << styled(QStringLiteral("x b{}"), 400, 18) << QStringLiteral("x") << false;
    QTest::newRow("a style for many elements")
        << styled(QStringLiteral("x b{}"), 1, 19) << QStringLiteral("x") << false;
    const auto styledBy = [](const char *element) {
        return QString::fromUtf8(element) + QStringLiteral("</style>") +
               QStringLiteral("<b>").repeated(19) + QStringLiteral("x");
    };
    QTest::newRow("a style behind spaces")
        << styledBy("<\xc2\xa0\tStyle>") << QStringLiteral("<  Style>\nx") << false;
    QTest::newRow("a style in quotes")
        << styledBy("<\"style\">") << QStringLiteral("<\"style\">\nx") << false;
    QTest::newRow("a style in single quotes")
        << styledBy("<'style'>") << QStringLiteral("<'style'>\nx") << false;
    QTest::newRow("a style with an entity")
        << styledBy("<s&#116;yle>") << QStringLiteral("x") << false;
    QTest::newRow("no style at all")
        << QStringLiteral("<stile><s tyle><b title='style'>").repeated(10) +
               QStringLiteral("x &lt;style")
        << QStringLiteral("x <style") << true;
    QTest::newRow("half a character before a style")
        << QString{QChar{0xd800}} + styledBy("<style>") << QStringLiteral(u"\ufffd\nx") << false;
    QTest::newRow("much markup for little text")
        << QStringLiteral("<b title='") + QStringLiteral("y").repeated(29'980) +
               QStringLiteral("'>x</b>")
        << QStringLiteral("x") << true;
    QTest::newRow("too much markup for little text")
        << QStringLiteral("<b title='") + QStringLiteral("y").repeated(30'000) +
               QStringLiteral("'>x</b>")
        << QStringLiteral("x") << false;
    const auto asking = [](const char *style) {
        return QStringLiteral("<p style='%1'><b>x</b></p>").arg(QLatin1String{style});
    };
    QTest::newRow("large letters") << asking("font-size:100px") << QStringLiteral("x") << true;
    QTest::newRow("larger letters") << asking("font-size:101px") << QStringLiteral("x") << false;
    QTest::newRow("larger by points") << asking("font-size:76pt") << QStringLiteral("x") << false;
    QTest::newRow("high lines") << asking("line-height:500%") << QStringLiteral("x") << true;
    QTest::newRow("higher lines") << asking("line-height:501%") << QStringLiteral("x") << false;
    QTest::newRow("wide margins") << asking("margin:-500px") << QStringLiteral("x") << true;
    QTest::newRow("wider margins") << asking("margin-top:501px") << QStringLiteral("x") << false;
    QTest::newRow("margins to the left") << asking("margin:-501px") << QStringLiteral("x") << false;
    QTest::newRow("table without end")
        << QStringLiteral("<table width=501><tr><td><b>x</b></table>") << QStringLiteral("x")
        << false;
    QTest::newRow("wider column") << QStringLiteral("<table><tr><td width=501><b>x</b></table>")
                                  << QStringLiteral("x") << false;
    QTest::newRow("large picture")
        << QStringLiteral("<b>x<img width=600 height=600></b>") << QStringLiteral("x") << true;
    // The document has fonts of its own.
    const auto inFonts = [](int fonts) {
        QString markup = QStringLiteral("<b>");
        for (int size = 1; size <= fonts; ++size) {
            markup += QStringLiteral("<font style='font-size:%1px'>x").arg(size);
        }
        return markup;
    };
    QTest::newRow("some fonts") << inFonts(19) << QStringLiteral("x").repeated(19) << true;
    QTest::newRow("too many fonts") << inFonts(20) << QStringLiteral("x").repeated(20) << false;
}

void tst_NoticeDialog::markupThatNoParserCopesWith()
{
    QFETCH(QString, notice);
    QFETCH(QString, text);
    QFETCH(bool, stillBold);
    Shown dialog{notice};
    const QTextDocument *const document = documentOf(*dialog);
    QCOMPARE(plainText(*dialog), text);
    QCOMPARE(labelOf(*dialog)->accessibleName(), text);
    const auto isBold = [](const QTextCharFormat &format) { return format.fontWeight() > 50; };
    QCOMPARE(partsWith(document, isBold), stillBold ? text : QString{});
    QCOMPARE(partsWith(document, isLink), QString{});
}

void tst_NoticeDialog::textsThatNobodyReads_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("text");
    const QString longest = QStringLiteral("y").repeated(6'000);
    const QChar ellipsis{0x2026};
    const QString picture = QString::fromUtf8("\xf0\x9f\x94\x92");
    QTest::newRow("long") << longest << longest;
    QTest::newRow("one character more") << longest + QStringLiteral("z") << longest + ellipsis;
    QTest::newRow("rich") << QStringLiteral("<b>") + longest + QStringLiteral("</b>z")
                          << longest + ellipsis;
    QTest::newRow("a word of 1 MB")
        << QStringLiteral("y").repeated(1'000'000) << longest + ellipsis;
    QTest::newRow("a megabyte that begins with elements")
        << QStringLiteral("<p>").repeated(2'000) + QStringLiteral("y").repeated(1'000'000)
        << longest + ellipsis;
    const QString lines = QStringLiteral("y\n").repeated(1'000);
    QTest::newRow("lines") << QStringLiteral("y<br>").repeated(1'000) << lines;
    QTest::newRow("a thousand lines")
        << QStringLiteral("<br>") + QStringLiteral("y<br>").repeated(1'000) << lines.chopped(1);
    QTest::newRow("one line more") << QStringLiteral("y<br>").repeated(1'001) << lines + ellipsis;
    QTest::newRow("lines without elements")
        << QStringLiteral(u"<pre>z") + QStringLiteral(u"\u2028y").repeated(20'000)
        << QStringLiteral("z") + QStringLiteral(" y").repeated(2'999) + QLatin1Char{' '} + ellipsis;
    QTest::newRow("lines by numbers")
        << QStringLiteral("<pre>") + QStringLiteral("y&#8232;").repeated(1'001) << lines + ellipsis;
    QTest::newRow("nothing is cut in half")
        << QStringLiteral("y").repeated(5'999) + picture + QStringLiteral("z")
        << QStringLiteral("y").repeated(5'999) + ellipsis;
}

void tst_NoticeDialog::textsThatNobodyReads()
{
    QFETCH(QString, notice);
    QFETCH(QString, text);
    Shown dialog{notice};
    QCOMPARE(plainText(*dialog), text);
    QVERIFY(dialog->findChild<QAbstractScrollArea *>() != nullptr);
}

void tst_NoticeDialog::pilesOfMarks_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("text");
    const QString pile = QStringLiteral("y") + QString{QChar{0x301}}.repeated(20);
    QTest::newRow("marks on a letter")
        << QStringLiteral("<b>") + pile.repeated(2) << pile.repeated(2);
    QTest::newRow("a pile of marks") << pile + QString{QChar{0x301}}.repeated(5'900) << pile;
    QTest::newRow("a pile of vowels")
        << QString{QChar{0xe33}}.repeated(5'900) << QString{QChar{0xe33}}.repeated(20);
    QTest::newRow("a pile with joiners")
        << QStringLiteral("y") + QStringLiteral(u"\u0301\u200d").repeated(2'900)
        << QStringLiteral("y") + QStringLiteral(u"\u0301\u200d").repeated(10);
}

void tst_NoticeDialog::pilesOfMarks()
{
    QFETCH(QString, notice);
    QFETCH(QString, text);
    Shown dialog{notice};
    QCOMPARE(plainText(*dialog), text);
}

void tst_NoticeDialog::shortNoticeDoesNotScroll()
{
    Shown dialog{QStringLiteral("Maintenance on Sunday.")};
    QCOMPARE(dialog->findChild<QAbstractScrollArea *>(), nullptr);
    QCOMPARE(dialog->width(), 360);
    QCOMPARE(dialog->height(), dialog->layout()->totalHeightForWidth(360));
}

void tst_NoticeDialog::longNotice_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<bool>("scrolls");
    QTest::addColumn<bool>("wide");

    QString words;
    while (words.size() < 2400) {
        words += QStringLiteral("The service will be down for a while on Sunday. ");
    }
    QString lines;
    for (int i = 1; i <= 100; ++i) {
        lines += QStringLiteral("Line %1<br>").arg(i);
    }
    QTest::newRow("1,200 characters") << words.left(1200) + QStringLiteral("END") << false << false;
    QTest::newRow("4,800 characters") << words.repeated(2) + QStringLiteral("END") << true << false;
    QTest::newRow("5,900 characters")
        << words.repeated(3).left(5'897) + QStringLiteral("END") << true << false;
    QTest::newRow("a hundred lines") << lines + QStringLiteral("END") << true << false;
    QTest::newRow("a word of 2,400 characters")
        << QStringLiteral("w").repeated(2400) + QStringLiteral("END") << true << true;
    QTest::newRow("long word and lines")
        << QStringLiteral("w").repeated(2400) + QStringLiteral("<br>") + lines +
               QStringLiteral("w").repeated(2400) + QStringLiteral("END")
        << true << true;
}

void tst_NoticeDialog::longNotice()
{
    QFETCH(QString, notice);
    QFETCH(bool, scrolls);
    QFETCH(bool, wide);
    QWidget parent;
    parent.show();
    NoticeDialog dialog{notice, &parent};
    dialog.show();
    dialog.grab();

    const QRect room = dialog.screen()->availableGeometry();
    QVERIFY(room.contains(dialog.frameGeometry()));
    QPushButton *const ok = okOf(dialog);
    QVERIFY(room.contains(QRect{ok->mapToGlobal(QPoint{}), ok->size()}));
    QVERIFY(dialog.width() >= 360);

    QLabel *const label = labelOf(dialog);
    auto *const area = dialog.findChild<QScrollArea *>();
    QCOMPARE(area != nullptr, scrolls);
    const QPoint end = positionOf(dialog, QStringLiteral("END"));
    QVERIFY(label->rect().contains(end));
    const auto endIsSeen = [&] { return label->visibleRegion().contains(end); };
    QCOMPARE(endIsSeen(), !scrolls);
    if (!scrolls) {
        return;
    }
    QCOMPARE(dialog.layout()->itemAt(0)->widget(), area);
    QCOMPARE(area->widget(), label);

    // Whatever has the keyboard when the dialog opens: down, and for a long word to the right.
    const auto press = [&](Qt::Key key, const QScrollBar *bar) {
        for (int before = -1; bar->value() != before;) {
            before = bar->value();
            QTest::keyClick(dialog.focusWidget() != nullptr ? dialog.focusWidget() : &dialog, key);
        }
        QCOMPARE(bar->value(), bar->maximum());
    };
    press(Qt::Key_PageDown, area->verticalScrollBar());
    press(Qt::Key_Right, area->horizontalScrollBar());
    QVERIFY(endIsSeen());
    QCOMPARE(area->horizontalScrollBar()->maximum() > 0, wide);

    QCOMPARE(dialog.focusWidget(), label);
    QTest::keyClick(label, Qt::Key_Tab);
    QCOMPARE(dialog.focusWidget(), ok);
    QTest::keyClick(ok, Qt::Key_Tab);
    QCOMPARE(dialog.focusWidget(), label);

    area->verticalScrollBar()->setValue(0);
    area->horizontalScrollBar()->setValue(0);
    QVERIFY(!endIsSeen());
    area->verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
    area->horizontalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
    QVERIFY(endIsSeen());
}

void tst_NoticeDialog::scrolledColours()
{
    const QString line = QStringLiteral("w").repeated(90) +
                         QStringLiteral(" <a href='https://example.com'>more</a><br>");
    Shown dialog{line.repeated(60)};
    auto *const area = dialog->findChild<QScrollArea *>();
    QVERIFY(area != nullptr);
    hover(okOf(*dialog));

    // The dialog paints the background; the area and its parts let it through.
    const auto seen = [&dialog](QWidget *widget) {
        return pictureOf(&*dialog).copy(QRect{widget->mapTo(&*dialog, {}), widget->size()});
    };
    const QImage whole = seen(area);
    QCOMPARE(whole.pixelColor(0, 0), background);
    QCOMPARE(whole.pixelColor(area->width() - 2, area->height() - 2), background);
    QVERIFY(countOf(whole, background) > whole.width() * whole.height() / 4);
    QVERIFY(countOf(seen(area->viewport()), QColor{0xf2, 0xf2, 0xfa}) > 0);
    QCOMPARE(labelOf(*dialog)->font().pixelSize(), 13);
    QVERIFY(countOf(seen(area->viewport()), linkColour) > 0);

    for (QScrollBar *bar : {area->verticalScrollBar(), area->horizontalScrollBar()}) {
        QVERIFY(bar->isVisible());
        const QImage picture = seen(bar);
        // 50 of 255 parts of white on the background.
        QVERIFY(countOf(picture, QColor{72, 73, 99}) > 100);
        QVERIFY(countOf(picture, background) > 100);
        QCOMPARE(count(picture, [](QRgb pixel) { return qGreen(pixel) > 80; }), 0);
    }
}

void tst_NoticeDialog::middlingNoticeIsWhole()
{
    // Higher than the toolkit would make a dialog by itself, and not high enough to scroll.
    const int screen = QGuiApplication::primaryScreen()->availableGeometry().height();
    Shown dialog{QString{}};
    const int line = QFontMetrics{labelOf(*dialog)->font()}.lineSpacing();
    const int lines = (screen * 3 / 4 - dialog->height()) / line;
    Shown tall{QStringLiteral("x<br>").repeated(lines) + QStringLiteral("END")};
    QCOMPARE(tall->findChild<QScrollArea *>(), nullptr);
    QVERIFY(tall->height() > screen * 2 / 3);
    QVERIFY(labelOf(*tall)->height() >= documentOf(*tall)->size().height());
}

void tst_NoticeDialog::programGoesOnWithHiddenWindow()
{
    QWidget window;
    NoticeDialog notice{QStringLiteral("Hello"), &window};
    QVERIFY(!notice.testAttribute(Qt::WA_QuitOnClose));

    const QSignalSpy ending{qApp, &QGuiApplication::lastWindowClosed};
    bool wentOn = false;
    QTimer::singleShot(0, &notice, [&] {
        window.show();
        window.hide();
        notice.open();
        QTest::mouseClick(okOf(notice), Qt::LeftButton);
        // A quit that the closing of the dialog asked for would come before this.
        QTimer::singleShot(0, &notice, [&] {
            wentOn = true;
            QCoreApplication::exit(7);
        });
    });
    QCOMPARE(QCoreApplication::exec(), 7);
    QVERIFY(wentOn);
    QCOMPARE(ending.count(), 0);
}

void tst_NoticeDialog::thousandDialogsLeaveNothing()
{
    QWidget parent;
    const int widgets = QApplication::allWidgets().size();
    int documents = 0;
    for (int i = 0; i < 1000; ++i) {
        NoticeDialog dialog{QStringLiteral("<p>text <img src='x.png' align=right> <a "
                                           "href='file:///'>here</a> <table><tr><td>x</table>"),
                            &parent};
        for (const QTextDocument *document : labelOf(dialog)->findChildren<QTextDocument *>()) {
            ++documents;
            connect(document, &QObject::destroyed, this, [&documents] { --documents; });
        }
        QVERIFY(documents > 0);
    }
    QCOMPARE(documents, 0);
    QCOMPARE(QApplication::allWidgets().size(), widgets);
    QCOMPARE(parent.children().size(), 0);
}

QTEST_MAIN(tst_NoticeDialog)

#include "tst_noticedialog.moc"
