#include "app/Identity.h"
#include "app/StartupTranslator.h"
#include "tests/support/PlantedCatalogues.h"
#include "ui/Catalogue.h"

#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QResource>
#include <QSettings>
#include <QTest>
#include <QTranslator>

namespace {

const QString languageKey = QStringLiteral("language");

QList<QTranslator *> translatorsOfApplication()
{
    return qApp->findChildren<QTranslator *>(QString{}, Qt::FindDirectChildrenOnly);
}

QString shownForConnected()
{
    return QCoreApplication::translate("MainWindow", "Connected");
}

/// A resource with one more catalogue: the Russian one under the name of another tag, de_AT.
class ExtraCatalogue
{
public:
    ExtraCatalogue()
    {
        if (!QResource::registerResource(file)) {
            qFatal("Cannot register the extra catalogue");
        }
    }
    ~ExtraCatalogue() { QResource::unregisterResource(file); }
    ExtraCatalogue(const ExtraCatalogue &) = delete;
    ExtraCatalogue &operator=(const ExtraCatalogue &) = delete;

private:
    const QString file = QStringLiteral(IXOVPN_EXTRA_CATALOGUE);
};

} // namespace

class tst_StartupTranslator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void candidates_data();
    void candidates();
    void wholeLocaleNameComesFirst();
    void storedTagComesBeforeWholeLocaleName();
    void storedValueOfAnotherType_data();
    void storedValueOfAnotherType();
    void endlessTag();
    void tagsThatArePaths();
    void tagThatGoesRoundInsideTheResources();
    void translatorBelongsToTheApplication();
    void languageInForce_data();
    void languageInForce();
};

void tst_StartupTranslator::initTestCase()
{
    app::setIdentity();
}

void tst_StartupTranslator::init()
{
    QSettings{}.clear();
    QLocale::setDefault(QLocale::c());
}

void tst_StartupTranslator::cleanup()
{
    qDeleteAll(translatorsOfApplication());
}

void tst_StartupTranslator::candidates_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("loaded");

    const auto row = [](const char *name, const char *stored, const char *locale,
                        const char *loaded) {
        QTest::newRow(name) << QString::fromUtf8(stored) << QString{QLatin1String{locale}}
                            << QString{QLatin1String{loaded}};
    };
    row("locale's language", "", "de_DE", "de");
    row("country without a catalogue", "", "de_AT", "de");
    row("British English", "", "en_GB", "en");
    row("Brazil gets European Portuguese", "", "pt_BR", "pt");
    row("Portugal", "", "pt_PT", "pt");
    row("Breton gets Brazilian Portuguese", "", "br_FR", "br");
    row("script in the name", "", "vai_Latn_LR", "en");
    row("Japan", "", "ja_JP", "ja");
    row("Turkey", "", "tr_TR", "tr");
    row("Ukraine", "", "uk_UA", "uk");
    row("three letters", "", "gsw_CH", "en");
    row("language without a catalogue", "", "gv_IM", "en");
    row("C locale", "", "C", "en");
    row("setting before locale", "ja", "de_DE", "ja");
    row("Brazil by setting", "br", "pt_PT", "br");
    row("English by setting", "en", "ru_RU", "en");
    row("setting unknown", "xx", "ru_RU", "ru");
    row("setting and locale unknown", "xx", "gv_IM", "en");
    row("setting is no tag but a locale", "pt_BR", "de_DE", "de");
    row("setting with a tail", "ja_JP", "de_DE", "de");
    row("setting in capitals", "JA", "de_DE", "de");
    row("setting with a blank", "ja ", "de_DE", "de");
    row("setting only a blank", " ", "de_DE", "de");
    row("setting is a file name", "ja.qm", "de_DE", "de");
    row("setting in other letters", "јa", "de_DE", "de");
}

void tst_StartupTranslator::candidates()
{
    QFETCH(QString, stored);
    QFETCH(QString, locale);
    QFETCH(QString, loaded);
    if (!stored.isEmpty()) {
        QSettings{}.setValue(languageKey, stored);
    }
    QLocale::setDefault(QLocale{locale});

    app::installStartupTranslator(*qApp);

    const QList<QTranslator *> translators = translatorsOfApplication();
    QCOMPARE(translators.size(), 1);
    QCOMPARE(translators.constFirst()->filePath(), ui::catalogue::path(loaded));
    QCOMPARE(shownForConnected(), translators.constFirst()->translate("MainWindow", "Connected"));
}

void tst_StartupTranslator::wholeLocaleNameComesFirst()
{
    const ExtraCatalogue extra;
    QLocale::setDefault(QLocale{QStringLiteral("de_AT")});
    app::installStartupTranslator(*qApp);
    QCOMPARE(shownForConnected(), QStringLiteral("Подключено"));
}

void tst_StartupTranslator::storedTagComesBeforeWholeLocaleName()
{
    const ExtraCatalogue extra;
    QSettings{}.setValue(languageKey, QStringLiteral("de"));
    QLocale::setDefault(QLocale{QStringLiteral("de_AT")});
    app::installStartupTranslator(*qApp);
    QCOMPARE(shownForConnected(), QStringLiteral("Verbunden"));
}

void tst_StartupTranslator::storedValueOfAnotherType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("shown");

    const QString german = QStringLiteral("Verbunden");
    QTest::newRow("number") << QVariant{5} << german;
    QTest::newRow("truth") << QVariant{true} << german;
    QTest::newRow("nothing") << QVariant{} << german;
    QTest::newRow("map") << QVariant{QVariantMap{{languageKey, languageKey}}} << german;
    QTest::newRow("list") << QVariant{QStringList{QStringLiteral("ja"), QStringLiteral("ru")}}
                          << german;
    QTest::newRow("bytes") << QVariant{QByteArray{"ru"}} << QStringLiteral("Подключено");
}

void tst_StartupTranslator::storedValueOfAnotherType()
{
    QFETCH(QVariant, value);
    QSettings{}.setValue(languageKey, value);
    QLocale::setDefault(QLocale{QStringLiteral("de_DE")});
    app::installStartupTranslator(*qApp);
    QTEST(shownForConnected(), "shown");
}

void tst_StartupTranslator::endlessTag()
{
    constexpr int length = 10'000'000;
    QSettings{}.setValue(languageKey, QString{length, QLatin1Char{'x'}});
    QLocale::setDefault(QLocale{QStringLiteral("de_DE")});
    app::installStartupTranslator(*qApp);
    QCOMPARE(shownForConnected(), QStringLiteral("Verbunden"));
}

void tst_StartupTranslator::tagsThatArePaths()
{
    const support::PlantedCatalogues planted;
    QLocale::setDefault(QLocale{QStringLiteral("de_DE")});
    const QStringList tags = planted.tags();
    for (const QString &tag : tags) {
        QSettings{}.setValue(languageKey, tag);
        app::installStartupTranslator(*qApp);
        QVERIFY2(shownForConnected() == QLatin1String{"Verbunden"}, qUtf8Printable(tag));
        QCOMPARE(translatorsOfApplication().constLast()->filePath(),
                 ui::catalogue::path(QStringLiteral("de")));
        cleanup();
    }
}

void tst_StartupTranslator::tagThatGoesRoundInsideTheResources()
{
    QSettings{}.setValue(languageKey, QStringLiteral("x/../ixovpn_ja"));
    QLocale::setDefault(QLocale{QStringLiteral("de_DE")});
    app::installStartupTranslator(*qApp);
    const QString loaded = QDir::cleanPath(translatorsOfApplication().constFirst()->filePath());
    QVERIFY2(loaded == ui::catalogue::path(QStringLiteral("ja")) ||
                 loaded == ui::catalogue::path(QStringLiteral("de")),
             qUtf8Printable(loaded));
}

void tst_StartupTranslator::translatorBelongsToTheApplication()
{
    app::installStartupTranslator(*qApp);
    const QList<QTranslator *> translators = translatorsOfApplication();
    QCOMPARE(translators.size(), 1);
    QCOMPARE(translators.constFirst()->parent(), qApp);
    QVERIFY(QCoreApplication::removeTranslator(translators.constFirst()));
}

void tst_StartupTranslator::languageInForce_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("tag");

    const auto row = [](const char *stored, const char *locale, const char *tag) {
        QTest::addRow("%s over %s", stored, locale)
            << QString{QLatin1String{stored}} << QString{QLatin1String{locale}}
            << QString{QLatin1String{tag}};
    };
    row("", "de_AT", "de");
    row("", "pt_BR", "pt");
    row("", "br_FR", "br");
    row("", "zh_CN", "zh");
    row("", "C", "en");
    row("", "fil_PH", "fi");
    row("ja", "de_DE", "ja");
    row("pt_BR", "de_DE", "pt_BR");
    row("../x", "de_DE", "../x");
}

void tst_StartupTranslator::languageInForce()
{
    QFETCH(QString, stored);
    QFETCH(QString, locale);
    QSettings{}.setValue(languageKey, stored);
    QLocale::setDefault(QLocale{locale});
    QTEST(ui::catalogue::currentTag(), "tag");
}

QTEST_MAIN(tst_StartupTranslator)

#include "tst_startuptranslator.moc"
