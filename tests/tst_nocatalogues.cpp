#include "app/Identity.h"
#include "app/StartupTranslator.h"
#include "ui/Catalogue.h"
#include "ui/MainWindow.h"
#include "ui/SettingsDialog.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLocale>
#include <QSettings>
#include <QTest>
#include <QTranslator>

/// What a program does that was built without its resources.
class tst_NoCatalogues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void startShowsTheSourceTexts();
    void switchShowsTheSourceTexts();
};

void tst_NoCatalogues::initTestCase()
{
    app::setIdentity();
    QSettings{}.clear();
    QLocale::setDefault(QLocale{QStringLiteral("de_DE")});
    QVERIFY(!QFile::exists(ui::catalogue::path(ui::catalogue::fallbackTag())));
}

void tst_NoCatalogues::startShowsTheSourceTexts()
{
    app::installStartupTranslator(*qApp);
    const auto translators =
        qApp->findChildren<QTranslator *>(QString{}, Qt::FindDirectChildrenOnly);
    QCOMPARE(translators.size(), 1);
    QVERIFY(translators.constFirst()->isEmpty());
    QVERIFY(!QCoreApplication::removeTranslator(translators.constFirst()));
    QCOMPARE(QCoreApplication::translate("MainWindow", "Connected"), QStringLiteral("Connected"));
}

void tst_NoCatalogues::switchShowsTheSourceTexts()
{
    MainWindow window;
    auto *const page = window.findChild<ui::SettingsDialog *>();
    for (const QString &tag : {QStringLiteral("ru"), QStringLiteral("ja")}) {
        Q_EMIT page->languageChanged(tag);
        QVERIFY(window.findChildren<QTranslator *>().isEmpty());
        QCOMPARE(QSettings{}.value(QStringLiteral("language")).toString(), tag);
    }
    QCOMPARE(window.findChild<QLabel *>(QStringLiteral("status"))->text(),
             QStringLiteral("Disconnected"));
}

QTEST_MAIN(tst_NoCatalogues)

#include "tst_nocatalogues.moc"
