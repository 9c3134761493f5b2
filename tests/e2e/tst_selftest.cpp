#include "tests/support/Contents.h"
#include "tests/support/ScriptedService.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCodec>

#include <iostream>
#include <memory>
#include <vector>

using support::contents;

namespace {

const QString localeOption = QStringLiteral("--test-i18n");
const QString outputOption = QStringLiteral("--out");
const QString defaultOutput = QStringLiteral("i18n-test.out");

constexpr int cannotWrite = 2;

// Makes this test print Qt's codec for the locale.
constexpr char codecQuestion[] = "--name-codec";

QByteArray report(const char *locale, const char *connected, const char *disconnected)
{
    return QByteArray{"locale="} + locale + "\nConnected=" + connected +
           "\nDisconnected=" + disconnected + '\n';
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
    void outputPlace_data();
    void outputPlace();
    void olderFileIsReplaced();
    void linkAtItsPlace();
    void unwritablePlace_data();
    void unwritablePlace();
    void encodingIsQtsForTheLocale_data();
    void encodingIsQtsForTheLocale();
    void storedLanguageComesFirst();
    void settingsStayUntouched();
    void otherWordsDoNotSelectIt_data();
    void otherWordsDoNotSelectIt();
    void lastWordStartsASecondClient();
    void runningClientIsLeftAlone();
    void noDisplay_data();
    void noDisplay();
    void normalStartStillWantsADisplay_data();
    void normalStartStillWantsADisplay();
    void manyAtOnce();

private:
    struct Ended
    {
        QProcess::ExitStatus how;
        int code;
        bool operator==(const Ended &other) const { return how == other.how && code == other.code; }
    };
    static constexpr Ended well{QProcess::NormalExit, 0};

    std::unique_ptr<QProcess> start(const QStringList &arguments) const;
    Ended run(const QStringList &arguments) const;
    // Kills a run that connects to the service, and so is no self-test.
    Ended runBeside(const support::ScriptedService &service, const QStringList &arguments) const;
    QString path(const QString &name) const { return place->filePath(name); }
    void store(const QByteArray &settings) const;

    std::unique_ptr<QTemporaryDir> place;
    QProcessEnvironment environment;
};

void tst_SelfTest::init()
{
    place = std::make_unique<QTemporaryDir>();
    environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
}

void tst_SelfTest::cleanup()
{
    place.reset();
}

std::unique_ptr<QProcess> tst_SelfTest::start(const QStringList &arguments) const
{
    auto process = std::make_unique<QProcess>();
    process->setWorkingDirectory(place->path());
    process->setProcessEnvironment(environment);
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->start(QStringLiteral(IXOVPN_CLIENT), arguments);
    return process;
}

tst_SelfTest::Ended tst_SelfTest::run(const QStringList &arguments) const
{
    const std::unique_ptr<QProcess> process = start(arguments);
    process->waitForFinished(-1);
    return {process->exitStatus(), process->exitCode()};
}

tst_SelfTest::Ended tst_SelfTest::runBeside(const support::ScriptedService &service,
                                            const QStringList &arguments) const
{
    const int before = service.accepted();
    const std::unique_ptr<QProcess> process = start(arguments);
    while (process->state() != QProcess::NotRunning && service.accepted() == before) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    if (process->state() != QProcess::NotRunning) {
        process->kill();
        process->waitForFinished(-1);
    }
    return {process->exitStatus(), process->exitCode()};
}

void tst_SelfTest::store(const QByteArray &settings) const
{
    const QString folder = path(QStringLiteral("home/.config/IXOVPN"));
    QDir{}.mkpath(folder);
    QFile file{folder + QStringLiteral("/IxoClient.conf")};
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[General]\n" + settings + '\n');
}

void tst_SelfTest::locales_data()
{
    QTest::addColumn<QByteArray>("written");

    const auto row = [](const char *argument, const char *locale, const char *connected,
                        const char *disconnected) {
        QTest::newRow(argument) << report(locale, connected, disconnected);
    };
    row("en", "en_US", "Connected", "Disconnected");
    row("ru", "ru_RU", "Подключено", "Отключено");
    row("de", "de_DE", "Verbunden", "Getrennt");
    row("fr", "fr_FR", "Connecté", "Déconnecté");
    row("es", "es_ES", "Conectado", "Desconectado");
    row("it", "it_IT", "Connesso", "Disconnesso");
    row("pt", "pt_BR", "Ligado", "Desligado");
    row("br", "br_FR", "Conectado", "Desconectado");
    row("ja", "ja_JP", "接続済み", "未接続");
    row("nl", "nl_NL", "Verbonden", "Niet verbonden");
    row("pl", "pl_PL", "Połączono", "Rozłączono");
    row("tr", "tr_TR", "Bağlı", "Bağlı değil");
    row("uk", "uk_UA", "Підключено", "Відключено");
    row("cs", "cs_CZ", "Připojeno", "Odpojeno");
    row("de_DE", "de_DE", "Verbunden", "Getrennt");
    row("de_AT", "de_AT", "Verbunden", "Getrennt");
    row("de_DE.UTF-8", "de_DE", "Verbunden", "Getrennt");
    row("pt_PT", "pt_PT", "Ligado", "Desligado");
    row("pt_BR", "pt_BR", "Ligado", "Desligado");
    row("br_FR", "br_FR", "Conectado", "Desconectado");
    row("uk_UA", "uk_UA", "Підключено", "Відключено");
    row("zh_CN", "zh_CN", "Connected", "Disconnected");
    row("C", "C", "Connected", "Disconnected");
    row("xx_YY", "C", "Connected", "Disconnected");
    row("../x", "C", "Connected", "Disconnected");
    row("", "C", "Connected", "Disconnected");
}

void tst_SelfTest::locales()
{
    const QString locale = QLatin1String{QTest::currentDataTag()};
    const QString out = path(QStringLiteral("x.txt"));
    QCOMPARE(run({localeOption, locale, outputOption, out}), well);
    QTEST(contents(out), "written");
}

void tst_SelfTest::outputPlace_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("file");

    const QString de = QStringLiteral("de_DE");
    const QString named = QStringLiteral("x.txt");
    QTest::newRow("given") << QStringList{localeOption, de, outputOption, named} << named;
    QTest::newRow("given first") << QStringList{outputOption, named, localeOption, de} << named;
    QTest::newRow("below a folder")
        << QStringList{localeOption, de, outputOption, QStringLiteral("home/x.txt")}
        << QStringLiteral("home/x.txt");
    QTest::newRow("beyond ASCII") << QStringList{localeOption, de, outputOption,
                                                 QStringLiteral("отчёт 日本.txt")}
                                  << QStringLiteral("отчёт 日本.txt");
    QTest::newRow("missing") << QStringList{localeOption, de} << defaultOutput;
    QTest::newRow("last") << QStringList{localeOption, de, outputOption} << defaultOutput;
    QTest::newRow("the first one counts")
        << QStringList{localeOption, de, outputOption, named, outputOption, QStringLiteral("y")}
        << named;
    QTest::newRow("the first locale counts")
        << QStringList{localeOption, de, localeOption, QStringLiteral("ru"), outputOption, named}
        << named;
    QTest::newRow("other arguments do not matter")
        << QStringList{QStringLiteral("--else"), localeOption, de, QStringLiteral("else")}
        << defaultOutput;
    QTest::newRow("capitals are another word")
        << QStringList{localeOption, de, QStringLiteral("--OUT"), named} << defaultOutput;
    QTest::newRow("with an equals sign it is another word")
        << QStringList{localeOption, de, QStringLiteral("--out=x.txt")} << defaultOutput;
}

void tst_SelfTest::outputPlace()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, file);
    QDir{}.mkpath(path(QStringLiteral("home")));
    QCOMPARE(run(arguments), well);
    QCOMPARE(contents(path(file)), report("de_DE", "Verbunden", "Getrennt"));
    const QStringList top = QDir{place->path()}.entryList(QDir::Files);
    QCOMPARE(top, file.contains(QLatin1Char{'/'}) ? QStringList{} : QStringList{file});
}

void tst_SelfTest::olderFileIsReplaced()
{
    QFile older{path(defaultOutput)};
    QVERIFY(older.open(QIODevice::WriteOnly));
    older.write(QByteArray{10'000, 'x'});
    older.close();
    QCOMPARE(run({localeOption, QStringLiteral("de_DE")}), well);
    QCOMPARE(contents(path(defaultOutput)), report("de_DE", "Verbunden", "Getrennt"));
}

// The self-test follows a symbolic link, as every program does that is told where to write.
void tst_SelfTest::linkAtItsPlace()
{
    QFile target{path(QStringLiteral("target"))};
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write(QByteArray{10'000, 'x'});
    target.close();
    QVERIFY(target.link(path(defaultOutput)));
    QCOMPARE(run({localeOption, QStringLiteral("de_DE")}), well);
    QVERIFY(QFileInfo{path(defaultOutput)}.isSymLink());
    QCOMPARE(contents(target.fileName()), report("de_DE", "Verbunden", "Getrennt"));
}

void tst_SelfTest::unwritablePlace_data()
{
    QTest::addColumn<QStringList>("output");

    QTest::newRow("folder that does not exist")
        << QStringList{outputOption, QStringLiteral("none/x.txt")};
    QTest::newRow("folder that is a file")
        << QStringList{outputOption, QStringLiteral("file/x.txt")};
    QTest::newRow("a folder") << QStringList{outputOption, QStringLiteral("folder")};
    QTest::newRow("no name") << QStringList{outputOption, QString{QLatin1String{""}}};
    QTest::newRow("read-only file system")
        << QStringList{outputOption, QStringLiteral("/proc/sys/kernel/i18n-test.out")};
    QTest::newRow("the default is a folder") << QStringList{};
}

void tst_SelfTest::unwritablePlace()
{
    QFETCH(QStringList, output);
    QFile file{path(QStringLiteral("file"))};
    QVERIFY(file.open(QIODevice::WriteOnly));
    QDir{}.mkpath(path(QStringLiteral("folder")));
    QDir{}.mkpath(path(defaultOutput));
    const QDir here{place->path()};
    const QStringList before = here.entryList();

    const Ended refused{QProcess::NormalExit, cannotWrite};
    QCOMPARE(run(QStringList{localeOption, QStringLiteral("de_DE")} + output), refused);

    QCOMPARE(here.entryList(), before);
    QCOMPARE(file.size(), 0);
    QVERIFY(QDir{path(QStringLiteral("folder"))}.isEmpty());
    QVERIFY(QDir{path(defaultOutput)}.isEmpty());
}

void tst_SelfTest::encodingIsQtsForTheLocale_data()
{
    QTest::addColumn<QString>("environmentLocale");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("written");

    const auto row = [](const char *environmentLocale, const char *locale, const char *connected,
                        const char *disconnected) {
        QTest::addRow("%s in %s", locale, environmentLocale)
            << QString{QLatin1String{environmentLocale}} << QString{QLatin1String{locale}}
            << QString::fromUtf8(report(locale, connected, disconnected));
    };
    for (const char *environmentLocale : {"C", "POSIX", "C.UTF-8", "fr_FR.ISO-8859-1"}) {
        row(environmentLocale, "de_DE", "Verbunden", "Getrennt");
        row(environmentLocale, "fr_FR", "Connecté", "Déconnecté");
        row(environmentLocale, "ja_JP", "接続済み", "未接続");
    }
}

void tst_SelfTest::encodingIsQtsForTheLocale()
{
    QFETCH(QString, environmentLocale);
    QFETCH(QString, locale);
    QFETCH(QString, written);
    const QString latin1 = QStringLiteral("fr_FR.ISO-8859-1");
    const int made =
        QProcess::execute(QStringLiteral("localedef"),
                          {QStringLiteral("-i"), QStringLiteral("fr_FR"), QStringLiteral("-f"),
                           QStringLiteral("ISO-8859-1"), QStringLiteral("--quiet"), path(latin1)});
    QVERIFY2(made == 0, "No Latin-1 locale can be made; needs the package locales");
    environment.insert(QStringLiteral("LOCPATH"), place->path());
    environment.insert(QStringLiteral("LC_ALL"), environmentLocale);

    QProcess asked;
    asked.setProcessEnvironment(environment);
    asked.start(QCoreApplication::applicationFilePath(), {QLatin1String{codecQuestion}});
    asked.waitForFinished(-1);
    const QTextCodec *const codec = QTextCodec::codecForName(asked.readAllStandardOutput());
    QVERIFY(codec != nullptr);

    QCOMPARE(run({localeOption, locale}), well);
    QCOMPARE(contents(path(defaultOutput)), codec->fromUnicode(written));
}

void tst_SelfTest::storedLanguageComesFirst()
{
    store("language=ru");
    QCOMPARE(run({localeOption, QStringLiteral("de_DE"), outputOption, QStringLiteral("x.txt")}),
             well);
    QCOMPARE(contents(path(QStringLiteral("x.txt"))), report("de_DE", "Подключено", "Отключено"));

    store("language=xx");
    QCOMPARE(run({localeOption, QStringLiteral("de_DE")}), well);
    QCOMPARE(contents(path(defaultOutput)), report("de_DE", "Verbunden", "Getrennt"));
}

void tst_SelfTest::settingsStayUntouched()
{
    store("language=ru\nreferral_code=ABC123");
    const QString file = path(QStringLiteral("home/.config/IXOVPN/IxoClient.conf"));
    const QByteArray before = contents(file);
    QVERIFY(!before.isEmpty());
    QCOMPARE(run({localeOption, QStringLiteral("de_DE")}), well);
    QCOMPARE(contents(file), before);
}

void tst_SelfTest::otherWordsDoNotSelectIt_data()
{
    QTest::addColumn<QString>("word");

    for (const char *word : {"--TEST-I18N", "--Test-i18n", "--test-i18n=de_DE", "--test-i18n ",
                             " --test-i18n", "-test-i18n", "--test-i18", "--test-i18nn"}) {
        QTest::newRow(word) << QString{QLatin1String{word}};
    }
}

void tst_SelfTest::otherWordsDoNotSelectIt()
{
    QFETCH(QString, word);
    const QStringList arguments{word, QStringLiteral("de_DE")};
    support::ScriptedService service;
    service.listen();
    const std::unique_ptr<QProcess> client = start(arguments);
    const auto end = qScopeGuard([&client] {
        client->kill();
        client->waitForFinished(-1);
    });
    QTRY_COMPARE(service.accepted(), 1);
    QVERIFY(!QFile::exists(path(defaultOutput)));

    QCOMPARE(runBeside(service, arguments), well);
    QCOMPARE(client->state(), QProcess::Running);
    QCOMPARE(service.accepted(), 1);
    QVERIFY(!QFile::exists(path(defaultOutput)));
}

void tst_SelfTest::lastWordStartsASecondClient()
{
    support::ScriptedService service;
    service.listen();
    const std::unique_ptr<QProcess> first = start({});
    QTRY_COMPARE(service.accepted(), 1);
    const std::unique_ptr<QProcess> second = start({QStringLiteral("de_DE"), localeOption});
    const auto end = qScopeGuard([&first, &second] {
        for (QProcess *client : {first.get(), second.get()}) {
            client->kill();
            client->waitForFinished(-1);
        }
    });
    QTRY_COMPARE(service.accepted(), 2);
    QCOMPARE(service.connected(), 2);
    QCOMPARE(first->state(), QProcess::Running);
    QCOMPARE(second->state(), QProcess::Running);
    QVERIFY(!QFile::exists(path(defaultOutput)));
}

void tst_SelfTest::runningClientIsLeftAlone()
{
    support::ScriptedService service;
    service.listen();
    const std::unique_ptr<QProcess> client = start({});
    const auto end = qScopeGuard([&client] {
        client->kill();
        client->waitForFinished(-1);
    });
    QTRY_COMPARE(service.accepted(), 1);
    QCOMPARE(runBeside(service, {localeOption, QStringLiteral("de_DE")}), well);
    QCOMPARE(contents(path(defaultOutput)), report("de_DE", "Verbunden", "Getrennt"));
    QCOMPARE(client->state(), QProcess::Running);
    QCOMPARE(service.accepted(), 1);
    QCOMPARE(service.connected(), 1);
    QCOMPARE(runBeside(service, {}), well);
}

void tst_SelfTest::noDisplay_data()
{
    QTest::addColumn<bool>("emptyVariables");

    QTest::newRow("variables not set") << false;
    QTest::newRow("variables empty") << true;
}

void tst_SelfTest::noDisplay()
{
    QFETCH(bool, emptyVariables);
    for (const QString &variable : {QStringLiteral("DISPLAY"), QStringLiteral("WAYLAND_DISPLAY"),
                                    QStringLiteral("QT_QPA_PLATFORM")}) {
        environment.remove(variable);
        if (emptyVariables) {
            environment.insert(variable, QString{QLatin1String{""}});
        }
    }
    QCOMPARE(run({localeOption, QStringLiteral("de_DE")}), well);
    QCOMPARE(contents(path(defaultOutput)), report("de_DE", "Verbunden", "Getrennt"));
}

void tst_SelfTest::normalStartStillWantsADisplay_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("no arguments") << QStringList{};
    QTest::newRow("word is the last") << QStringList{QStringLiteral("de_DE"), localeOption};
}

void tst_SelfTest::normalStartStillWantsADisplay()
{
    QFETCH(QStringList, arguments);
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    support::ScriptedService service;
    service.listen();
    QVERIFY(!(runBeside(service, arguments) == well));
    QCOMPARE(service.accepted(), 0);
}

void tst_SelfTest::manyAtOnce()
{
    constexpr int count = 40;
    std::vector<std::unique_ptr<QProcess>> runs;
    runs.reserve(count);
    for (int i = 0; i < count; ++i) {
        runs.push_back(start({localeOption, QStringLiteral("de_DE"), outputOption,
                              QStringLiteral("%1.txt").arg(i)}));
    }
    for (int i = 0; i < count; ++i) {
        QProcess &process = *runs.at(static_cast<std::size_t>(i));
        // waitForFinished() would wait in vain for a process that has ended meanwhile.
        if (process.state() != QProcess::NotRunning) {
            process.waitForFinished(-1);
        }
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(contents(path(QStringLiteral("%1.txt").arg(i))),
                 report("de_DE", "Verbunden", "Getrennt"));
    }
}

int main(int argc, char *argv[])
{
    QCoreApplication application{argc, argv};
    if (argc > 1 && QLatin1String{argv[1]} == QLatin1String{codecQuestion}) {
        std::cout << QTextCodec::codecForLocale()->name().constData();
        return 0;
    }
    tst_SelfTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_selftest.moc"
