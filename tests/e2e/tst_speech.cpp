#include "tests/support/ClientSession.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <memory>

using support::ClientSession;
using support::waitFor;

namespace {

constexpr QPoint besideTheMenu{340, 300};

QString logFile()
{
    return QDir::homePath() + QStringLiteral("/speech");
}

} // namespace

/// What a screen reader in wide use says of the program while somebody uses it.
class tst_Speech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void statusIsReadOutWhenItChanges();
    void copyButtonIsReadOutOnce();

private:
    /// What it has said, since it was started, that contains these words.
    static QStringList said(const QString &words);
    [[nodiscard]] static bool says(const QString &words);

    std::unique_ptr<ClientSession> desktop;
};

void tst_Speech::initTestCase()
{
    desktop = std::make_unique<ClientSession>();
    desktop->startSessionBus();
    desktop->setVariable(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    desktop->start(QStringLiteral("/usr/libexec/at-spi-bus-launcher"),
                   {QStringLiteral("--launch-immediately")});
    desktop->keepAll();

    // Its log would keep back what it has said last.
    const QString folder = QDir::homePath() + QStringLiteral("/.local/share/orca");
    QVERIFY(QDir::root().mkpath(folder));
    QFile settings{folder + QStringLiteral("/orca-customizations.py")};
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("from orca import debug\ndebug.debugFile.reconfigure(line_buffering=True)\n");
}

void tst_Speech::init()
{
    QFile::remove(logFile());
    desktop->start(QStringLiteral("orca"), {QStringLiteral("--debug-file=") + logFile()});
    QVERIFY(says(QStringLiteral("Screen reader on")));
    desktop->service.listen();
    QVERIFY(desktop->startLinkedClient());
    QVERIFY(says(QStringLiteral("Tunnel up")));
    QVERIFY(says(QStringLiteral("Settings, Referral Code, Support, Exit")));
}

void tst_Speech::cleanup()
{
    desktop->stopAll();
    desktop->service.stop();
}

void tst_Speech::cleanupTestCase()
{
    desktop.reset();
}

QStringList tst_Speech::said(const QString &words)
{
    QFile log{logFile()};
    if (!log.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QStringList lines = QString::fromUtf8(log.readAll()).split(QLatin1Char{'\n'});
    return lines.filter(QStringLiteral("SPEECH OUTPUT: ")).filter(words);
}

bool tst_Speech::says(const QString &words)
{
    return waitFor([&] { return !said(words).isEmpty(); });
}

void tst_Speech::statusIsReadOutWhenItChanges()
{
    QVERIFY(desktop->openMenu());
    QVERIFY(desktop->use(besideTheMenu));
    QVERIFY(desktop->openPage(ClientSession::settingsRow));
    QVERIFY(desktop->use(ClientSession::backButton));
    const auto dialog = desktop->openReferral();
    QVERIFY(dialog != 0);
    QVERIFY(says(QStringLiteral("Enter your referral code")));
    QVERIFY(desktop->closeDialog(dialog));

    // What changes behind a page is told when the page has gone.
    QVERIFY(desktop->openPage(ClientSession::supportRow));
    desktop->service.sendLine("error: no route");
    QVERIFY(desktop->use(ClientSession::backButton));
    QVERIFY(says(QStringLiteral("no route")));

    // It speaks in the order in which things happen: all before this has been said.
    desktop->service.sendLine("status: stopped");
    QVERIFY(says(QStringLiteral("Idle")));
    for (const char *status : {"Connected", "Tunnel up", "no route", "Idle"}) {
        const QStringList all = said(QString::fromLatin1(status));
        QVERIFY2(all.size() == 1, qPrintable(all.join(QLatin1Char{'\n'})));
    }
}

void tst_Speech::copyButtonIsReadOutOnce()
{
    QVERIFY(desktop->openPage(ClientSession::supportRow));
    // Past the link.
    desktop->pressKey(QStringLiteral("Tab"));
    desktop->pressKey(QStringLiteral("Tab"));
    QVERIFY(says(QStringLiteral(IXOVPN_VERSION)));
    QCOMPARE(said(QStringLiteral(IXOVPN_VERSION)).constFirst().count(QStringLiteral("Version:")),
             1);
}

QTEST_GUILESS_MAIN(tst_Speech)

#include "tst_speech.moc"
