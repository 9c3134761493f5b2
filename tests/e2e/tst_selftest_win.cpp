#include "app/Identity.h"
#include "tests/support/ClientProcess_win.h"
#include "tests/support/Contents.h"
#include "tests/support/ScriptedService.h"
#include "tests/support/WindowBench.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using support::ClientProcess;
using support::contents;
using support::waitFor;

namespace {

const QString localeOption = QStringLiteral("--test-i18n");
const QString outputOption = QStringLiteral("--out");
const QString defaultOutput = QStringLiteral("i18n-test.out");

constexpr int cannotWrite = 2;

/// In the encoding of the system's locale, as the system converts it.
QByteArray report(const QString &locale, const QString &connected, const QString &disconnected)
{
    const QString text = QStringLiteral("locale=%1\r\nConnected=%2\r\nDisconnected=%3\r\n")
                             .arg(locale, connected, disconnected);
    QByteArray bytes{text.size() * 4, '\0'};
    const int length =
        WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<const wchar_t *>(text.utf16()), text.size(),
                            bytes.data(), bytes.size(), nullptr, nullptr);
    return bytes.left(length);
}

} // namespace

class tst_SelfTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void locales_data();
    void locales();
    void defaultPlace_data();
    void defaultPlace();
    void unwritablePlace_data();
    void unwritablePlace();
    void storedLanguageComesFirst();
    void runningClientIsLeftAlone();

private:
    int run(const QStringList &arguments) const
    {
        return ClientProcess{arguments, place->path()}.exitCode();
    }
    QString path(const QString &name) const { return place->filePath(name); }

    std::unique_ptr<QTemporaryDir> place;
};

void tst_SelfTest::init()
{
    app::setIdentity();
    QSettings{}.clear();
    place = std::make_unique<QTemporaryDir>();
}

void tst_SelfTest::cleanup()
{
    place.reset();
}

void tst_SelfTest::locales_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("connected");
    QTest::addColumn<QString>("disconnected");

    const auto row = [](const char *argument, const char *locale, const char *connected,
                        const char *disconnected) {
        QTest::newRow(argument) << QString::fromUtf8(locale) << QString::fromUtf8(connected)
                                << QString::fromUtf8(disconnected);
    };
    row("de_DE", "de_DE", "Verbunden", "Getrennt");
    row("fr", "fr_FR", "Connecté", "Déconnecté");
    row("tr", "tr_TR", "Bağlı", "Bağlı değil");
    row("cs_CZ", "cs_CZ", "Připojeno", "Odpojeno");
    row("ru", "ru_RU", "Подключено", "Отключено");
    row("ja", "ja_JP", "接続済み", "未接続");
    row("xx_YY", "C", "Connected", "Disconnected");
}

void tst_SelfTest::locales()
{
    QFETCH(QString, locale);
    QFETCH(QString, connected);
    QFETCH(QString, disconnected);
    const QString out = path(QStringLiteral("отчёт.txt"));
    QCOMPARE(run({localeOption, QLatin1String{QTest::currentDataTag()}, outputOption, out}), 0);
    QCOMPARE(contents(out), report(locale, connected, disconnected));
}

void tst_SelfTest::defaultPlace_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString de = QStringLiteral("de_DE");
    QTest::newRow("none given") << QStringList{localeOption, de};
    QTest::newRow("given without a value") << QStringList{localeOption, de, outputOption};
}

void tst_SelfTest::defaultPlace()
{
    QFETCH(QStringList, arguments);
    QFile older{path(defaultOutput)};
    QVERIFY(older.open(QIODevice::WriteOnly));
    older.write(QByteArray{1000, 'x'});
    older.close();
    QCOMPARE(run(arguments), 0);
    QCOMPARE(contents(path(defaultOutput)),
             QByteArray("locale=de_DE\r\nConnected=Verbunden\r\nDisconnected=Getrennt\r\n"));
    QCOMPARE(QDir{place->path()}.entryList(QDir::Files), QStringList{defaultOutput});
}

void tst_SelfTest::unwritablePlace_data()
{
    QTest::addColumn<QString>("out");
    QTest::newRow("folder that does not exist") << QStringLiteral("none/x.txt");
    QTest::newRow("a folder") << QStringLiteral(".");
    QTest::newRow("drive that does not exist") << QStringLiteral("Q:/x.txt");
    QTest::newRow("not a name") << QStringLiteral("a?b*c.txt");
}

void tst_SelfTest::unwritablePlace()
{
    QFETCH(QString, out);
    QCOMPARE(run({localeOption, QStringLiteral("de_DE"), outputOption, out}), cannotWrite);
    QVERIFY(QDir{place->path()}.isEmpty());
}

void tst_SelfTest::storedLanguageComesFirst()
{
    QSettings{}.setValue(QStringLiteral("language"), QStringLiteral("fr"));
    QCOMPARE(run({localeOption, QStringLiteral("de_DE")}), 0);
    QCOMPARE(contents(path(defaultOutput)),
             report(QStringLiteral("de_DE"), QStringLiteral(u"Connecté"),
                    QStringLiteral(u"Déconnecté")));
}

void tst_SelfTest::runningClientIsLeftAlone()
{
    support::ScriptedService service;
    service.listen();
    ClientProcess client;
    QVERIFY(client.comesUp());
    QVERIFY(waitFor([&] { return service.accepted() == 1; }));
    client.close();
    QVERIFY(waitFor([&] { return !client.isShown(); }));

    QCOMPARE(run({localeOption, QStringLiteral("de_DE")}), 0);
    QVERIFY(QFile::exists(path(defaultOutput)));
    QVERIFY(client.isRunning());
    QVERIFY(!client.isShown());
    QCOMPARE(service.accepted(), 1);
    QCOMPARE(service.connected(), 1);
}

QTEST_GUILESS_MAIN(tst_SelfTest)

#include "tst_selftest_win.moc"
