#include "tests/support/ClientSession.h"
#include "tests/support/StoredSettings.h"

#include <QDir>
#include <QTest>

#include <memory>

using support::askStatus;
using support::ClientSession;
using support::copyButtons;
using support::Desktop;
using support::setLanguage;
using support::setReferral;
using support::StoredSettings;
using support::waitFor;

namespace {

constexpr int hugeValue = 10'000'000;

} // namespace

/// The real program with settings that cannot be written, or that no client has written.
class tst_OddSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void storeThatCannotBeWritten_data();
    void storeThatCannotBeWritten();
    void oddValues_data();
    void oddValues();
    void typesOfOtherPrograms();
    void hugeValues();

private:
    /// Ends on the settings page.
    static bool everyPlaceOpens(ClientSession &session);

    std::unique_ptr<ClientSession> desktop;
};

void tst_OddSettings::initTestCase()
{
    desktop = std::make_unique<ClientSession>();
    desktop->hurry();
}

void tst_OddSettings::cleanup()
{
    desktop->stopAll();
    desktop->service.stop();
}

void tst_OddSettings::cleanupTestCase()
{
    desktop.reset();
}

void tst_OddSettings::init()
{
    StoredSettings::ofClient().forget();
    StoredSettings::ofService().forget();
}

bool tst_OddSettings::everyPlaceOpens(ClientSession &session)
{
    if (!session.openPage(ClientSession::supportRow) || !session.use(ClientSession::backButton)) {
        return false;
    }
    const Desktop::Window dialog = session.openReferral();
    return dialog != 0 && session.closeDialog(dialog) &&
           session.openPage(ClientSession::settingsRow);
}

void tst_OddSettings::storeThatCannotBeWritten_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QByteArray>("seal");

    const auto row = [](const char *name, const QByteArray &stored, const QByteArray &seal) {
        QTest::newRow(name) << stored << seal;
    };
    const QByteArray some = "language=de\nreferral_code=ABC123\n";
    // Root in a user namespace cannot remount the file system, only the bind mount.
    const QByteArray readOnly = "mount -o remount,bind,ro /tmp/sealed";
    const QByteArray full = "dd if=/dev/zero of=/tmp/sealed/ballast bs=4096; test $? -ne 0";
    row("read-only", some, readOnly);
    row("read-only, nothing stored", "", readOnly);
    row("full disk", some, full);
    row("full disk, nothing stored", "", full);
}

// A choice holds until the client ends, the service hears of it, and the file stays as it was.
void tst_OddSettings::storeThatCannotBeWritten()
{
    QFETCH(QByteArray, stored);
    QFETCH(QByteArray, seal);
    if (!support::ownsItsWorld()) {
        QSKIP("Without file systems of its own it can neither fill nor seal one");
    }
    const QByteArray tag = stored.isEmpty() ? "en" : "de";
    const QString home = QStringLiteral("/tmp/sealed");
    const auto shell = [](const Desktop &on, const QString &command) {
        return on.run(QStringLiteral("sh"), {QStringLiteral("-c"), command}).exitCode;
    };
    ClientSession &session = *desktop;
    QDir::root().mkpath(home);
    QCOMPARE(shell(session, QStringLiteral("mount -t tmpfs -o size=1m none ") + home), 0);
    const StoredSettings store = StoredSettings::ofClient(home);
    if (!stored.isEmpty()) {
        store.fill(stored);
    }
    const QByteArray before = store.text();
    QCOMPARE(shell(session, QString::fromLatin1(seal)), 0);
    session.setVariable(QStringLiteral("HOME"), home);

    session.service.listen();
    QVERIFY(session.startLinkedClient());
    QVERIFY(session.hasReceived(setLanguage(tag)));
    const QImage inFormer = session.still(session.window);
    QVERIFY(session.openPage(ClientSession::settingsRow));
    session.chooseLanguage(1);
    QVERIFY(waitFor([&] { return session.hasReceived(setLanguage("ru")); }));
    QVERIFY(session.still(session.window) != inFormer);
    const Desktop::Window dialog = session.openReferral();
    QVERIFY(dialog != 0);
    session.pressKey(QStringLiteral("ctrl+a"));
    session.type(QStringLiteral("XYZ789"));
    session.pressKey(QStringLiteral("Return"));
    QVERIFY(waitFor([&] { return session.hasReceived(setReferral("XYZ789")); }));
    QVERIFY(session.isGone(dialog));
    session.service.clear();
    session.service.close();
    QVERIFY(waitFor([&] { return session.hasReceived(askStatus()); }));
    QCOMPARE(session.service.lines(),
             (QList{setLanguage("ru"), setReferral("XYZ789"), askStatus()}));
    QCOMPARE(store.text(), before);

    session.killClient();
    QVERIFY(session.startLinkedClient());
    QVERIFY(session.hasReceived(setLanguage(tag)));
    QCOMPARE(session.hasReceived(setReferral("ABC123")), !stored.isEmpty());
    session.killClient();
    session.setVariable(QStringLiteral("HOME"), QDir::homePath());
    QCOMPARE(shell(session, QStringLiteral("umount ") + home), 0);
}

void tst_OddSettings::oddValues_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QByteArray>("tag");
    QTest::newRow("lists") << QByteArrayLiteral("language=de, ru\nreferral_code=ABC123, XYZ789\n")
                           << QByteArrayLiteral("en");
    QTest::newRow("bytes") << QByteArrayLiteral("language=@ByteArray(ru)\nreferral_code=@Rect(1 2 "
                                                "3 4)\n")
                           << QByteArrayLiteral("ru");
    QTest::newRow("broken variants")
        << QByteArrayLiteral("language=@Variant(\\0\\0\\0\\xff)\nreferral_code=@Variant(x\n")
        << QByteArrayLiteral("en");
    QTest::newRow("zeros") << QByteArrayLiteral("language=\\0\nreferral_code=ABC12\\0\n")
                           << QByteArrayLiteral("\\u0000");
    QTest::newRow("not settings") << QByteArrayLiteral("\xff\xfe\x00[[[\n===\n")
                                  << QByteArrayLiteral("en");
}

void tst_OddSettings::oddValues()
{
    QFETCH(QByteArray, lines);
    QFETCH(QByteArray, tag);
    StoredSettings::ofClient().fill(lines);
    StoredSettings::ofService().fill(lines + "client_id=1, 2, 3\n");
    ClientSession &session = *desktop;
    session.service.listen();
    QVERIFY(session.startLinkedClient());
    QCOMPARE(session.service.lines(), (QList{setLanguage(tag), askStatus()}));
    QVERIFY(everyPlaceOpens(session));
    session.chooseLanguage(5);
    QVERIFY(waitFor([&] { return session.hasReceived(setLanguage("it")); }));
    QCOMPARE(StoredSettings::ofClient().value("language"), QStringLiteral("it"));
}

void tst_OddSettings::typesOfOtherPrograms()
{
    const QByteArray others =
        "seen=@DateTime(\\0\\0\\0\\x10\\0\\0\\0\\0\\0%\\x8b\\x1b\\0\\0\\0\\0\\0)\n"
        "places=@Variant(\\0\\0\\0\\b\\0\\0\\0\\0)\n";
    const QByteArray own = "language=de\nreferral_code=ABC123\n" + others;
    StoredSettings::ofClient().fill(own);
    StoredSettings::ofService().fill("client_id=1234\n" + others);
    ClientSession &session = *desktop;
    session.service.listen();
    QVERIFY(session.startLinkedClient());
    QCOMPARE(session.service.lines(),
             (QList{setLanguage("de"), setReferral("ABC123"), askStatus()}));
    QVERIFY(session.openPage(ClientSession::supportRow));
    // The rows are version, ID and code.
    QCOMPARE(copyButtons(session.still(session.window)).size(), 3);
    QVERIFY(StoredSettings::ofClient().text().endsWith(own));
}

void tst_OddSettings::hugeValues()
{
    const QByteArray huge(hugeValue, 'a');
    StoredSettings::ofClient().fill("language=" + huge + "\nreferral_code=" + huge + '\n');
    StoredSettings::ofService().fill("client_id=" + huge + '\n');
    ClientSession &session = *desktop;
    session.service.listen();
    QVERIFY(session.startLinkedClient());
    QVERIFY(session.service.lines() == (QList{setLanguage(huge), askStatus()}));
    QVERIFY(session.openPage(ClientSession::supportRow));
    const QList<QPoint> buttons = copyButtons(session.still(session.window));
    QCOMPARE(buttons.size(), 2);
    session.click(session.at(buttons.last()));
    QVERIFY(session.pastes(huge));
    QVERIFY(session.use(ClientSession::backButton));
    QVERIFY(everyPlaceOpens(session));
    session.chooseLanguage(4);
    QVERIFY(waitFor([&] { return session.hasReceived(setLanguage("es")); }));
    QCOMPARE(StoredSettings::ofClient().value("language"), QStringLiteral("es"));
}

QTEST_GUILESS_MAIN(tst_OddSettings)

#include "tst_oddsettings.moc"
