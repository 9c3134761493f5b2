#include "ipc/Protocol.h"
#include "ui/Display.h"

#include <QMetaEnum>
#include <QTest>

using State = ui::ToggleSwitch::State;

namespace {

/// A display as one line of text: the switch's state and word, then the pill.
QString described(const ui::Display &display)
{
    QStringList parts;
    if (display.state) {
        parts += QLatin1String{QMetaEnum::fromType<State>().valueToKey(
                     static_cast<int>(display.state->toggle))} +
                 QLatin1Char{' '} + QString::fromUtf8(display.state->status);
    }
    if (display.pill) {
        parts += QStringLiteral("[%1|%2]").arg(QString::fromUtf8(display.pill->text),
                                               display.pill->value);
    }
    return parts.join(QLatin1Char{' '});
}

QString shownFor(const QString &line)
{
    return described(ui::displayOf(ipc::protocol::parseMessage(line)));
}

} // namespace

class tst_Display : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void displayOf_data();
    void displayOf();
    void laterOneCoversWhatItSets();
};

void tst_Display::displayOf_data()
{
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *line, const char *expected) {
        QTest::newRow(line) << QString::fromUtf8(expected);
    };
    row("status: running", "On Connected [Tunnel up|]");
    row("status: fetching", "Connecting Connecting… [Fetching config…|]");
    row("status: fetching-config", "Connecting Connecting… [Fetching config…|]");
    row("status: fetching config", "Connecting Connecting… [Fetching config…|]");
    row("status: starting", "Connecting Connecting…");
    row("status: connecting", "Connecting Connecting…");
    row("status: stopping", "Disconnecting Disconnecting…");
    row("status: stopped", "Off Disconnected [Idle|]");
    row("status: disconnected", "Off Disconnected [Idle|]");
    row("status: subscription_expired", "Error Error [Subscription expired|]");
    row("status: failed", "Error Failed [|failed]");
    row("status: failed: timeout", "Error Failed [|failed: timeout]");
    row("status: failed%1 <b>", "Error Failed [|failed%1 <b>]");

    row("error: no route", "Error Error [|no route]");
    row("error: subscription_expired", "Error Error [Subscription expired|]");
    row("error: Subscription_expired", "Error Error [|Subscription_expired]");
    row("error: subscription_expired.", "Error Error [|subscription_expired.]");
    row("error:  subscription_expired", "Error Error [| subscription_expired]");
    row("error: status: running", "Error Error [|status: running]");
    row("error: Connected", "Error Error [|Connected]");

    row("config-bytes: 2048", "[Config %1 bytes|2048]");
    row("config-bytes: 12k", "[Config %1 bytes|12k]");
    row("config-bytes:   7", "[Config %1 bytes|  7]");

    for (const char *const meaningless : {"status:running",
                                          "Status: running",
                                          "status: Running",
                                          "status:  running",
                                          "status: running now",
                                          "status: starting up",
                                          "status: connecting...",
                                          "status: stopped.",
                                          "status: fetchin",
                                          "status: Failed",
                                          "status: subscription_expired!",
                                          "status: xyzzy",
                                          "status: Connected",
                                          "error:",
                                          "Error: no route",
                                          "config-bytes:",
                                          "config-bytes:7",
                                          "Config-bytes: 7",
                                          "notice:hello",
                                          "notice: hello",
                                          "x status: running",
                                          R"({"cmd":"connect"})"}) {
        row(meaningless, "");
    }
}

void tst_Display::displayOf()
{
    QTEST(shownFor(QString::fromUtf8(QTest::currentDataTag())), "expected");
}

void tst_Display::laterOneCoversWhatItSets()
{
    const auto of = [](const char *line) {
        return ui::displayOf(ipc::protocol::parseMessage(QString::fromLatin1(line)));
    };
    ui::Display display = of("status: running");
    display.add(of("config-bytes: 42"));
    QCOMPARE(described(display), QStringLiteral("On Connected [Config %1 bytes|42]"));
    display.add(of("status: stopping"));
    QCOMPARE(described(display),
             QStringLiteral("Disconnecting Disconnecting… [Config %1 bytes|42]"));
    display.add(of("notice: hello"));
    QCOMPARE(described(display),
             QStringLiteral("Disconnecting Disconnecting… [Config %1 bytes|42]"));
    display.add(of("error: no route"));
    QCOMPARE(described(display), QStringLiteral("Error Error [|no route]"));
}

QTEST_APPLESS_MAIN(tst_Display)

#include "tst_display.moc"
