#include "tests/support/ClientProcess_win.h"
#include "tests/support/ScriptedService.h"
#include "tests/support/WindowBench.h"

#include <QTest>

using support::ClientProcess;
using support::waitFor;

namespace {

enum class Seen { Shown, Hidden, WithDialog };

} // namespace

Q_DECLARE_METATYPE(Seen)

/// The system asks each program to end: when the user logs off or shuts down, and before it
/// replaces the program by another version.
class tst_SystemRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void programEnds_data();
    void programEnds();
    void programGoesOnWhenTheSystemDoes();
};

void tst_SystemRequests::programEnds_data()
{
    QTest::addColumn<LPARAM>("reason");
    QTest::addColumn<Seen>("seen");
    const auto logOff = static_cast<LPARAM>(ENDSESSION_LOGOFF);
    QTest::newRow("shut down") << LPARAM{0} << Seen::Shown;
    QTest::newRow("log off") << logOff << Seen::Shown;
    QTest::newRow("log off, in the tray") << logOff << Seen::Hidden;
    QTest::newRow("log off, in a dialog") << logOff << Seen::WithDialog;
    QTest::newRow("upgrade") << LPARAM{ENDSESSION_CLOSEAPP} << Seen::Shown;
    QTest::newRow("upgrade, in the tray") << LPARAM{ENDSESSION_CLOSEAPP} << Seen::Hidden;
    QTest::newRow("upgrade, in a dialog") << LPARAM{ENDSESSION_CLOSEAPP} << Seen::WithDialog;
}

void tst_SystemRequests::programEnds()
{
    QFETCH(const LPARAM, reason);
    QFETCH(const Seen, seen);
    support::ScriptedService service;
    service.listen();
    ClientProcess client;
    QVERIFY(client.comesUp());
    if (seen == Seen::Hidden) {
        client.close();
        QVERIFY(waitFor([&] { return !client.isShown(); }));
    } else if (seen == Seen::WithDialog) {
        QVERIFY(waitFor([&] { return service.accepted() > 0; }));
        service.sendLine("notice: Something has happened");
        QVERIFY(waitFor([&] { return client.popup() != nullptr; }));
    }
    QVERIFY(client.agreesToEnd(reason));
    client.tellToEnd(reason);
    QCOMPARE(client.exitCode(), 0);
}

void tst_SystemRequests::programGoesOnWhenTheSystemDoes()
{
    ClientProcess client;
    QVERIFY(client.comesUp());
    // Another program says no, again and again.
    for (int i = 0; i < 3; ++i) {
        QVERIFY(client.agreesToEnd(0));
        QVERIFY(client.isShown());
        client.tellToGoOn(0);
        QVERIFY(client.comesUp());
    }
    QVERIFY(client.agreesToEnd(0));
    client.tellToEnd(0);
    QCOMPARE(client.exitCode(), 0);
}

QTEST_MAIN(tst_SystemRequests)

#include "tst_systemrequests_win.moc"
