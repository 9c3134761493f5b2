#include "tests/support/ClientSession.h"
#include "tests/support/Languages.h"
#include "tests/support/StatusPanel.h"
#include "tests/support/StoredSettings.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using support::askStatus;
using support::ClientSession;
using support::copyButtons;
using support::setLanguage;
using support::setReferral;
using support::StatusPanel;
using support::StoredSettings;
using support::waitFor;

namespace {

using Window = support::Desktop::Window;

constexpr QPoint languageList{200, 128};

// The caption of the settings page keeps the language in which the window was made.
constexpr QRect settingsCaption{0, 72, 360, 24};

QImage without(QImage picture, const QRect &place)
{
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            picture.setPixelColor(x, y, Qt::black);
        }
    }
    return picture;
}

bool tellsAfterAnotherStart(ClientSession &session, const QByteArray &line)
{
    return session.startLinkedClient() && session.hasReceived(line);
}

/// What a user sees of a language, one screenshot for each page; the caption that keeps the
/// language of the start is blackened. Ends on the main screen; a page that does not open ends the
/// test run.
QList<QImage> photograph(ClientSession &session)
{
    const auto must = [](bool done) {
        if (!done) {
            qFatal("A place in the program does not open or close");
        }
    };
    session.activate(session.window);
    QList<QImage> album{session.still(session.window)};
    must(session.openMenu());
    album += session.still(session.window);
    must(session.use(ClientSession::settingsRow));
    album += without(session.still(session.window), settingsCaption);
    must(session.use(ClientSession::backButton));
    must(session.openPage(ClientSession::supportRow));
    album += session.still(session.window);
    must(session.use(ClientSession::backButton));
    const Window dialog = session.openReferral();
    must(dialog != 0);
    // The blinking cursor in the field would make screenshots differ.
    session.pressKey(QStringLiteral("Tab"));
    album += session.still(dialog);
    must(session.closeDialog(dialog));
    return album;
}

} // namespace

/// The pages and the referral dialog, used from outside like the rest of the program: what is
/// chosen, saved, copied and opened there must reach the service, the disk, other programs and the
/// next start.
class tst_Pages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void language();
    void languageByMouse();
    void toolTipFollowsLanguage();

    void referralWithLink();
    void referralSurvivesKill();

    void supportRows_data();
    void supportRows();
    void supportCopies();
    void supportLink_data();
    void supportLink();

private:
    std::unique_ptr<ClientSession> desktop;
};

void tst_Pages::initTestCase()
{
    desktop = std::make_unique<ClientSession>();
    desktop->hurry();
}

void tst_Pages::cleanup()
{
    desktop->stopAll();
    desktop->service.stop();
}

void tst_Pages::cleanupTestCase()
{
    desktop.reset();
}

void tst_Pages::init()
{
    StoredSettings::ofClient().forget();
    StoredSettings::ofService().forget();
}

// After a change of language, every page looks as if the client had been started in that language.
void tst_Pages::language()
{
    constexpr int russian = 1;
    const QByteArray tag = QByteArrayLiteral("ru");
    ClientSession &session = *desktop;
    session.service.listen();
    QVERIFY(session.startLinkedClient());
    const QList<QImage> english = photograph(session);
    session.service.clear();

    QVERIFY(session.openPage(ClientSession::settingsRow));
    session.chooseLanguage(russian);
    QVERIFY(waitFor([&] { return session.service.lines() == QList{setLanguage(tag)}; }));
    QCOMPARE(StoredSettings::ofClient().value("language"), QString::fromLatin1(tag));
    const QList<QImage> switched = photograph(session);
    session.killClient();

    QVERIFY(session.startLinkedClient());
    QVERIFY(session.hasReceived(setLanguage(tag)));
    const QList<QImage> started = photograph(session);
    for (int i = 0; i < started.size(); ++i) {
        QVERIFY2(switched.at(i) == started.at(i), qPrintable(QString::number(i)));
        QVERIFY2(started.at(i) != english.at(i), qPrintable(QString::number(i)));
    }
}

void tst_Pages::languageByMouse()
{
    ClientSession &session = *desktop;
    session.service.listen();
    QVERIFY(session.startLinkedClient());
    QVERIFY(session.openPage(ClientSession::settingsRow));
    session.click(session.at(languageList));
    QVERIFY(waitFor([&] { return session.unmanagedWindows().size() == 1; }));
    const QRect list = session.geometry(session.unmanagedWindows().first());
    constexpr int polish = 10;
    const int rows = support::languageTags().size();
    session.click({list.center().x(), list.top() + list.height() * (2 * polish + 1) / (2 * rows)});
    QVERIFY(waitFor([&] { return session.unmanagedWindows().isEmpty(); }));
    session.pressKey(QStringLiteral("Tab"));
    session.pressKey(QStringLiteral("space"));
    QVERIFY(waitFor([&] { return session.hasReceived(setLanguage("pl")); }));
}

// Nothing but what the service says about the tunnel sets the tool tip.
void tst_Pages::toolTipFollowsLanguage()
{
    ClientSession session;
    StatusPanel panel{session};
    QVERIFY(panel.isUp());
    session.hurry();
    session.service.listen();
    QVERIFY(session.startClient());
    QVERIFY(waitFor([&] { return session.hasReceived(askStatus()); }));
    const QString first = QStringLiteral("IXOVPN \u2014 disconnected");
    QVERIFY(waitFor([&] { return panel.toolTip() == first; }));

    const auto choose = [&](int row, const QByteArray &tag) {
        const bool opened = session.openPage(ClientSession::settingsRow);
        session.chooseLanguage(row);
        return opened && waitFor([&] { return session.hasReceived(setLanguage(tag)); });
    };
    QVERIFY(choose(2, "de"));
    QCOMPARE(panel.toolTip(), first);
    session.service.sendLine("status: running");
    const QString connected = QString::fromUtf16(u"IXOVPN \u00e2\u20ac\u201d %1");
    QVERIFY(waitFor([&] { return panel.toolTip() == connected.arg(QStringLiteral("Verbunden")); }));
    QVERIFY(choose(0, "en"));
    QVERIFY(waitFor([&] { return panel.toolTip() == connected.arg(QStringLiteral("Connected")); }));
}

void tst_Pages::referralWithLink()
{
    ClientSession &session = *desktop;
    session.service.listen();
    QVERIFY(session.startLinkedClient());
    session.service.clear();
    const Window dialog = session.openReferral();
    QVERIFY(dialog != 0);
    session.type(QStringLiteral(" ab12CD "));
    session.pressKey(QStringLiteral("Return"));
    QVERIFY(waitFor([&] { return session.service.lines() == QList{setReferral("ab12CD")}; }));
    QCOMPARE(StoredSettings::ofClient().value("referral_code"), QStringLiteral("ab12CD"));
    QVERIFY(session.isGone(dialog));
}

void tst_Pages::referralSurvivesKill()
{
    ClientSession &session = *desktop;
    session.service.listen();
    QVERIFY(session.startLinkedClient());
    QVERIFY(session.openReferral() != 0);
    session.type(QStringLiteral("KILL42"));
    session.pressKey(QStringLiteral("Return"));
    QVERIFY(waitFor([&] { return session.hasReceived(setReferral("KILL42")); }));
    session.killClient();
    QCOMPARE(StoredSettings::ofClient().value("referral_code"), QStringLiteral("KILL42"));
    QVERIFY(tellsAfterAnotherStart(session, setReferral("KILL42")));
}

void tst_Pages::supportRows_data()
{
    QTest::addColumn<QByteArray>("ofService");
    QTest::addColumn<QByteArray>("ofClient");
    QTest::addColumn<int>("rows");
    const QByteArray id = QByteArrayLiteral("client_id=7c1e90b2-55d4\n");
    const QByteArray code = QByteArrayLiteral("referral_code=ABC123\n");
    QTest::newRow("neither") << QByteArray{} << QByteArray{} << 1;
    QTest::newRow("client ID") << id << QByteArray{} << 2;
    QTest::newRow("code") << QByteArray{} << code << 2;
    QTest::newRow("both") << id << code << 3;
    QTest::newRow("invalid code") << id << QByteArrayLiteral("referral_code=ABC12\n") << 2;
}

void tst_Pages::supportRows()
{
    QFETCH(QByteArray, ofService);
    QFETCH(QByteArray, ofClient);
    StoredSettings::ofService().fill(ofService);
    StoredSettings::ofClient().fill(ofClient);
    ClientSession &session = *desktop;
    QVERIFY(session.startClient());
    QVERIFY(session.openPage(ClientSession::supportRow));
    QTEST(copyButtons(session.still(session.window)).size(), "rows");
}

void tst_Pages::supportCopies()
{
    // The longest usual ID, which the page cannot show whole.
    const QByteArray id = QByteArrayLiteral("0f8fad5b-d9cb-469f-a165-70867728950e");
    StoredSettings::ofService().fill("client_id=" + id + '\n');
    StoredSettings::ofClient().fill("referral_code=ABC123\n");
    ClientSession &session = *desktop;
    QVERIFY(session.startClient());
    QVERIFY(session.openPage(ClientSession::supportRow));
    const QList<QPoint> buttons = copyButtons(session.still(session.window));
    QCOMPARE(buttons.size(), 3);
    const QList<QByteArray> values{QByteArrayLiteral(IXOVPN_VERSION), id,
                                   QByteArrayLiteral("ABC123")};
    for (int i = 0; i < values.size(); ++i) {
        session.click(session.at(buttons.at(i)));
        QVERIFY2(session.pastes(values.at(i)), values.at(i).constData());
        // The button shows "Copied!" now.
        session.click(session.at(buttons.at(i)));
        QVERIFY2(session.pastes(values.at(i)), values.at(i).constData());
    }
}

void tst_Pages::supportLink_data()
{
    QTest::addColumn<bool>("byKeyboard");
    QTest::newRow("mouse") << false;
    QTest::newRow("keyboard") << true;
}

// A stand-in for xdg-open only records the URL, and the variables for Qt and the session's
// autostart ID that a browser would inherit.
void tst_Pages::supportLink()
{
    QFETCH(bool, byKeyboard);
    const QString folder = QDir::homePath() + QStringLiteral("/stand-in");
    const QString record = folder + QStringLiteral("/opened");
    const QString inherited = folder + QStringLiteral("/inherited");
    QDir::root().mkpath(folder);
    QFile::remove(record);
    QFile script{folder + QStringLiteral("/xdg-open")};
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nenv | grep -E '^(QT_|DESKTOP_AUTOSTART_ID=)' >" +
                 inherited.toLatin1() + "\nprintf '%s\\n' \"$@\" >>" + record.toLatin1() + '\n');
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    script.close();

    ClientSession session;
    session.hurry();
    session.setVariable(QStringLiteral("PATH"),
                        folder + QLatin1Char{':'} +
                            session.environment().value(QStringLiteral("PATH")));
    session.setVariable(QStringLiteral("QT_QTESTLIB_RUNNING"), {});
    session.setVariable(QStringLiteral("QT_CHOSEN_BY_THE_USER"), QStringLiteral("1"));
    session.setVariable(QStringLiteral("DESKTOP_AUTOSTART_ID"), QStringLiteral("any"));
    QVERIFY(session.startClient());
    QVERIFY(session.openPage(ClientSession::supportRow));
    if (byKeyboard) {
        session.pressKey(QStringLiteral("Tab"));
        session.pressKey(QStringLiteral("Return"));
    } else {
        session.click(session.at(support::orange(session.still(session.window))));
    }
    QFile opened{record};
    QVERIFY(waitFor([&] { return opened.size() > 0; }));
    QVERIFY(opened.open(QIODevice::ReadOnly));
    QCOMPARE(opened.readAll(), QByteArrayLiteral(IXOVPN_SUPPORT_LINK "\n"));
    QFile variables{inherited};
    QVERIFY(variables.open(QIODevice::ReadOnly));
    QStringList given = session.environment().toStringList();
    given = given.filter(QRegularExpression{QStringLiteral("^QT_.*=.")});
    QStringList told = QString::fromUtf8(variables.readAll()).split(QLatin1Char{'\n'});
    told = told.filter(QRegularExpression{QStringLiteral("=.")});
    given.sort();
    told.sort();
    QVERIFY(told.contains(QStringLiteral("QT_CHOSEN_BY_THE_USER=1")));
    QCOMPARE(told, given);
    QCOMPARE(session.client->state(), QProcess::Running);
}

QTEST_GUILESS_MAIN(tst_Pages)

#include "tst_pages.moc"
