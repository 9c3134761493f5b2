#include "app/HarmfulSettings.h"
#include "app/Identity.h"
#include "tests/support/Contents.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTest>

using app::setHarmfulSettingsAside;
using support::contents;

namespace {

const QString languageKey = QStringLiteral("language");

} // namespace

/// Files of settings in which somebody else has spelled a value of one of the toolkit's types.
class tst_HarmfulFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void spellings_data();
    void spellings();
    void olderOneIsReplaced();
    void fileThatCannotBeRenamed();

private:
    void fill(const QByteArray &text) const;

    QString path;
    QString aside;
};

void tst_HarmfulFile::initTestCase()
{
    app::setIdentity();
    const QSettings kept{QStringLiteral("IXOVPN"), QStringLiteral("IxoClient.unreadable")};
    path = QSettings{}.fileName();
    aside = kept.fileName();
    QVERIFY(QDir::root().mkpath(QFileInfo{path}.path()));
}

void tst_HarmfulFile::cleanup()
{
    QFile::remove(path);
    QFile::remove(aside);
    QDir{aside}.removeRecursively();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QFileInfo{QFileInfo{path}.path()}.path());
}

void tst_HarmfulFile::fill(const QByteArray &text) const
{
    QFile file{path};
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

void tst_HarmfulFile::spellings_data()
{
    QTest::addColumn<QByteArray>("value");
    const auto row = [](const char *name, const QByteArray &word) {
        QTest::newRow(name) << word + "(\\0\\0\\0\\x2\\0\\0\\0\\0\\x5)";
    };
    row("plain", "@Variant");
    row("hexadecimal", "\\x40Variant");
    row("longer than 16 bits", "@Varian\\x100000074");
    row("octal", "\\100V\\0141riant");
    row("octal longer than 16 bits", "@Varian\\10000000000000164");
    row("quotes", "@V\"ari\"ant");
    row("quotes and a blank", "\"@V\" \"ariant\"");
    row("broken line", "@V\\\nariant");
    row("broken line of another system", "@V\\\r\nariant");
    row("escapes that stand for nothing", "@V\\ga\\jriant");
    row("in a list", "a, @Variant");
}

void tst_HarmfulFile::spellings()
{
    QFETCH(QByteArray, value);
    const QByteArray text = "[General]\nreferral_code=ABC123\nlanguage=" + value + '\n';
    fill(text);
    const QVariant restored = QSettings{}.value(languageKey);
    QVERIFY(restored.userType() == QMetaType::Int ||
            restored.toList().value(1).userType() == QMetaType::Int);

    setHarmfulSettingsAside();

    QVERIFY(!QFile::exists(path));
    QCOMPARE(contents(aside), text);
    QVERIFY(!QSettings{}.contains(languageKey));
}

void tst_HarmfulFile::olderOneIsReplaced()
{
    fill("language=@Variant(1)\n");
    setHarmfulSettingsAside();
    fill("language=@Variant(2)\n");
    setHarmfulSettingsAside();
    QCOMPARE(contents(aside), QByteArray{"language=@Variant(2)\n"});
}

void tst_HarmfulFile::fileThatCannotBeRenamed()
{
    const QByteArray text = "[General]\nlanguage=@Variant(\\0\\0\\0G\\x7f\\xff\\xff\\xff)\n";
    fill(text);
    QVERIFY(QDir::root().mkpath(aside + QStringLiteral("/taken")));

    setHarmfulSettingsAside();

    QVERIFY(!QSettings{}.contains(languageKey));
    QSettings{}.setValue(languageKey, QStringLiteral("de"));
    QCOMPARE(contents(path), text);
}

QTEST_GUILESS_MAIN(tst_HarmfulFile)

#include "tst_harmfulfile.moc"
