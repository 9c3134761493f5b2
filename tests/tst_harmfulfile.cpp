#include "app/HarmfulSettings.h"
#include "app/Identity.h"
#include "tests/support/Contents.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
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
    void fileForAllPrograms();
    void filesOfTheSystem_data();
    void filesOfTheSystem();

private:
    static void fill(const QByteArray &text, const QString &name);
    void fill(const QByteArray &text) const { fill(text, path); }

    QString path;
    QString aside;
};

void tst_HarmfulFile::initTestCase()
{
    app::setIdentity();
    const QSettings kept{QStringLiteral("IXOVPN"), QStringLiteral("IxoClient.unreadable")};
    path = QSettings{}.fileName();
    aside = kept.fileName();
}

void tst_HarmfulFile::cleanup()
{
    QFile::remove(path);
    QFile::remove(aside);
    QDir{aside}.removeRecursively();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QFileInfo{QFileInfo{path}.path()}.path());
}

void tst_HarmfulFile::fill(const QByteArray &text, const QString &name)
{
    QVERIFY(QDir::root().mkpath(QFileInfo{name}.path()));
    QFile file{name};
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

void tst_HarmfulFile::spellings_data()
{
    QTest::addColumn<QByteArray>("beginning");
    QTest::addColumn<QByteArray>("value");
    const auto row = [](const char *name, const QByteArray &word,
                        const QByteArray &beginning = {}) {
        QTest::newRow(name) << beginning << word + "(\\0\\0\\0\\x2\\0\\0\\0\\0\\x5)";
    };
    const QByteArray mark = "\xef\xbb\xbf";
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
    row("of another form", "@DateTime");
    row("behind a zero", QByteArray("\0, @Variant", 11));
    row("byte order marks", "\"@V\"\"" + mark + "ariant\"", mark);
}

void tst_HarmfulFile::spellings()
{
    QFETCH(QByteArray, beginning);
    QFETCH(QByteArray, value);
    const QByteArray text = beginning + "[General]\nreferral_code=ABC123\nlanguage=" + value + '\n';
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
    const QSettings ofSystem{QSettings::SystemScope, QStringLiteral("IXOVPN")};
    QVERIFY(!ofSystem.fileName().startsWith(QStringLiteral("/dev/null")));
}

void tst_HarmfulFile::fileForAllPrograms()
{
    const QString folder = QFileInfo{QFileInfo{path}.path()}.path();
    fill("language=@Variant(1)\n", folder + QStringLiteral("/IXOVPN.conf"));

    setHarmfulSettingsAside();

    QVERIFY(!QFile::exists(folder + QStringLiteral("/IXOVPN.conf")));
    QCOMPARE(contents(folder + QStringLiteral("/IXOVPN.unreadable.conf")),
             QByteArray{"language=@Variant(1)\n"});
}

void tst_HarmfulFile::filesOfTheSystem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("for all programs")
        << QStringLiteral("1/IXOVPN.conf") << QByteArray{"language=@Variant(1)"} << false;
    QTest::newRow("of the client")
        << QStringLiteral("2/IXOVPN/IxoClient.conf") << QByteArray{"language=@Variant(1)"} << false;
    QTest::newRow("of the service") << QStringLiteral("2/IXOVPN/IxoService.conf")
                                    << QByteArray{"client_id=@DateTime(1)"} << false;
    QTest::newRow("harmless") << QStringLiteral("2/IXOVPN/IxoService.conf")
                              << QByteArray{"client_id=@ByteArray(1)"} << true;
}

// One that nobody but the administrator can rename leaves all of them unread.
void tst_HarmfulFile::filesOfTheSystem()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, text);
    QFETCH(bool, isRead);
    const QTemporaryDir folder;
    const QByteArray place = folder.path().toLocal8Bit();
    const QByteArray dirs = qgetenv("XDG_CONFIG_DIRS");
    qputenv("XDG_CONFIG_DIRS", place + "/1:" + place + "/2");
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, folder.path());
    fill(text, folder.filePath(name));

    setHarmfulSettingsAside();
    qputenv("XDG_CONFIG_DIRS", dirs);

    const QSettings settings{QSettings::SystemScope, QStringLiteral("IXOVPN")};
    QCOMPARE(settings.fileName().startsWith(folder.path()), isRead);
    QCOMPARE(contents(folder.filePath(name)), text);
}

QTEST_GUILESS_MAIN(tst_HarmfulFile)

#include "tst_harmfulfile.moc"
