#include "ui/NoticeDialog.h"
#include "ui/SafeMarkup.h"

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
    return labelOf(dialog)->findChild<QTextDocument *>();
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

QImage pictureOf(QWidget *widget)
{
    return widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
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
        // On Windows the program of the test is in the background, where a notice takes no focus.
        dialog.activateWindow();
        // The label knows where its links are only after the first painting.
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
    void construction();
    void textLabel();
    void onlySafeMarkupIsParsed();
    void coloursOnScreen();
    void okAccepts();
    void enterAccepts();
    void escapeRejects();
    void closeButtonRejects();
    void okShowsNoPicture();
    void markupIsInterpreted();
    void emptyNotice();

    void allowedLinks_data();
    void allowedLinks();
    void keyboardShowsTheLink_data();
    void keyboardShowsTheLink();
    void keyboardComesBack_data();
    void keyboardComesBack();
    void linksByKeyboard_data();
    void linksByKeyboard();
    void linkStyleOnScreen();

    void nameForAssistiveTechnology_data();
    void nameForAssistiveTechnology();

    void shortNoticeDoesNotScroll();
    void longNotice_data();
    void longNotice();
    void scrolledColours();
    void middlingNoticeIsWhole();

    void programGoesOnWithHiddenWindow();
    void thousandDialogsLeaveNothing();
};

void tst_NoticeDialog::construction()
{
    QWidget parent;
    const NoticeDialog dialog{QStringLiteral("Hello"), &parent};
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Notice"));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    QVERIFY(dialog.isModal());
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

void tst_NoticeDialog::onlySafeMarkupIsParsed()
{
    const QString notice = QStringLiteral("1 < 2 <img src='/tmp/x.png'><a href='file:///x'>y</a>");
    const NoticeDialog dialog{notice, nullptr};
    QCOMPARE(labelOf(dialog)->text(), QLatin1String{prefix} + ui::safeMarkup(notice));
    QCOMPARE(plainText(dialog), QStringLiteral("1 < 2 y"));
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

void tst_NoticeDialog::linkStyleOnScreen()
{
    Shown dialog{QStringLiteral("<a href='https://example.com'>click me</a>")};
    QVERIFY(countOf(pictureOf(labelOf(*dialog)), linkColour) > 0);
    const QTextDocument *const document = documentOf(*dialog);
    const QTextCharFormat format = document->begin().begin().fragment().charFormat();
    QCOMPARE(format.foreground().color(), linkColour);
    QVERIFY(!format.fontUnderline());
    // Qt turns a style's weight of 600 into this.
    QCOMPARE(format.fontWeight(), 600 / 8);
}

void tst_NoticeDialog::nameForAssistiveTechnology_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("name");
    QTest::newRow("text") << QStringLiteral("one <b>two</b>") << QStringLiteral("one two");
    QTest::newRow("empty") << QString{} << QString{};
}

void tst_NoticeDialog::nameForAssistiveTechnology()
{
    QFETCH(QString, notice);
    QFETCH(QString, name);
    const NoticeDialog dialog{notice, nullptr};
    QCOMPARE(QAccessible::queryAccessibleInterface(labelOf(dialog))->text(QAccessible::Name), name);
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

    // The keys scroll whichever widget has the focus: down, and for a long word to the right.
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
    auto *const bar = area->verticalScrollBar();
    hover(bar, {bar->width() - 2, 2});
    // 90 of 255 parts.
    QVERIFY(countOf(seen(bar), QColor{107, 109, 129}) > 100);
}

void tst_NoticeDialog::middlingNoticeIsWhole()
{
    // Higher than Qt would make a dialog by itself, and not high enough to scroll.
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
        // If closing the dialog had asked for a quit, the quit would come before this.
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
        NoticeDialog dialog{QStringLiteral("<p>text <a href='https://e.com'>here</a>"), &parent};
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
