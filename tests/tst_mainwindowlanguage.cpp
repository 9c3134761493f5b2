#include "tests/support/WindowBench.h"

#include "app/StartupTranslator.h"
#include "ui/Catalogue.h"
#include "ui/PillLabel.h"
#include "ui/SettingsDialog.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTcpSocket>
#include <QTest>
#include <QTranslator>

using support::display;
using support::WindowBench;
using State = ui::ToggleSwitch::State;

namespace {

const QString earlier = QStringLiteral("as before");

QString storedLanguage()
{
    return QSettings{}.value(QStringLiteral("language")).toString();
}

/// A text of the main window in a language, whatever is installed.
QString inLanguage(const QString &tag, const char *source)
{
    QTranslator catalogue;
    if (!ui::catalogue::load(catalogue, tag)) {
        qFatal("No catalogue for %s", qPrintable(tag));
    }
    return catalogue.translate("MainWindow", source);
}

/// Records what the service has received, and what is stored, when the first translator is removed
/// or installed.
class SwitchWatcher : public QObject
{
public:
    explicit SwitchWatcher(WindowBench &watched)
        : bench(watched)
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (object == qApp && event->type() == QEvent::LanguageChange && !seen) {
            seen = true;
            auto *const socket = bench.service.findChild<QTcpSocket *>();
            while (bench.service.lines().isEmpty() && socket->waitForReadyRead()) {
            }
            heard = bench.service.lines();
            hint = bench.hint()->text();
            stored = storedLanguage();
        }
        return false;
    }

    bool seen = false;
    QList<QByteArray> heard;
    QString hint;
    QString stored;

private:
    WindowBench &bench;
};

} // namespace

class tst_MainWindowLanguage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void chosenLanguage_data();
    void chosenLanguage();
    void serviceIsToldFirst();
    void serviceHearsUnknownTag();
    void choiceIsStored_data();
    void choiceIsStored();
    void choiceOnThePage();

    void statusIsShownAgain_data();
    void statusIsShownAgain();
    void lastStatusSurvivesError();
    void expiredErrorIsStatus();
    void sizeGivesWayToStatus();
    void unknownWordBecomesLastStatus();
    void clickIsNotRemembered();
    void lastStatusSurvivesConnectionLoss();

    void noStatusYet();
    void connectionIsDown();
    void neverConnected();

    void unknownTagIsEnglish_data();
    void unknownTagIsEnglish();
    void oneTranslatorOfItsOwn();
    void startupTranslatorStays();
    void translatorEndsWithWindow();
    void followsOtherTranslators();
    void titleStays();
};

void tst_MainWindowLanguage::init()
{
    WindowBench::resetWorld();
}

void tst_MainWindowLanguage::chosenLanguage_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("hint");

    const auto known = [](const char *name, const char *tag, const char *hint) {
        QTest::newRow(name) << QString::fromLatin1(tag) << QString::fromUtf8(hint);
    };
    known("German text", "de", "Tippen Sie zum Verbinden");
    known("Japanese text", "ja", "タップして接続");
    known("Brazilian text", "br", "Toque para conectar");
    known("Portuguese text", "pt", "Toque para ligar");
}

void tst_MainWindowLanguage::chosenLanguage()
{
    QFETCH(QString, tag);
    QFETCH(QString, hint);

    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("status: running"));
    bench.chooseLanguage(tag);
    QCOMPARE(bench.hint()->text(), hint);
    QCOMPARE(bench.shown(),
             display(State::On, inLanguage(tag, "Connected"), inLanguage(tag, "Tunnel up")));
    // Later texts are in the new language too.
    QVERIFY(bench.say("status: fetching"));
    QCOMPARE(bench.shown(), display(State::Connecting, inLanguage(tag, "Connecting…"),
                                    inLanguage(tag, "Fetching config…")));
    QVERIFY(bench.say("config-bytes: 12k"));
    QCOMPARE(
        bench.pill()->text(),
        inLanguage(tag, "Config %1 bytes").replace(QStringLiteral("%1"), QStringLiteral("12k")));
    QVERIFY(bench.loseLink());
    QCOMPARE(bench.shown(), display(State::Off, inLanguage(tag, "Disconnected"),
                                    inLanguage(tag, "Service is not running")));
}

void tst_MainWindowLanguage::serviceIsToldFirst()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    const QString before = bench.hint()->text();

    const SwitchWatcher watcher{bench};
    bench.chooseLanguage(QStringLiteral("de"));
    QVERIFY(watcher.seen);
    QCOMPARE(watcher.heard, QList<QByteArray>{R"({"cmd":"set-lang","lang":"de"})"});
    QCOMPARE(watcher.hint, before);
    QCOMPARE(watcher.stored, QStringLiteral("de"));
    QVERIFY(bench.hint()->text() != before);
    QCOMPARE(bench.sent(), watcher.heard);
}

void tst_MainWindowLanguage::serviceHearsUnknownTag()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    bench.chooseLanguage(QStringLiteral("xx"));
    QCOMPARE(bench.sent(), QList<QByteArray>{R"({"cmd":"set-lang","lang":"xx"})"});
    QVERIFY(bench.loseLink());
    bench.service.listen();
    QVERIFY(support::waitFor([&] { return bench.service.lines().size() >= 2; }));
    QCOMPARE(bench.service.lines().constFirst(),
             QByteArrayLiteral(R"({"cmd":"set-lang","lang":"xx"})"));
}

void tst_MainWindowLanguage::choiceIsStored_data()
{
    QTest::addColumn<QString>("tag");

    QTest::newRow("catalogue") << QStringLiteral("cs");
    QTest::newRow("no catalogue") << QStringLiteral("xx");
}

void tst_MainWindowLanguage::choiceIsStored()
{
    QFETCH(QString, tag);
    const WindowBench bench{WindowBench::Service::IsAway};
    QVERIFY(storedLanguage().isEmpty());
    bench.chooseLanguage(tag);
    QCOMPARE(storedLanguage(), tag);
}

void tst_MainWindowLanguage::choiceOnThePage()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    bench.settingsPage()->openPage(QStringLiteral("en"));
    auto *const combo = bench.settingsPage()->findChild<QComboBox *>();
    combo->setCurrentIndex(combo->findData(QStringLiteral("it")));
    bench.settingsPage()->findChild<QPushButton *>(QStringLiteral("save"))->click();
    QCOMPARE(bench.hint()->text(), inLanguage(QStringLiteral("it"), "Tap the switch to connect"));
    QVERIFY(!bench.settingsPage()->isVisible());
    QCOMPARE(bench.sent(), QList<QByteArray>{R"({"cmd":"set-lang","lang":"it"})"});
}

void tst_MainWindowLanguage::statusIsShownAgain_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<State>("state");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("pill");

    const auto row = [](const char *word, State state, const char *status, const QString &pill) {
        QTest::newRow(word) << QByteArray{word} << state << inLanguage(QStringLiteral("de"), status)
                            << pill;
    };
    const auto german = [](const char *text) { return inLanguage(QStringLiteral("de"), text); };
    row("running", State::On, "Connected", german("Tunnel up"));
    row("fetching", State::Connecting, "Connecting…", german("Fetching config…"));
    row("starting", State::Connecting, "Connecting…", earlier);
    row("connecting", State::Connecting, "Connecting…", earlier);
    row("stopping", State::Disconnecting, "Disconnecting…", earlier);
    row("stopped", State::Off, "Disconnected", german("Idle"));
    row("disconnected", State::Off, "Disconnected", german("Idle"));
    row("subscription_expired", State::Error, "Error", german("Subscription expired"));
    row("failed: timeout", State::Error, "Failed", QStringLiteral("failed: timeout"));
}

void tst_MainWindowLanguage::statusIsShownAgain()
{
    QFETCH(QByteArray, word);
    QFETCH(State, state);
    QFETCH(QString, status);
    QFETCH(QString, pill);

    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("status: " + word));
    bench.pill()->setText(earlier);
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(), display(state, status, pill));
}

void tst_MainWindowLanguage::lastStatusSurvivesError()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say({"status: running", "error: no route"}));
    QCOMPARE(bench.toggle()->state(), State::Error);
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(), display(State::On, QStringLiteral("Verbunden"),
                                    inLanguage(QStringLiteral("de"), "Tunnel up")));
}

void tst_MainWindowLanguage::expiredErrorIsStatus()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say({"status: running", "error: subscription_expired"}));
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(), display(State::Error, inLanguage(QStringLiteral("de"), "Error"),
                                    inLanguage(QStringLiteral("de"), "Subscription expired")));
}

void tst_MainWindowLanguage::sizeGivesWayToStatus()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say({"status: fetching", "config-bytes: 2048"}));
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.pill()->text(), inLanguage(QStringLiteral("de"), "Fetching config…"));
}

void tst_MainWindowLanguage::unknownWordBecomesLastStatus()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say({"status: running", "status: xyzzy"}));
    const QStringList before = bench.shown();
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(), before);
}

void tst_MainWindowLanguage::clickIsNotRemembered()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("status: running"));
    bench.click();
    QCOMPARE(bench.toggle()->state(), State::Disconnecting);
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(), display(State::On, QStringLiteral("Verbunden"),
                                    inLanguage(QStringLiteral("de"), "Tunnel up")));
}

void tst_MainWindowLanguage::lastStatusSurvivesConnectionLoss()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("status: running"));
    QVERIFY(bench.loseLink());
    bench.service.listen();
    QVERIFY(bench.greeted());
    QCOMPARE(bench.shown(), display(State::Off, QStringLiteral("Disconnected"),
                                    QStringLiteral("Service connected")));
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(), display(State::On, QStringLiteral("Verbunden"),
                                    inLanguage(QStringLiteral("de"), "Tunnel up")));
}

void tst_MainWindowLanguage::noStatusYet()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("error: no route"));
    bench.status()->setText(earlier);
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(),
             display(State::Error, earlier, inLanguage(QStringLiteral("de"), "Service connected")));
}

void tst_MainWindowLanguage::connectionIsDown()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("status: running"));
    QVERIFY(bench.loseLink());
    bench.toggle()->setState(State::Error);
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(), display(State::Error, QStringLiteral("Getrennt"),
                                    inLanguage(QStringLiteral("de"), "Service is not running")));
    QVERIFY(bench.service.received().isEmpty());
}

void tst_MainWindowLanguage::neverConnected()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.shown(), display(State::Off, QStringLiteral("Getrennt"),
                                    inLanguage(QStringLiteral("de"), "Service is not running")));
}

void tst_MainWindowLanguage::unknownTagIsEnglish_data()
{
    QTest::addColumn<QString>("tag");

    QTest::newRow("unknown") << QStringLiteral("xx");
    QTest::newRow("locale's name") << QStringLiteral("de_DE");
    QTest::newRow("capitals") << QStringLiteral("DE");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("path") << QStringLiteral("../i18n/ixovpn_de");
}

void tst_MainWindowLanguage::unknownTagIsEnglish()
{
    QFETCH(QString, tag);
    const WindowBench bench{WindowBench::Service::IsAway};
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(bench.hint()->text(), QStringLiteral("Tippen Sie zum Verbinden"));
    bench.chooseLanguage(tag);
    QCOMPARE(bench.hint()->text(), QStringLiteral("Tap the switch to connect"));
    QCOMPARE(bench.status()->text(), QStringLiteral("Disconnected"));
    QCOMPARE(bench.window->findChildren<QTranslator *>().size(), 1);
}

void tst_MainWindowLanguage::oneTranslatorOfItsOwn()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    const auto own = [&bench] { return bench.window->findChildren<QTranslator *>(); };
    QVERIFY(own().isEmpty());
    bench.chooseLanguage(QStringLiteral("de"));
    QCOMPARE(own().size(), 1);
    const QPointer<QTranslator> first = own().constFirst();
    bench.chooseLanguage(QStringLiteral("ru"));
    QCOMPARE(own().size(), 1);
    QVERIFY(first.isNull());
    bench.chooseLanguage(QStringLiteral("xx"));
    QCOMPARE(own().size(), 1);
}

void tst_MainWindowLanguage::startupTranslatorStays()
{
    QSettings settings;
    settings.setValue(QStringLiteral("language"), QStringLiteral("de"));
    settings.sync();
    app::installStartupTranslator(*qApp);
    const std::unique_ptr<QTranslator> startup{qApp->findChild<QTranslator *>()};
    QVERIFY(startup != nullptr);
    {
        const WindowBench bench{WindowBench::Service::IsAway};
        QCOMPARE(bench.status()->text(), QStringLiteral("Getrennt"));
        bench.chooseLanguage(QStringLiteral("ja"));
        bench.chooseLanguage(QStringLiteral("ru"));
        QCOMPARE(bench.hint()->text(), QStringLiteral("Нажмите, чтобы подключиться"));
        QCOMPARE(qApp->findChildren<QTranslator *>().size(), 1);
        QCOMPARE(bench.window->findChildren<QTranslator *>().size(), 1);
    }
    QCOMPARE(QCoreApplication::translate("MainWindow", "Connected"), QStringLiteral("Verbunden"));
}

void tst_MainWindowLanguage::translatorEndsWithWindow()
{
    {
        const WindowBench bench{WindowBench::Service::IsAway};
        bench.chooseLanguage(QStringLiteral("de"));
        QCOMPARE(QCoreApplication::translate("MainWindow", "Connected"),
                 QStringLiteral("Verbunden"));
    }
    QCOMPARE(QCoreApplication::translate("MainWindow", "Connected"), QStringLiteral("Connected"));
}

void tst_MainWindowLanguage::followsOtherTranslators()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("status: running"));
    QTranslator other;
    QVERIFY(ui::catalogue::load(other, QStringLiteral("de")));
    QVERIFY(QCoreApplication::installTranslator(&other));
    QVERIFY(support::waitFor(
        [&] { return bench.hint()->text() == QStringLiteral("Tippen Sie zum Verbinden"); }));
    QCOMPARE(bench.shown(), display(State::On, QStringLiteral("Verbunden"),
                                    inLanguage(QStringLiteral("de"), "Tunnel up")));
    QVERIFY(QCoreApplication::removeTranslator(&other));
    QVERIFY(
        support::waitFor([&] { return bench.status()->text() == QStringLiteral("Connected"); }));
    QVERIFY(bench.sent().isEmpty());
    QVERIFY(storedLanguage().isEmpty());
}

void tst_MainWindowLanguage::titleStays()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    bench.window->setWindowTitle(earlier);
    bench.title()->setText(earlier);
    bench.chooseLanguage(QStringLiteral("ja"));
    QCOMPARE(bench.window->windowTitle(), QStringLiteral("IXOVPN"));
    QCOMPARE(bench.title()->text(), QStringLiteral("IXOVPN"));
}

QTEST_MAIN(tst_MainWindowLanguage)

#include "tst_mainwindowlanguage.moc"
