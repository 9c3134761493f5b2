#include "ipc/ServiceClient.h"
#include "tests/support/ScriptedService.h"
#include "ui/MainWindow.h"
#include "ui/NoticeDialog.h"
#include "ui/ToggleSwitch.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QLabel>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

#include <array>

using support::ScriptedService;
using ui::ToggleSwitch;

/// Lines that arrive together: the first of them are never painted, but the last must leave the
/// window as if each had come alone.
class tst_MainWindowBurst : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsLikeSingleLines();
    void showsBeforeANoticeOpens();
    void remembersWhatWasCoveredUp();
    void promiseOfMoreIsKept();
};

namespace {

// Only a test that fails anyway waits this long.
constexpr int patienceMs = 30'000;

constexpr int bursts = 400;
constexpr int longestBurst = 6;
constexpr quint32 seed = 20261120;

const std::array<QByteArray, 15> vocabulary{
    "status: running",       "status: fetching-config", "status: starting",
    "status: connecting",    "status: stopping",        "status: stopped",
    "status: disconnected",  "status: failed: timeout", "status: subscription_expired",
    "status: something new", "error: no route",         "error: subscription_expired",
    "config-bytes: 2048",    "config-bytes: 17",        "nonsense"};

ipc::ServiceClient *clientOf(const MainWindow &window)
{
    return window.findChild<ipc::ServiceClient *>();
}

QStringList looks(const MainWindow &window)
{
    const auto text = [&window](const char *name) {
        return window.findChild<QLabel *>(QLatin1String{name})->text();
    };
    return {QString::number(static_cast<int>(window.findChild<ToggleSwitch *>()->state())),
            text("status"), text("pill")};
}

// A change of language shows what the window remembers besides what it shows.
QStringList looksInAnotherLanguage(MainWindow &window)
{
    QEvent change{QEvent::LanguageChange};
    QCoreApplication::sendEvent(&window, &change);
    return looks(window);
}

bool connectTo(ScriptedService &service)
{
    return QTest::qWaitFor([&service] { return service.received().contains("status"); },
                           patienceMs);
}

} // namespace

void tst_MainWindowBurst::endsLikeSingleLines()
{
    ScriptedService service;
    service.listen();
    // Has a connection too, but gets each line by a call of its slot.
    MainWindow single;
    QVERIFY(connectTo(service));
    service.clear();
    MainWindow window;
    QVERIFY(connectTo(service));

    int reported = 0;
    connect(clientOf(window), &ipc::ServiceClient::messageReceived, this,
            [&reported] { ++reported; });

    QRandomGenerator random{seed};
    for (int burst = 0; burst < bursts; ++burst) {
        QByteArray lines;
        const int size = random.bounded(1, longestBurst + 1);
        for (int i = 0; i < size; ++i) {
            const QByteArray &line = vocabulary[random.bounded(quint32{vocabulary.size()})];
            lines += line + '\n';
            QVERIFY(QMetaObject::invokeMethod(&single, "onServiceMessage",
                                              Q_ARG(QString, QString::fromLatin1(line))));
        }
        reported = 0;
        service.write(lines);
        QTRY_COMPARE_WITH_TIMEOUT(reported, size, patienceMs);
        QVERIFY2(looks(window) == looks(single), lines.constData());
        // Only every third time, since a change of language hides what was shown before.
        if (burst % 3 == 0) {
            QVERIFY2(looksInAnotherLanguage(window) == looksInAnotherLanguage(single),
                     lines.constData());
        }
    }
}

void tst_MainWindowBurst::showsBeforeANoticeOpens()
{
    ScriptedService service;
    service.listen();
    MainWindow window;
    QVERIFY(connectTo(service));
    QStringList whileOpen;
    QTimer dialogs;
    connect(&dialogs, &QTimer::timeout, &window, [&window, &whileOpen] {
        if (auto *const dialog = window.findChild<ui::NoticeDialog *>(); dialog != nullptr) {
            whileOpen = looks(window);
            dialog->accept();
        }
    });
    dialogs.start(0);
    service.write("status: running\nnotice: Hello\n");
    QTRY_VERIFY_WITH_TIMEOUT(!whileOpen.isEmpty(), patienceMs);
    QCOMPARE(whileOpen.at(1), QStringLiteral("Connected"));
}

void tst_MainWindowBurst::remembersWhatWasCoveredUp()
{
    ScriptedService service;
    service.listen();
    MainWindow window;
    QVERIFY(connectTo(service));
    service.write("status: running\nerror: no route\n");
    QTRY_COMPARE_WITH_TIMEOUT(looks(window).at(2), QStringLiteral("no route"), patienceMs);
    QCOMPARE(looksInAnotherLanguage(window).at(1), QStringLiteral("Connected"));
}

void tst_MainWindowBurst::promiseOfMoreIsKept()
{
    constexpr int lines = 20'000;
    ScriptedService service;
    service.listen();
    ipc::ServiceClient client{nullptr};
    int reported = 0;
    int promises = 0;
    int broken = 0;
    bool promised = false;
    connect(&client, &ipc::ServiceClient::messageReceived, this, [&] {
        ++reported;
        promised = client.hasPendingLine();
        promises += promised ? 1 : 0;
    });
    connect(QCoreApplication::eventDispatcher(), &QAbstractEventDispatcher::aboutToBlock, this,
            [&] { broken += promised ? 1 : 0; });
    connect(QCoreApplication::eventDispatcher(), &QAbstractEventDispatcher::awake, this,
            [&] { broken += promised ? 1 : 0; });
    client.connectToService();
    QTRY_COMPARE_WITH_TIMEOUT(service.connected(), 1, patienceMs);
    service.write(QByteArray{"line\n"}.repeated(lines));
    QTRY_COMPARE_WITH_TIMEOUT(reported, lines, patienceMs);
    QCOMPARE(broken, 0);
    QVERIFY(!promised);
    QVERIFY(promises > 0);
    QVERIFY(!client.hasPendingLine());
}

QTEST_MAIN(tst_MainWindowBurst)
#include "tst_mainwindowburst.moc"
