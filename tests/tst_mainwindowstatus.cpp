#include "tests/support/WindowBench.h"

#include "ipc/ServiceClient.h"
#include "ui/PillLabel.h"

#include <QAccessible>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

using support::display;
using support::WindowBench;
using State = ui::ToggleSwitch::State;

namespace {

const QByteArray connectLine = QByteArrayLiteral(R"({"cmd":"connect"})");
const QByteArray disconnectLine = QByteArrayLiteral(R"({"cmd":"disconnect"})");

const QString serviceAway = QStringLiteral("Service is not running");
const QString disconnected = QStringLiteral("Disconnected");

/// The lines that bring the switch into a state, with a pill text that no state sets.
struct Way
{
    State state;
    const char *name;
    QList<QByteArray> lines;
    QString status;
};

QList<Way> everyState()
{
    const QByteArray pill = QByteArrayLiteral("config-bytes: 42");
    return {
        {State::Off, "off", {"status: stopped", pill}, disconnected},
        {State::Connecting,
         "connecting",
         {"status: starting", pill},
         QStringLiteral("Connecting…")},
        {State::On, "on", {"status: running", pill}, QStringLiteral("Connected")},
        {State::Disconnecting,
         "disconnecting",
         {"status: stopping", pill},
         QStringLiteral("Disconnecting…")},
        {State::Error, "error", {"error: broken", pill}, QStringLiteral("Error")},
    };
}

QString earlierPill()
{
    return QStringLiteral("Config 42 bytes");
}

/// Marks a cell of the table in which nothing happens.
QString unchanged()
{
    return {};
}

} // namespace

Q_DECLARE_METATYPE(ui::ToggleSwitch::State)
Q_DECLARE_METATYPE(Way)

class tst_MainWindowStatus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void initialDisplay();
    void messages_data();
    void messages();
    void meaninglessLines_data();
    void meaninglessLines();
    void hintNeverChanges();
    void shownAsItCame_data();
    void shownAsItCame();
    void linesInManyPieces();
    void readersHearTheSwitch_data();
    void readersHearTheSwitch();

    void clickWithConnection_data();
    void clickWithConnection();
    void secondClickIsIgnored();
    void clickWithoutService();
    void clickWithoutConnection_data();
    void clickWithoutConnection();
    void clickIsCorrectedByService();

    void connectionLoss_data();
    void connectionLoss();
};

void tst_MainWindowStatus::init()
{
    WindowBench::resetWorld();
}

void tst_MainWindowStatus::initialDisplay()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    QCOMPARE(bench.shown(),
             display(State::Off, disconnected, QStringLiteral("Waiting for service…")));
    QCOMPARE(bench.hint()->text(), QStringLiteral("Tap the switch to connect"));
}

void tst_MainWindowStatus::messages_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<State>("state");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("pill");

    const auto row = [](const char *line, State state, const char *status, const QString &pill) {
        QTest::newRow(line) << QByteArray{line} << state << QString::fromUtf8(status) << pill;
    };
    row("status: running", State::On, "Connected", QStringLiteral("Tunnel up"));
    row("status: fetching", State::Connecting, "Connecting…", QStringLiteral("Fetching config…"));
    row("status: connecting", State::Connecting, "Connecting…", unchanged());
    row("status: stopping", State::Disconnecting, "Disconnecting…", unchanged());
    row("status: disconnected", State::Off, "Disconnected", QStringLiteral("Idle"));
    row("status: subscription_expired", State::Error, "Error",
        QStringLiteral("Subscription expired"));
    row("status: failed: timeout", State::Error, "Failed", QStringLiteral("failed: timeout"));
    row("status: running\r", State::On, "Connected", QStringLiteral("Tunnel up"));
    row(" \t status: running \t ", State::On, "Connected", QStringLiteral("Tunnel up"));

    row("error: no route", State::Error, "Error", QStringLiteral("no route"));
}

void tst_MainWindowStatus::messages()
{
    QFETCH(QByteArray, line);
    QFETCH(State, state);
    QFETCH(QString, status);
    QFETCH(QString, pill);

    WindowBench bench;
    QVERIFY(bench.greeted());
    // Begins with two displays, at least one of which differs in everything from what the line
    // shows.
    const QList<QList<QByteArray>> beginnings = {
        {"status: running", "config-bytes: 42"},
        {"error: broken", "config-bytes: 43"},
        {"status: stopped", "config-bytes: 44"},
    };
    for (const QList<QByteArray> &beginning : beginnings) {
        QVERIFY(bench.say(beginning));
        const QString before = bench.pill()->text();
        QVERIFY(bench.say(line));
        QCOMPARE(bench.shown(), display(state, status, pill == unchanged() ? before : pill));
    }
    QVERIFY(bench.sent().isEmpty());
}

void tst_MainWindowStatus::meaninglessLines_data()
{
    QTest::addColumn<QByteArray>("line");

    const auto row = [](const char *name, const char *line) {
        QTest::newRow(name) << QByteArray{line};
    };
    row("nothing", "");
    row("unknown word", "status: xyzzy");
    row("no blank after the prefix", "status:running");
    row("own command", R"({"cmd":"connect"})");
    row("no text at all", "\xff\xfe\x01\x02");
}

void tst_MainWindowStatus::meaninglessLines()
{
    QFETCH(QByteArray, line);

    WindowBench bench;
    QVERIFY(bench.greeted());
    const QList<Way> ways = everyState();
    for (const Way &way : ways) {
        QVERIFY(bench.say(way.lines));
        QVERIFY(bench.say(line));
        QCOMPARE(bench.shown(), display(way.state, way.status, earlierPill()));
    }
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    QVERIFY(bench.sent().isEmpty());
}

void tst_MainWindowStatus::hintNeverChanges()
{
    WindowBench bench;
    const QString hint = QStringLiteral("Tap the switch to connect");
    QVERIFY(bench.greeted());
    const QList<Way> ways = everyState();
    for (const Way &way : ways) {
        QVERIFY(bench.say(way.lines));
        QCOMPARE(bench.hint()->text(), hint);
        bench.click();
        QCOMPARE(bench.hint()->text(), hint);
    }
    QVERIFY(bench.loseLink());
    QCOMPARE(bench.hint()->text(), hint);
}

void tst_MainWindowStatus::shownAsItCame_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("pill");

    const auto row = [](const char *name, const char *line, const char *pill) {
        QTest::newRow(name) << QByteArray{line} << QString::fromUtf8(pill);
    };
    row("bold", "error: <b>loud</b>", "<b>loud</b>");
    row("ampersand", "error: a && &b", "a && &b");
    row("placeholder", "error: %1 of %2", "%1 of %2");
    row("size of a placeholder", "config-bytes: %1", "Config %1 bytes");
    row("size of other placeholders", "config-bytes: %2 %L1 %%", "Config %2 %L1 %% bytes");
    row("right to left", "error: שגיאה 12", "שגיאה 12");
    row("beyond the basic plane", "error: \xf0\x9f\x94\x92", "🔒");
    row("broken bytes",
        "error: a\xff"
        "b",
        "a\uFFFDb");
}

void tst_MainWindowStatus::shownAsItCame()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, pill);

    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say(line));
    QCOMPARE(bench.pill()->text(), pill);
    QCOMPARE(bench.pill()->textFormat(), Qt::PlainText);
    QVERIFY(QTest::qWaitForWindowExposed(bench.window.get()));
    QVERIFY(support::waitFor([&] { return bench.pill()->shownText() == pill; }));
}

void tst_MainWindowStatus::linesInManyPieces()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    const QByteArray bytes = QByteArrayLiteral("status: running\r\nconfig-bytes: 5\n");
    for (const char byte : bytes) {
        bench.service.write(QByteArray(1, byte));
        QCoreApplication::processEvents();
    }
    QVERIFY(
        support::waitFor([&] { return bench.pill()->text() == QStringLiteral("Config 5 bytes"); }));
    QCOMPARE(bench.status()->text(), QStringLiteral("Connected"));
}

void tst_MainWindowStatus::readersHearTheSwitch_data()
{
    QTest::addColumn<Way>("way");

    const QList<Way> ways = everyState();
    for (const Way &way : ways) {
        QTest::newRow(way.name) << way;
    }
}

void tst_MainWindowStatus::readersHearTheSwitch()
{
    QFETCH(Way, way);
    const bool changing = way.state == State::Connecting || way.state == State::Disconnecting;
    const bool checked = way.state == State::On || way.state == State::Disconnecting;

    WindowBench bench;
    QVERIFY(bench.greeted());
    // Begins in another state, so that this state is not the first one that is announced.
    QVERIFY(bench.say(way.state == State::On ? "status: stopped" : "status: running"));
    QVERIFY(bench.say(way.lines));

    const QAccessibleInterface *const heard = QAccessible::queryAccessibleInterface(bench.toggle());
    QVERIFY(heard != nullptr);
    QCOMPARE(heard->role(), QAccessible::CheckBox);
    QCOMPARE(heard->text(QAccessible::Description), way.status);
    const QAccessible::State state = heard->state();
    QVERIFY(state.checkable != 0);
    QCOMPARE(state.checked != 0, checked);
    QCOMPARE(state.busy != 0, changing);
    QCOMPARE(state.disabled != 0, changing);
}

void tst_MainWindowStatus::clickWithConnection_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<State>("state");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QList<QByteArray>>("sent");

    const QList<Way> ways = everyState();
    for (const Way &way : ways) {
        const auto row = [&way](State state, const QString &status, const QList<QByteArray> &sent) {
            QTest::newRow(way.name) << way << state << status << sent;
        };
        switch (way.state) {
        case State::Off:
        case State::Error:
            row(State::Connecting, QStringLiteral("Connecting…"), {connectLine});
            break;
        case State::On:
            row(State::Disconnecting, QStringLiteral("Disconnecting…"), {disconnectLine});
            break;
        case State::Connecting:
        case State::Disconnecting:
            row(way.state, way.status, {});
            break;
        }
    }
}

void tst_MainWindowStatus::clickWithConnection()
{
    QFETCH(Way, way);
    QFETCH(State, state);
    QFETCH(QString, status);
    QFETCH(QList<QByteArray>, sent);

    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say(way.lines));
    bench.click();
    QCOMPARE(bench.shown(), display(state, status, earlierPill()));
    QCOMPARE(bench.sent(), sent);

    // During a change, the window ignores even a toggled() signal.
    if (sent.isEmpty()) {
        Q_EMIT bench.toggle()->toggled();
        QCOMPARE(bench.shown(), display(state, status, earlierPill()));
        QVERIFY(bench.sent().isEmpty());
    }
}

void tst_MainWindowStatus::secondClickIsIgnored()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    bench.click();
    bench.click();
    QCOMPARE(bench.toggle()->state(), State::Connecting);
    QCOMPARE(bench.sent(), QList<QByteArray>{connectLine});
}

void tst_MainWindowStatus::clickWithoutService()
{
    const WindowBench bench{WindowBench::Service::IsAway};
    bench.click();
    QCOMPARE(bench.shown(), display(State::Off, disconnected, serviceAway));
}

void tst_MainWindowStatus::clickWithoutConnection_data()
{
    QTest::addColumn<State>("state");

    const QList<Way> ways = everyState();
    for (const Way &way : ways) {
        QTest::newRow(way.name) << way.state;
    }
}

void tst_MainWindowStatus::clickWithoutConnection()
{
    QFETCH(State, state);

    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.loseLink());
    bench.toggle()->setState(state);
    bench.status()->setText(QStringLiteral("as before"));
    bench.pill()->setText(QStringLiteral("earlier"));
    Q_EMIT bench.toggle()->toggled();
    QCOMPARE(bench.shown(), display(state, QStringLiteral("as before"), serviceAway));
}

void tst_MainWindowStatus::clickIsCorrectedByService()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say("status: running"));
    bench.click();
    QCOMPARE(bench.toggle()->state(), State::Disconnecting);
    QVERIFY(bench.say("status: running"));
    QCOMPARE(bench.shown(),
             display(State::On, QStringLiteral("Connected"), QStringLiteral("Tunnel up")));
    bench.click();
    QCOMPARE(bench.sent(), (QList<QByteArray>{disconnectLine, disconnectLine}));
}

void tst_MainWindowStatus::connectionLoss_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<bool>("reset");

    const QList<Way> ways = everyState();
    for (const Way &way : ways) {
        QTest::addRow("%s, closed", way.name) << way << false;
        QTest::addRow("%s, reset", way.name) << way << true;
    }
}

void tst_MainWindowStatus::connectionLoss()
{
    QFETCH(Way, way);
    QFETCH(bool, reset);

    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.say(way.lines));
    QCOMPARE(bench.shown(), display(way.state, way.status, earlierPill()));

    const QSignalSpy changes{bench.client(), &ipc::ServiceClient::connectionChanged};
    if (reset) {
        bench.service.reset();
    } else {
        bench.service.close();
    }
    QVERIFY(support::waitFor([&] { return !changes.isEmpty(); }));
    QCOMPARE(bench.shown(), display(State::Off, disconnected, serviceAway));
}

QTEST_MAIN(tst_MainWindowStatus)

#include "tst_mainwindowstatus.moc"
