#include "ui/PlainMarkup.h"

#include <QTest>

using ui::plainMarkup;

class tst_PlainMarkup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elements_data();
    void elements();
    void inLine_data();
    void inLine();
    void length();
    void hostile_data();
    void hostile();
};

void tst_PlainMarkup::elements_data()
{
    QTest::addColumn<QString>("markup");
    QTest::addColumn<QString>("plain");
    const auto row = [](const char *markup, const char *plain) {
        QTest::newRow(markup) << QString::fromLatin1(markup) << QString::fromLatin1(plain);
    };
    row("", "");
    row("plain", "plain");
    row("a<b>b</b>c", "abc");
    row("<a href=\"https://e.com\">here</a>", "here");
    row("a<img src=x>b", "ab");
    row("a<br>b<BR/>c", "a<br>b<br>c");
    row("<p>a</p><p>b", "<br>a<br>b");
    row("<h1>a</h1>b", "<br>a<br>b");
    row("a<unknown>b", "a<br>b");
    row("a<!-- <b> -- > -->b", "ab");
    row("a<style>b{}</style>c", "a<br>c");
    row("a<SCRIPT>1</script >c", "a<br>c");
    row("<title>a</title>b", "<br>b");
    row("1 < 2", "1 &lt; 2");
    row("a<", "a&lt;");
    row("a</", "a&lt;/");
    row("a<b", "a&lt;b");
    row("a<!-- b", "a&lt;!-- b");
    row("a<style>b", "a&lt;style>b");
    row("a<>b", "a&lt;>b");
    row("a<3b>c", "a&lt;3b>c");
    row("<<b>b>", "&lt;b>");
    row("a &amp; b &lt;i&gt;", "a &amp; b &lt;i&gt;");
}

void tst_PlainMarkup::elements()
{
    QFETCH(QString, markup);
    QFETCH(QString, plain);
    QCOMPARE(plainMarkup(markup, 100), plain);
}

void tst_PlainMarkup::inLine_data()
{
    QTest::addColumn<QString>("name");
    for (const char *const name : {"a", "b", "i", "u", "s", "em", "strong", "span", "font", "big",
                                   "small", "code", "tt", "sub", "sup", "img"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void tst_PlainMarkup::inLine()
{
    QFETCH(QString, name);
    QCOMPARE(plainMarkup(QStringLiteral("a<%1>b</%1>c").arg(name), 100), QStringLiteral("abc"));
}

void tst_PlainMarkup::length()
{
    const QChar ellipsis{0x2026};
    const QString text = QStringLiteral("<b>12345</b><b>67890</b>");
    QCOMPARE(plainMarkup(text, 10), QStringLiteral("1234567890"));
    QCOMPARE(plainMarkup(text, 9), QStringLiteral("123456789") + ellipsis);
    QCOMPARE(plainMarkup(text, 5), QStringLiteral("12345") + ellipsis);
    QCOMPARE(plainMarkup(QStringLiteral("<<<"), 2), QStringLiteral("&lt;&lt;") + ellipsis);
    QCOMPARE(plainMarkup(QStringLiteral("<<<"), 3), QStringLiteral("&lt;&lt;&lt;"));
    QCOMPARE(plainMarkup(QStringLiteral("<p>").repeated(9), 1), QStringLiteral("<br>"));
}

// Each is looked through in a moment, or this does not come to its end.
void tst_PlainMarkup::hostile_data()
{
    QTest::addColumn<QString>("piece");
    for (const char *const piece : {"<!--", "<style>", "<b", "</style", "<b>", "<"}) {
        QTest::newRow(piece) << QString::fromLatin1(piece);
    }
}

void tst_PlainMarkup::hostile()
{
    QFETCH(QString, piece);
    const QString left = plainMarkup(piece.repeated(1'000'000), 10'000'000);
    QVERIFY(!left.contains(QLatin1Char{'<'}) || left.contains(QStringLiteral("<br>")));
    QCOMPARE(left.isEmpty(), piece == QStringLiteral("<b>"));
}

QTEST_GUILESS_MAIN(tst_PlainMarkup)
#include "tst_plainmarkup.moc"
