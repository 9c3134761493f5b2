#include "tests/support/Languages.h"
#include "tests/support/MessageFile.h"
#include "ui/Catalogue.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

#include <array>
#include <set>

using support::MessageFile;

namespace {

using Row = std::pair<QString, QString>;
using Rows = std::set<Row>;

const QString english = QStringLiteral("en");

struct Context
{
    const char *name;
    std::vector<const char *> sources;
};

const std::array contexts{
    Context{"MainWindow",
            {"IXOVPN", "Config %1 bytes", "Connected", "Connecting…", "Disconnected",
             "Disconnecting…", "Error", "Exit", "Failed", "Fetching config…", "Idle",
             "Service connected", "Service is not running", "Settings", "Subscription expired",
             "Support", "Tap the switch to connect", "Tunnel up", "Waiting for service…"}},
    Context{"ui::NoticeDialog", {"Notice"}},
    Context{"ui::ReferralDialog",
            {"Enter your referral code:", "Invalid code — must be exactly 6 letters or digits",
             "Referral Code", "Save", "Saved ✓", "e.g. ABC123"}},
    Context{"ui::SettingsDialog", {"Back", "LANGUAGE", "Language", "Save", "Settings"}},
    Context{"ui::SideMenu", {"Exit", "Referral Code", "Settings", "Support"}},
    Context{"ui::SupportDialog",
            {"Back", "CONTACT", "Click to copy", "Copied!",
             "For any questions about VPN operation, please contact us:", "INFO",
             "Referral:", "Support", "Version:", "Your ID:"}},
};

// Words that are the same in English and in the language of that tag.
const Rows sameInBoth{
    {QStringLiteral("ru"), QStringLiteral("IXOVPN")},
    {QStringLiteral("de"), QStringLiteral("Support")},
    {QStringLiteral("de"), QStringLiteral("INFO")},
    {QStringLiteral("de"), QStringLiteral("Version:")},
    {QStringLiteral("es"), QStringLiteral("Error")},
    {QStringLiteral("fr"), QStringLiteral("CONTACT")},
    {QStringLiteral("nl"), QStringLiteral("CONTACT")},
    {QStringLiteral("nl"), QStringLiteral("INFO")},
};

// The tray keeps the language of the source.
const Rows notTranslated{
    {QStringLiteral("ui::TrayController"), QStringLiteral("IXOVPN — disconnected")},
    {QStringLiteral("ui::TrayController"), QStringLiteral("Show")},
    {QStringLiteral("ui::TrayController"), QStringLiteral("Quit")},
};

Rows expectedRows(const QString &tag)
{
    Rows rows;
    for (const Context &context : contexts) {
        for (const char *source : context.sources) {
            rows.insert({QString::fromUtf8(context.name), QString::fromUtf8(source)});
        }
    }
    if (tag != english && tag != QLatin1String{"ru"}) {
        rows.erase({QStringLiteral("MainWindow"), QStringLiteral("IXOVPN")});
    }
    return rows;
}

QString listed(const Rows &rows)
{
    QString text;
    for (const Row &row : rows) {
        text += QStringLiteral("[%1] %2; ").arg(row.first, row.second);
    }
    return text;
}

Rows without(Rows rows, const Rows &others)
{
    for (const Row &row : others) {
        rows.erase(row);
    }
    return rows;
}

QByteArray contents(const QString &path)
{
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("Cannot read %s", qPrintable(path));
    }
    return file.readAll();
}

MessageFile catalogue(const QString &tag)
{
    return MessageFile::parse(contents(ui::catalogue::path(tag)));
}

bool hasBlankAtAnEnd(const QString &text)
{
    return text.isEmpty() || text.front().isSpace() || text.back().isSpace();
}

QString markAtTheEnd(const QString &text)
{
    static const QString marks = QStringLiteral(":：.。…!！?？✓");
    return marks.contains(text.back()) ? QString{text.back()} : QString{};
}

// The exclamation mark that goes with full-width letters stands for the plain one.
QString plain(QString text)
{
    return text.replace(QChar{0xff01}, QLatin1Char{'!'});
}

struct SourceText
{
    Row row;
    QString type;
    bool hasExtras = false;
};

QList<SourceText> readTranslationSource(const QString &path)
{
    QList<SourceText> texts;
    QXmlStreamReader reader{contents(path)};
    QString context;
    SourceText text;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement() && reader.name() == QLatin1String{"message"}) {
            texts += text;
        }
        if (!reader.isStartElement()) {
            continue;
        }
        const QStringRef element = reader.name();
        if (element == QLatin1String{"name"}) {
            context = reader.readElementText();
        } else if (element == QLatin1String{"message"}) {
            text = {};
            text.hasExtras = !reader.attributes().isEmpty();
        } else if (element == QLatin1String{"source"}) {
            text.row = {context, reader.readElementText()};
        } else if (element == QLatin1String{"translation"}) {
            text.type = reader.attributes().value(QLatin1String{"type"}).toString();
        } else if (element != QLatin1String{"TS"} && element != QLatin1String{"context"}) {
            text.hasExtras = true;
        }
    }
    if (reader.hasError()) {
        qFatal("%s: %s", qPrintable(path), qPrintable(reader.errorString()));
    }
    return texts;
}

QString sourceTree()
{
    return QFileInfo{QStringLiteral(IXOVPN_TESTS)}.absolutePath();
}

} // namespace

class tst_Catalogues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noOtherCatalogues();
    void declaredLanguage_data() { everyTag(); }
    void declaredLanguage();
    void exactlyTheTable_data() { everyTag(); }
    void exactlyTheTable();
    void everyTextIsTranslated_data() { everyTag(); }
    void everyTextIsTranslated();
    void marksAreKept_data() { everyTag(); }
    void marksAreKept();
    void sameTextSameTranslation_data() { everyTag(); }
    void sameTextSameTranslation();
    void sourcesAreFinished_data() { everyTag(); }
    void sourcesAreFinished();
    void fixedTexts_data();
    void fixedTexts();
    void programAsksForNothingElse();

private:
    static void everyTag();
};

void tst_Catalogues::everyTag()
{
    QTest::addColumn<QString>("tag");
    const QStringList tags = support::languageTags();
    for (const QString &tag : tags) {
        QTest::newRow(qUtf8Printable(tag)) << tag;
    }
}

void tst_Catalogues::noOtherCatalogues()
{
    QStringList sources =
        QDir{sourceTree() + QStringLiteral("/resources/i18n")}.entryList({QStringLiteral("*.ts")});
    sources.replaceInStrings(QStringLiteral(".ts"), QStringLiteral(".qm"));
    QCOMPARE(QDir{QStringLiteral(":/i18n")}.entryList(QDir::AllEntries, QDir::Name), sources);
}

void tst_Catalogues::declaredLanguage()
{
    QFETCH(QString, tag);
    const QString language = catalogue(tag).language;
    const QString expected = tag == QLatin1String{"pt"}   ? QStringLiteral("pt_PT")
                             : tag == QLatin1String{"br"} ? QStringLiteral("pt_BR")
                                                          : tag + QLatin1Char{'_'};
    QVERIFY2(language.startsWith(expected), qUtf8Printable(language));
    QTranslator translator;
    QVERIFY(ui::catalogue::load(translator, tag));
    QCOMPARE(translator.language(), language);
}

void tst_Catalogues::exactlyTheTable()
{
    QFETCH(QString, tag);
    const MessageFile file = catalogue(tag);
    QVERIFY(!file.hasDependencies);

    Rows found;
    for (const MessageFile::Message &message : file.messages) {
        found.insert({message.context, message.source});
        QVERIFY2(message.comment.isEmpty(), qUtf8Printable(message.source));
        QCOMPARE(message.translations.size(), 1);
    }
    const Rows expected = expectedRows(tag);
    const Rows missing = without(expected, found);
    const Rows extra = without(found, expected);
    QVERIFY2(missing.empty(), qUtf8Printable(listed(missing)));
    QVERIFY2(extra.empty(), qUtf8Printable(listed(extra)));
    const bool named = tag == english || tag == QLatin1String{"ru"};
    QCOMPARE(file.messages.size(), named ? 45 : 44);
}

void tst_Catalogues::everyTextIsTranslated()
{
    QFETCH(QString, tag);
    Rows untranslated;
    Rows same;
    const QList<MessageFile::Message> messages = catalogue(tag).messages;
    for (const MessageFile::Message &message : messages) {
        if (message.translations.constFirst() != message.source) {
            // It is its own source.
            QVERIFY2(tag != english, qUtf8Printable(message.source));
        } else if (tag != english) {
            const Row word{tag, message.source};
            (sameInBoth.count(word) != 0 ? same : untranslated).insert(word);
        }
    }
    QVERIFY2(untranslated.empty(), qUtf8Printable(listed(untranslated)));

    Rows excused;
    for (const Row &word : sameInBoth) {
        if (word.first == tag) {
            excused.insert(word);
        }
    }
    const Rows needless = without(excused, same);
    QVERIFY2(needless.empty(), qUtf8Printable(listed(needless)));
}

void tst_Catalogues::marksAreKept()
{
    QFETCH(QString, tag);
    const QList<MessageFile::Message> messages = catalogue(tag).messages;
    for (const MessageFile::Message &message : messages) {
        const QString translation = plain(message.translations.constFirst());
        const QString shown = message.source + QStringLiteral(" -> ") + translation;
        QVERIFY2(!hasBlankAtAnEnd(translation), qUtf8Printable(shown));
        QVERIFY2(markAtTheEnd(message.source) == markAtTheEnd(translation), qUtf8Printable(shown));
        for (const QString &mark : {QStringLiteral("%1"), QStringLiteral("…"), QStringLiteral("—"),
                                    QStringLiteral("✓"), QStringLiteral("ABC123")}) {
            QVERIFY2(message.source.count(mark) == translation.count(mark), qUtf8Printable(shown));
        }
        QVERIFY2(!translation.contains(QLatin1String{"..."}), qUtf8Printable(shown));
        QVERIFY2(!translation.contains(QLatin1Char{'\n'}), qUtf8Printable(shown));
        QVERIFY2(!translation.contains(QLatin1Char{'<'}), qUtf8Printable(shown));
        QVERIFY2(!translation.contains(QLatin1Char{'&'}), qUtf8Printable(shown));
        QVERIFY2(!translation.contains(QLatin1String{"  "}), qUtf8Printable(shown));
        static const QRegularExpression blankBeforeMark{QStringLiteral(" [:!?…]")};
        QVERIFY2(!translation.contains(blankBeforeMark), qUtf8Printable(shown));
        const bool capitals = message.source == message.source.toUpper() &&
                              message.source != message.source.toLower();
        QVERIFY2(!capitals || translation == translation.toUpper(), qUtf8Printable(shown));
    }
}

void tst_Catalogues::sameTextSameTranslation()
{
    QFETCH(QString, tag);
    QHash<QString, QString> known;
    const QList<MessageFile::Message> messages = catalogue(tag).messages;
    for (const MessageFile::Message &message : messages) {
        const QString translation = message.translations.constFirst();
        QCOMPARE(translation, known.value(message.source, translation));
        known.insert(message.source, translation);
    }
}

void tst_Catalogues::sourcesAreFinished()
{
    QFETCH(QString, tag);
    const QString path = sourceTree() + QStringLiteral("/resources/i18n/ixovpn_%1.ts").arg(tag);
    Rows found;
    const QList<SourceText> texts = readTranslationSource(path);
    for (const SourceText &text : texts) {
        QVERIFY2(text.type.isEmpty(), qUtf8Printable(text.row.second));
        QVERIFY2(!text.hasExtras, qUtf8Printable(text.row.second));
        QVERIFY2(found.insert(text.row).second, qUtf8Printable(text.row.second));
    }
    QVERIFY(found == expectedRows(tag));
}

void tst_Catalogues::fixedTexts_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("translation");

    const auto row = [](const char *tag, const char *source, const char *translation) {
        QTest::addRow("%s: %s", tag, source)
            << QString{QLatin1String{tag}} << QByteArray{source} << QString::fromUtf8(translation);
    };
    row("ru", "IXOVPN", "IXOVPN");
    row("de", "Tap the switch to connect", "Tippen Sie zum Verbinden");
    row("ru", "Tap the switch to connect", "Нажмите, чтобы подключиться");
    row("ja", "Tap the switch to connect", "タップして接続");
    row("br", "Tap the switch to connect", "Toque para conectar");
    row("pt", "Tap the switch to connect", "Toque para ligar");
    row("ru", "Waiting for service…", "Ожидание службы…");
    row("de", "Connected", "Verbunden");
    row("de", "Disconnected", "Getrennt");
}

void tst_Catalogues::fixedTexts()
{
    QFETCH(QString, tag);
    QFETCH(QByteArray, source);
    QTranslator translator;
    QVERIFY(ui::catalogue::load(translator, tag));
    QTEST(translator.translate("MainWindow", source.constData()), "translation");
}

void tst_Catalogues::programAsksForNothingElse()
{
    QFile log{QStringLiteral(IXOVPN_COLLECTED ".log")};
    QVERIFY(log.open(QIODevice::ReadOnly));
    const QByteArray said = log.readAll();
    QVERIFY(!said.isEmpty());
    QVERIFY2(!said.contains("warning") && !said.contains("Q_OBJECT"), said.constData());

    Rows asked;
    const QList<SourceText> texts = readTranslationSource(QStringLiteral(IXOVPN_COLLECTED ".ts"));
    for (const SourceText &text : texts) {
        asked.insert(text.row);
    }
    const Rows known = expectedRows(english);
    const Rows unknown = without(asked, known);
    QVERIFY2(unknown == notTranslated, qUtf8Printable(listed(unknown)));

    const Rows unused = without(known, asked);
    const QString window = QStringLiteral("MainWindow");
    QVERIFY2((unused == Rows{{window, QStringLiteral("Exit")},
                             {window, QStringLiteral("Settings")},
                             {window, QStringLiteral("Support")}}),
             qUtf8Printable(listed(unused)));
}

QTEST_GUILESS_MAIN(tst_Catalogues)

#include "tst_catalogues.moc"
