#include "tests/support/NoticeSamples.h"
#include "tests/support/OwnMarkup.h"
#include "ui/SafeMarkup.h"

#include <QTest>
#include <QTextBlock>
#include <QTextDocument>

using ui::maxNoticeLength;
using ui::safeMarkup;

namespace {

/// Records the resources that Qt asks for while it parses.
class Document : public QTextDocument
{
public:
    explicit Document(const QString &markup)
    {
        setHtml(markup);
        toHtml();
        size();
    }

    QStringList asked;

protected:
    QVariant loadResource(int /*type*/, const QUrl &name) override
    {
        asked += name.toString();
        return {};
    }
};

QString shown(const QString &notice)
{
    return Document{safeMarkup(notice)}.toPlainText();
}

QString repeated(const char *piece, int times)
{
    return QString::fromUtf8(piece).repeated(times);
}

} // namespace

class tst_SafeMarkup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unchanged_data();
    void unchanged();
    void changed_data();
    void changed();
    void plainTextIsWhole();
    void refusedAddresses_data();
    void refusedAddresses();
    void piles_data();
    void piles();
    void length_data();
    void length();
    void depth();
    void halfACharacter();
    void hostile_data();
    void hostile();
    void documentTellsWhatItAsksFor();
};

void tst_SafeMarkup::unchanged_data()
{
    QTest::addColumn<QString>("notice");
    const auto row = [](const char *notice) { QTest::newRow(notice) << QString::fromUtf8(notice); };
    row("");
    row("  \t Hello \n there, \"you\" and 'me' > 5 ");
    row("Привет, 世界 \U0001f600 \u202e");
    row("<p>one<p>two");
    row("<p>a<br>b<br/>c<br />d</p><hr>");
    row("<b>b</b><strong>s</strong><i>i</i><em>e</em><u>u</u><s>s</s>");
    row("<sub>s</sub><sup>s</sup><big>b</big><small>s</small><tt>t</tt><code>c</code>");
    row("<PRE> a\n b </PRE><center>c</center><blockquote>b</blockquote><div>d</div>");
    row("<h1>1</h1><h2>2</h2><h3>3</h3><h4>4</h4><h5>5</h5><h6>6</h6>");
    row("<ul><li>a<li>b<ol><li>c</li></ol></ul>");
    row("<font color=\"red\">r</font><font color='#12aBcD'>x</font>");
    row("<span style=\"color:red\">r</span><span style='color:#12aBcD'>x</span>");
    row("<a href=\"https://e.com/a?b=c&d=e&amp;f#g\">x</a>");
    row("<a href='http://u@e.com:80/'>x</a><A HREF='MAILTO:a@b.c?subject=Hello%20you'>x</A>");
    row("&lt; &amp; &nbsp; &euro; &#8364; &#x20AC; &#X1f600; &unknown;");
    row("Tom & Jerry, R&D, a && b, Q&A");
    row("<b>left open <i>twice");
}

void tst_SafeMarkup::unchanged()
{
    QFETCH(QString, notice);
    QCOMPARE(safeMarkup(notice), notice);
}

void tst_SafeMarkup::changed_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *notice, const char *expected) {
        QTest::newRow(notice) << QString::fromUtf8(notice) << QString::fromUtf8(expected);
    };
    // Signs that begin no element or entity.
    row("1 < 2", "1 &lt; 2");
    row("a <b", "a &lt;b");
    row("<Basic> <foo-bar> <a@b.c> <b@b.c> <http://e.com>",
        "&lt;Basic> &lt;foo-bar> &lt;a@b.c> &lt;b@b.c> &lt;http://e.com>");
    row("<> </> < b> <!-- x <? <1>", "&lt;> &lt;/> &lt; b> &lt;!-- x &lt;? &lt;1>");
    row("<p title='x>y", "&lt;p title='x>y");
    row("<<b>x", "&lt;<b>x");
    // Elements that are left out.
    row("a<!-- <b>c</b> -->d<!DOCTYPE html>e", "ade");
    row("a<style>b{}</style>c<SCRIPT src=x>d</SCRIPT >e<title >f</title>g", "aceg");
    row("<style>a", "a");
    row("<html><body bgcolor=red>a<img src=\"/x\">b<kbd>c</kbd></body></html>", "abc");
    row("<table><tr><td>a</td><td>b</td></tr></table>", "   a  b   ");
    row("a</b>b</p>c<ul></ol>d</ul>", "abc<ul>d</ul>");
    row("<b><i>a</b>b</i>", "<b><i>a</b>b");
    // Attributes.
    row("<p align=center class='x'>a</p><br clear=all>", "<p>a</p><br>");
    row("<b title=\"<img src='x'>\" onclick='y'>a</b>", "<b>a</b>");
    row("<p style='color:red'>a<div href='https://e.com' color=red>b", "<p>a<div>b");
    row("<font size=7 color=red face=x>a</font>", "<font color=\"red\">a</font>");
    row("<font color='rgb(1,2,3)'>a</font>", "<font>a</font>");
    row("<font color='#12345'>a</font>", "<font>a</font>");
    row("<font color=rgb(1,2,3)>a</font>", "<font>a</font>");
    row("<span style='color: red; font-size:900px'>a</span>", "<span style='color:red'>a</span>");
    row("<span style='font-family:a,b;color:#123456'>a</span>",
        "<span style='color:#123456'>a</span>");
    row("<span style='background-color:red'>a</span>", "<span>a</span>");
    row("<span style='color:url(x)'>a</span>", "<span>a</span>");
    row("<a title=x href=https://e.com/?a=b style='y'>a</a>",
        "<a href=\"https://e.com/?a=b\">a</a>");
    row("<a name='x'>a</a><a>b</a>", "ab");
    // Entities.
    row("&#0; &#8; &#x7f; &#xD800; &#x110000; &#xFFFE; &#99999999999; &#; &#x; &#+57;",
        "&amp;#0; &amp;#8; &amp;#x7f; &amp;#xD800; &amp;#x110000; &amp;#xFFFE; &amp;#99999999999;"
        " &amp;#; &amp;#x; &amp;#+57;");
    row("&<!-- -->#0; &l<!-- -->t;", "&amp;#0; &amp;lt;");
}

void tst_SafeMarkup::changed()
{
    QFETCH(QString, notice);
    QFETCH(QString, expected);
    QCOMPARE(safeMarkup(notice), expected);
    QCOMPARE(safeMarkup(expected), expected);
}

void tst_SafeMarkup::plainTextIsWhole()
{
    const QString notice =
        QStringLiteral("Your plan <Basic> ends on Sunday. Price < 5 EUR & more &c.");
    QCOMPARE(shown(notice), notice);
}

void tst_SafeMarkup::refusedAddresses_data()
{
    QTest::addColumn<QString>("address");
    const auto row = [](const char *address) {
        QTest::newRow(address) << QString::fromUtf8(address);
    };
    for (const char *address : {"",
                                "file:///etc/passwd",
                                "FiLe:/etc/passwd",
                                "/etc/passwd",
                                "../passwd",
                                "//e.com/x",
                                "\\\\server\\share\\program.exe",
                                "C:\\Windows\\calc.exe",
                                "ftp://e.com/x",
                                "javascript:alert(1)",
                                "data:text/html,x",
                                "qrc:/assets/world-map.png",
                                ":/assets/x",
                                "smb://server/share",
                                "tel:123",
                                "ixovpn:connect",
                                "https-:x",
                                "x-http://e.com",
                                "e.com",
                                "#part",
                                "?x=y",
                                "http",
                                "://e.com",
                                "http//e.com",
                                "https:"}) {
        row(address);
    }
    row(" https://e.com");
    row("\nhttps://e.com");
    row("&#9;https://e.com");
    row("&nbsp;https://e.com");
    row("\x01https://e.com");
    row("\u200bhttps://e.com");
    row("\u202ehttps://e.com");
    row("java&#115;cript:alert(1)");
    row("ht\ntps://e.com");
    row("https&#58;//e.com");
    row("https://e.com/a b");
    row("https://e.com/&#0;");
    row("һttps://e.com");
    row("https：//e.com");
}

void tst_SafeMarkup::refusedAddresses()
{
    QFETCH(QString, address);
    QCOMPARE(safeMarkup(QStringLiteral("<a href=\"%1\">me</a>").arg(address)),
             QStringLiteral("me"));
}

void tst_SafeMarkup::piles_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("expected");
    const QString pile = QStringLiteral("y") + repeated("\u0301", 20);
    QTest::newRow("some marks") << pile.repeated(2) << pile.repeated(2);
    QTest::newRow("more marks") << pile + repeated("\u0301", 900) + pile << pile.repeated(2);
    QTest::newRow("vowels") << repeated("\u0e33", 900) << repeated("\u0e33", 20);
    QTest::newRow("joiners") << repeated("\u0301\u200d", 900) << repeated("\u0301\u200d", 10);
    QTest::newRow("as numbers") << repeated("&#769;", 900) << repeated("&#769;", 20);
    QTest::newRow("by name") << repeated("\u0301&zwj;", 700) << repeated("\u0301&zwj;", 10);
    QTest::newRow("across elements") << repeated("\u0301<b></b>", 21)
                                     << repeated("\u0301<b></b>", 20) + QStringLiteral("<b></b>");
}

void tst_SafeMarkup::piles()
{
    QFETCH(QString, notice);
    QFETCH(QString, expected);
    QCOMPARE(safeMarkup(notice), expected);
}

void tst_SafeMarkup::length_data()
{
    QTest::addColumn<QString>("notice");
    QTest::addColumn<QString>("expected");
    const QString longest = QStringLiteral("y").repeated(maxNoticeLength);
    const QString ellipsis{QChar{0x2026}};
    QTest::newRow("longest") << longest << longest;
    QTest::newRow("longer") << longest + QStringLiteral("z") << longest + ellipsis;
    QTest::newRow("a megabyte") << QStringLiteral("y").repeated(1'000'000) << longest + ellipsis;
    QTest::newRow("half an element")
        << longest.chopped(9) + QStringLiteral("<a href='https://e.com'>z</a>")
        << longest.chopped(9) + ellipsis;
    QTest::newRow("nothing is cut in half")
        << longest.chopped(1) + QStringLiteral("\U0001f512z") << longest.chopped(1) + ellipsis;
}

void tst_SafeMarkup::length()
{
    QFETCH(QString, notice);
    QFETCH(QString, expected);
    QCOMPARE(safeMarkup(notice), expected);
}

void tst_SafeMarkup::depth()
{
    const auto nested = [](int levels) {
        return repeated("<div>", levels) + QLatin1Char{'x'} + repeated("</div>", levels) +
               QLatin1Char{'y'};
    };
    QCOMPARE(safeMarkup(nested(20)), nested(20));
    QCOMPARE(safeMarkup(nested(21)), nested(20));
    QCOMPARE(safeMarkup(nested(90)), nested(20));
    const QString list = QStringLiteral("<ul>") + repeated("<li>x<p>y<p>z</p>", 90);
    QCOMPARE(safeMarkup(list), list);
}

void tst_SafeMarkup::halfACharacter()
{
    const QString notice = QStringLiteral("<b>x</b> &amp; ") + QChar{0xd800};
    QVERIFY(safeMarkup(notice).startsWith(QLatin1String{"&lt;b&gt;x&lt;/b&gt; &amp;amp; "}));
    QVERIFY(safeMarkup(notice).isValidUtf16());
}

void tst_SafeMarkup::hostile_data()
{
    QTest::addColumn<QString>("notice");
    for (const support::NoticeSample &sample : support::hostileNotices()) {
        QTest::newRow(sample.name.constData()) << sample.text;
    }
    QTest::newRow("fonts without end")
        << repeated("<span style='font-family:a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p'>x", 18);
    for (const char *piece : {"<", "</", "<b", "<b \"", "<a href='", "<!--", "<style>", "<!doctype",
                              "&", "&#", "&lt", "<b>", "<b></b>", "<hr>", "<ul><li>", "\u2028x"}) {
        QTest::newRow(piece) << repeated(piece, 9'000);
    }
}

// Whatever the notice, the result is our own markup, of bounded length and depth, without
// resources.
void tst_SafeMarkup::hostile()
{
    QFETCH(QString, notice);
    const QString safe = safeMarkup(notice);
    // No character becomes more than an entity of five.
    QVERIFY(safe.size() <= 5 * (maxNoticeLength + 1));

    QVERIFY(support::isOwnMarkup(safe));

    const Document document{safe};
    QCOMPARE(document.asked, QStringList{});
    for (const QTextFormat &format : document.allFormats()) {
        QVERIFY(!format.isImageFormat() && !format.isTableFormat());
        QVERIFY(format.stringProperty(QTextFormat::TextToolTip).isEmpty());
        QVERIFY(!format.hasProperty(QTextFormat::BackgroundImageUrl));
        QVERIFY(format.toListFormat().indent() <= 20);
    }
    if (safe.size() <= maxNoticeLength) {
        QCOMPARE(safeMarkup(safe), safe);
    }
}

void tst_SafeMarkup::documentTellsWhatItAsksFor()
{
    const Document document{QStringLiteral("<img src='/tmp/x.png'>")};
    QVERIFY(document.asked.contains(QStringLiteral("/tmp/x.png")));
}

QTEST_MAIN(tst_SafeMarkup)

#include "tst_safemarkup.moc"
