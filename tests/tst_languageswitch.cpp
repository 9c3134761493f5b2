#include "app/Identity.h"
#include "app/StartupTranslator.h"
#include "tests/support/PlantedCatalogues.h"
#include "ui/Catalogue.h"
#include "ui/MainWindow.h"
#include "ui/SettingsDialog.h"

#include <QApplication>
#include <QLabel>
#include <QLocale>
#include <QSettings>
#include <QTest>
#include <QTranslator>

#include <memory>

namespace {

QList<QTranslator *> translatorsOf(const QObject *owner)
{
    return owner->findChildren<QTranslator *>(QString{}, Qt::FindDirectChildrenOnly);
}

} // namespace

class tst_LanguageSwitch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void switchTo_data();
    void switchTo();
    void switchTwice();
    void startupCatalogueStaysBelow();
    void tagsThatArePaths();

private:
    void choose(const QString &tag);
    QString status() const;
    QTranslator *translatorOfWindow() const;

    std::unique_ptr<MainWindow> window;
};

void tst_LanguageSwitch::initTestCase()
{
    app::setIdentity();
}

void tst_LanguageSwitch::init()
{
    QSettings{}.clear();
    QLocale::setDefault(QLocale{QStringLiteral("de_DE")});
    app::installStartupTranslator(*qApp);
    window = std::make_unique<MainWindow>();
    QCOMPARE(status(), QStringLiteral("Getrennt"));
    QVERIFY(translatorsOf(window.get()).isEmpty());
}

void tst_LanguageSwitch::cleanup()
{
    window.reset();
    qDeleteAll(translatorsOf(qApp));
}

void tst_LanguageSwitch::choose(const QString &tag)
{
    Q_EMIT window->findChild<ui::SettingsDialog *>()->languageChanged(tag);
}

QString tst_LanguageSwitch::status() const
{
    return window->findChild<QLabel *>(QStringLiteral("status"))->text();
}

QTranslator *tst_LanguageSwitch::translatorOfWindow() const
{
    const QList<QTranslator *> own = translatorsOf(window.get());
    return own.size() == 1 ? own.constFirst() : nullptr;
}

void tst_LanguageSwitch::switchTo_data()
{
    QTest::addColumn<QString>("loaded");
    QTest::addColumn<QString>("shown");

    const auto row = [](const char *tag, const char *loaded, const char *shown) {
        QTest::newRow(tag) << QString{QLatin1String{loaded}} << QString::fromUtf8(shown);
    };
    row("en", "en", "Disconnected");
    row("ru", "ru", "Отключено");
    row("de", "de", "Getrennt");
    row("fr", "fr", "Déconnecté");
    row("es", "es", "Desconectado");
    row("it", "it", "Disconnesso");
    row("pt", "pt", "Desligado");
    row("br", "br", "Desconectado");
    row("ja", "ja", "未接続");
    row("nl", "nl", "Niet verbonden");
    row("pl", "pl", "Rozłączono");
    row("tr", "tr", "Bağlı değil");
    row("uk", "uk", "Відключено");
    row("cs", "cs", "Odpojeno");
    row("xx", "en", "Disconnected");
    row("", "en", "Disconnected");
    row("pt_BR", "en", "Disconnected");
    row("RU", "en", "Disconnected");
}

void tst_LanguageSwitch::switchTo()
{
    const QString tag = QLatin1String{QTest::currentDataTag()};
    QFETCH(QString, loaded);
    choose(tag);
    QVERIFY(translatorOfWindow() != nullptr);
    QCOMPARE(translatorOfWindow()->filePath(), ui::catalogue::path(loaded));
    QTEST(status(), "shown");
    const QSettings settings;
    QVERIFY(settings.contains(QStringLiteral("language")));
    QCOMPARE(settings.value(QStringLiteral("language")).toString(), tag);
}

void tst_LanguageSwitch::switchTwice()
{
    choose(QStringLiteral("ru"));
    choose(QStringLiteral("ja"));
    QCOMPARE(status(), QStringLiteral("未接続"));
    QCOMPARE(translatorsOf(qApp).size(), 1);
    QVERIFY(translatorOfWindow() != nullptr);
    QVERIFY(QCoreApplication::removeTranslator(translatorOfWindow()));
    QTRY_COMPARE(status(), QStringLiteral("Getrennt"));
    QVERIFY(QCoreApplication::removeTranslator(translatorsOf(qApp).constFirst()));
    QTRY_COMPARE(status(), QStringLiteral("Disconnected"));
}

void tst_LanguageSwitch::startupCatalogueStaysBelow()
{
    choose(QStringLiteral("ru"));
    QTranslator *const startup = translatorsOf(qApp).constFirst();
    QCOMPARE(startup->filePath(), ui::catalogue::path(QStringLiteral("de")));
    QVERIFY(QCoreApplication::removeTranslator(startup));
}

void tst_LanguageSwitch::tagsThatArePaths()
{
    const support::PlantedCatalogues planted;
    const QStringList tags = planted.tags();
    for (const QString &tag : tags) {
        choose(tag);
        QVERIFY2(status() == QLatin1String{"Disconnected"}, qUtf8Printable(tag));
        QCOMPARE(translatorOfWindow()->filePath(), ui::catalogue::path(QStringLiteral("en")));
    }
}

QTEST_MAIN(tst_LanguageSwitch)

#include "tst_languageswitch.moc"
