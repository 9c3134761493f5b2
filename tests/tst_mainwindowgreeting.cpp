#include "tests/support/WindowBench.h"

#include "ui/PillLabel.h"

#include <QLabel>
#include <QLocale>
#include <QSettings>
#include <QTest>

using support::display;
using support::WindowBench;
using State = ui::ToggleSwitch::State;

namespace {

const QString serviceThere = QStringLiteral("Service connected");

} // namespace

class tst_MainWindowGreeting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void greeting_data();
    void greeting();
    void greetingAfterReconnect();
    void connectionLeavesSwitchAndStatus();
    void commandWithoutConnectionIsNotKept();
};

void tst_MainWindowGreeting::init()
{
    WindowBench::resetWorld();
}

void tst_MainWindowGreeting::greeting_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QByteArray>("bytes");

    const auto row = [](const char *name, const char *language, const char *locale,
                        const QString &code, const char *tag, const char *sentCode) {
        QByteArray bytes = QByteArray{R"({"cmd":"set-lang","lang":")"} + tag + "\"}\n";
        if (sentCode != nullptr) {
            bytes += QByteArray{R"({"cmd":"set-referral","code":")"} + sentCode + "\"}\n";
        }
        bytes += "{\"cmd\":\"status\"}\n";
        QTest::newRow(name) << QString::fromLatin1(language) << QString::fromLatin1(locale) << code
                            << bytes;
    };
    const auto noCode = [] { return QString{}; };
    row("nothing stored", "", "en_US", noCode(), "en", nullptr);
    row("German locale", "", "de_DE", noCode(), "de", nullptr);
    row("Brazilian locale", "", "pt_BR", noCode(), "pt", nullptr);
    row("locale without a catalogue", "", "sv_SE", noCode(), "sv", nullptr);
    row("C locale", "", "C", noCode(), "en", nullptr);
    row("locale with a longer name", "", "fil_PH", noCode(), "fi", nullptr);
    row("stored language", "br", "de_DE", noCode(), "br", nullptr);
    row("stored language without a catalogue", "zz-Longer", "de_DE", noCode(), "zz-Longer",
        nullptr);
    row("valid code", "", "en_US", QStringLiteral("ab12CD"), "en", "ab12CD");
    row("language and code", "ja", "en_US", QStringLiteral("000000"), "ja", "000000");
    row("short code", "", "en_US", QStringLiteral("abc"), "en", nullptr);
    row("code with a hyphen", "", "en_US", QStringLiteral("ABC-12"), "en", nullptr);
    row("code with a line feed", "", "en_US", QStringLiteral("ABC123\n"), "en", nullptr);
    row("empty code", "", "en_US", QStringLiteral(""), "en", nullptr);
    row("look-alike letter", "", "en_US", QStringLiteral("\u0410BC123"), "en", nullptr);
}

void tst_MainWindowGreeting::greeting()
{
    QFETCH(QString, language);
    QFETCH(QString, locale);
    QFETCH(QString, code);
    QFETCH(QByteArray, bytes);

    QLocale::setDefault(QLocale{locale});
    QSettings settings;
    if (!language.isEmpty()) {
        settings.setValue(QStringLiteral("language"), language);
    }
    if (!code.isNull()) {
        settings.setValue(QStringLiteral("referral_code"), code);
    }
    settings.sync();

    WindowBench bench;
    QVERIFY(support::waitFor([&] { return bench.service.received().size() >= bytes.size(); }));
    QCOMPARE(bench.service.received(), bytes);
    QVERIFY(bench.greeted());
    QVERIFY(bench.sent().isEmpty());
    QCOMPARE(bench.shown(), display(State::Off, QStringLiteral("Disconnected"), serviceThere));
}

void tst_MainWindowGreeting::greetingAfterReconnect()
{
    QSettings settings;
    settings.setValue(QStringLiteral("referral_code"), QStringLiteral("ab12CD"));
    settings.sync();

    WindowBench bench;
    QVERIFY(bench.greeted());
    settings.setValue(QStringLiteral("referral_code"), QStringLiteral("XYZ789"));
    settings.setValue(QStringLiteral("language"), QStringLiteral("fr"));
    settings.sync();

    const QByteArray expected = QByteArrayLiteral("{\"cmd\":\"set-lang\",\"lang\":\"fr\"}\n"
                                                  "{\"cmd\":\"set-referral\",\"code\":\"XYZ789\"}\n"
                                                  "{\"cmd\":\"status\"}\n");
    for (int reconnect = 1; reconnect <= 2; ++reconnect) {
        QVERIFY(bench.loseLink());
        bench.service.listen();
        QVERIFY(
            support::waitFor([&] { return bench.service.received().size() >= expected.size(); }));
        QCOMPARE(bench.service.received(), expected);
        QCOMPARE(bench.pill()->text(), serviceThere);
        QVERIFY(bench.greeted());
        QVERIFY(bench.sent().isEmpty());
    }
}

void tst_MainWindowGreeting::connectionLeavesSwitchAndStatus()
{
    WindowBench bench;
    bench.toggle()->setState(State::On);
    bench.status()->setText(QStringLiteral("as before"));
    QVERIFY(bench.greeted());
    QCOMPARE(bench.shown(), display(State::On, QStringLiteral("as before"), serviceThere));
}

void tst_MainWindowGreeting::commandWithoutConnectionIsNotKept()
{
    WindowBench bench;
    QVERIFY(bench.greeted());
    QVERIFY(bench.loseLink());
    bench.click();
    bench.chooseLanguage(QStringLiteral("de"));
    bench.chooseLanguage(QStringLiteral("en"));
    bench.service.listen();
    const QByteArray expected =
        QByteArrayLiteral("{\"cmd\":\"set-lang\",\"lang\":\"en\"}\n{\"cmd\":\"status\"}\n");
    QVERIFY(support::waitFor([&] { return bench.service.received().size() >= expected.size(); }));
    QCOMPARE(bench.service.received(), expected);
    QVERIFY(bench.greeted());
    QVERIFY(bench.sent().isEmpty());
    QCOMPARE(bench.toggle()->state(), State::Off);
}

QTEST_MAIN(tst_MainWindowGreeting)

#include "tst_mainwindowgreeting.moc"
