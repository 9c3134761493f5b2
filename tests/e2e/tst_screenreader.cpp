#include "app/Identity.h"
#include "tests/support/Client.h"
#include "tests/support/Desktop.h"
#include "tests/support/ScreenReader.h"
#include "tests/support/ScriptedService.h"
#include "ui/Catalogue.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QTranslator>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>

using support::clientProgram;
using support::Desktop;
using support::ScreenReader;
using support::ScriptedService;
using support::waitFor;
using Thing = ScreenReader::Thing;

namespace {

const QString version = QStringLiteral(IXOVPN_VERSION);

const QString clientId = QStringLiteral("123e4567-e89b-12d3-a456-426614174000");

const QString button = QStringLiteral("push button");
const QString checkBox = QStringLiteral("check box");
const QString notification = QStringLiteral("notification");
const QString press = QStringLiteral("Press");
const QString toggleAction = QStringLiteral("Toggle");
const QString menuName = QStringLiteral("Settings, Referral Code, Support, Exit");

/// The texts of one language.
class Texts
{
public:
    explicit Texts(const QString &tag) { loaded = ui::catalogue::load(catalogue, tag); }

    QString operator()(const char *context, const char *source) const
    {
        const QString text = catalogue.translate(context, source);
        return text.isEmpty() ? QString::fromUtf8(source) : text;
    }
    QString window(const char *source) const { return (*this)("MainWindow", source); }
    QString menuRow(const char *source) const { return (*this)("ui::SideMenu", source); }
    QString support(const char *source) const { return (*this)("ui::SupportDialog", source); }
    QString settings(const char *source) const { return (*this)("ui::SettingsDialog", source); }

    /// What the menu and its button are called.
    QString menu() const
    {
        return QStringList{menuRow("Settings"), menuRow("Referral Code"), menuRow("Support"),
                           menuRow("Exit")}
            .join(QLatin1String{", "});
    }

    bool loaded = false;

private:
    QTranslator catalogue;
};

QString control(const QString &role, const QString &name, const QString &rest = {})
{
    return QStringLiteral("%1 \"%2\"%3").arg(role, name, rest);
}

QString label(const QString &name)
{
    return control(QStringLiteral("label"), name);
}

} // namespace

class tst_ScreenReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void everyPlace_data();
    void everyPlace();
    void languageSwitch();
    void switchFollowsTheService_data();
    void switchFollowsTheService();
    void changesAreAnnounced();
    void actionIsAClick();
    void actionWithoutAService();
    void actionReachesNothingCovered();
    void menuHidesTheScreen();
    void pagesHideTheScreen();
    void referralDialog();
    void noticeDialog();
    void copyButtons();
    void supportLink();

private:
    void startClient(const QString &tag = QStringLiteral("en"));
    /// Waits until the program can be read.
    [[nodiscard]] bool isThere();
    /// In the active window's coordinates.
    void click(const QPoint &position) const;
    Thing find(const QString &role, const QString &name = {}) const;
    /// Waits for the accessible object and does its action.
    [[nodiscard]] bool act(const QString &role, const QString &name, const QString &action) const;
    [[nodiscard]] bool pressButton(const QString &name) const;
    /// Waits until exactly this can be read, in the main window or from another window of this
    /// role on, beside the choices in a list.
    [[nodiscard]] bool reads(const QStringList &expected,
                             const QString &role = QStringLiteral("frame")) const;
    [[nodiscard]] bool hears(const QString &announcement) const;
    [[nodiscard]] bool receives(const QByteArray &line);
    QStringList mainScreen(const Texts &texts, const QString &status, const QString &pill,
                           const QString &switchStates = {}) const;

    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<ScreenReader> reader;
    std::unique_ptr<ScriptedService> service;
    QProcess *client = nullptr;
    Thing program;
};

void tst_ScreenReader::initTestCase()
{
    app::setIdentity();
    QSettings installed{QSettings::SystemScope, QStringLiteral("IXOVPN"),
                        QStringLiteral("IxoService")};
    installed.setValue(QStringLiteral("client_id"), clientId);
    installed.sync();
    QCOMPARE(installed.status(), QSettings::NoError);

    desktop = std::make_unique<Desktop>();
    desktop->startSessionBus();
    reader = std::make_unique<ScreenReader>(*desktop);
}

void tst_ScreenReader::init()
{
    QSettings{}.clear();
    service = std::make_unique<ScriptedService>();
    service->listen();
}

void tst_ScreenReader::cleanup()
{
    program.reset();
    if (client != nullptr) {
        desktop->stop(client);
        client = nullptr;
    }
    service.reset();
    QVERIFY(waitFor([this] { return reader->program(QStringLiteral("IxoClient")) == nullptr; }));
}

void tst_ScreenReader::cleanupTestCase()
{
    reader.reset();
    desktop.reset();
}

void tst_ScreenReader::startClient(const QString &tag)
{
    QSettings settings;
    settings.setValue(QStringLiteral("language"), tag);
    settings.sync();
    client = desktop->start(clientProgram());
    QVERIFY(isThere());
    QVERIFY(waitFor([this] { return service->lines().contains(R"({"cmd":"status"})"); }));
    service->clear();
    reader->forget();
}

bool tst_ScreenReader::isThere()
{
    return waitFor([this] {
        program = reader->program(QStringLiteral("IxoClient"));
        const QList<Desktop::Window> windows = desktop->visibleWindows(QStringLiteral("IXOVPN"));
        return program != nullptr && find(QStringLiteral("frame")) != nullptr &&
               windows == QList<Desktop::Window>{desktop->activeWindow()};
    });
}

void tst_ScreenReader::click(const QPoint &position) const
{
    desktop->click(desktop->geometry(desktop->activeWindow()).topLeft() + position);
}

Thing tst_ScreenReader::find(const QString &role, const QString &name) const
{
    return reader->find(program, role, name);
}

bool tst_ScreenReader::act(const QString &role, const QString &name, const QString &action) const
{
    Thing found;
    const bool isThere = waitFor([&] {
        found = find(role, name);
        return found != nullptr;
    });
    return isThere && reader->act(found, action);
}

bool tst_ScreenReader::pressButton(const QString &name) const
{
    return act(button, name, press);
}

bool tst_ScreenReader::reads(const QStringList &expected, const QString &role) const
{
    QStringList read;
    const bool isRight = waitFor([&] {
        const Thing top = find(role);
        read = top == nullptr ? QStringList{} : reader->read(top);
        const auto choices = read.filter(QRegularExpression{QStringLiteral("^list item ")});
        for (const QString &choice : choices) {
            read.removeOne(choice);
        }
        return read == expected;
    });
    if (!isRight) {
        qWarning().noquote() << "Read:\n" << read.join(QLatin1Char{'\n'});
    }
    return isRight;
}

bool tst_ScreenReader::hears(const QString &announcement) const
{
    const bool isRight = waitFor([&] { return reader->heard().contains(announcement); });
    if (!isRight) {
        qWarning().noquote() << "Heard:\n" << reader->heard().join(QLatin1Char{'\n'});
    }
    return isRight;
}

bool tst_ScreenReader::receives(const QByteArray &line)
{
    const bool isThere = waitFor([&] { return service->lines().contains(line); });
    service->clear();
    return isThere;
}

QStringList tst_ScreenReader::mainScreen(const Texts &texts, const QString &status,
                                         const QString &pill, const QString &switchStates) const
{
    const QString name = texts.window("IXOVPN");
    return {control(QStringLiteral("frame"), name),
            control(button, texts.menu(), QStringLiteral(" focused: Press, SetFocus")),
            label(name),
            control(checkBox, name, QStringLiteral(" (%1)%2: Toggle").arg(status, switchStates)),
            control(notification, status),
            label(texts.window("Tap the switch to connect")),
            control(notification, pill)};
}

void tst_ScreenReader::everyPlace_data()
{
    QTest::addColumn<QString>("tag");
    for (const char *tag : {"ru", "ja"}) {
        QTest::newRow(tag) << QString{QLatin1String{tag}};
    }
}

// tst_catalogues checks the translations themselves.
void tst_ScreenReader::everyPlace()
{
    QFETCH(QString, tag);
    const Texts texts{tag};
    QVERIFY(texts.loaded);
    startClient(tag);
    QVERIFY(
        reads(mainScreen(texts, texts.window("Disconnected"), texts.window("Service connected"))));

    QVERIFY(pressButton(texts.menu()));
    const QString frame = control(QStringLiteral("frame"), QStringLiteral("IXOVPN"));
    const QString panel = QStringLiteral("panel");
    const QString presses = QStringLiteral(": Press");
    QVERIFY(reads({frame, control(panel, texts.menu(), QStringLiteral(" focused: SetFocus")),
                   control(button, texts.menuRow("Settings"), presses),
                   control(button, texts.menuRow("Referral Code"), presses),
                   control(button, texts.menuRow("Support"), presses),
                   control(button, texts.menuRow("Exit"), presses)}));

    QVERIFY(pressButton(texts.menuRow("Settings")));
    const auto back = [](const QString &text) {
        return control(button, text, QStringLiteral(" (%1) focused: Press, SetFocus").arg(text));
    };
    Thing combo;
    QVERIFY(waitFor([&] {
        combo = find(QStringLiteral("combo box"));
        return combo != nullptr;
    }));
    QCOMPARE(reader->labels(combo), QStringList{texts.settings("Language")});
    const QString language = reader->name(combo);
    QVERIFY(
        reads({frame, control(panel, texts.settings("Settings")), back(texts.settings("Back")),
               label(texts.settings("Settings")), label(texts.settings("Language")),
               control(QStringLiteral("combo box"), language, QStringLiteral(": ShowMenu, Press")),
               control(button, texts.settings("Save"), QStringLiteral(": Press, SetFocus")),
               label(texts.settings("LANGUAGE"))}));
    QVERIFY(find(QStringLiteral("list item"), language) != nullptr);
    QVERIFY(pressButton(texts.settings("Back")));

    QVERIFY(pressButton(texts.menu()));
    QVERIFY(pressButton(texts.menuRow("Support")));
    const auto copy = [&texts](const char *caption, const QString &value) {
        return control(
            button, texts.support(caption) + QLatin1Char{' '} + value,
            QStringLiteral(" (%1): Press, SetFocus").arg(texts.support("Click to copy")));
    };
    QVERIFY(reads(
        {frame, control(panel, texts.support("Support")), back(texts.support("Back")),
         label(texts.support("Support")), label(texts.support("CONTACT")),
         label(texts.support("For any questions about VPN operation, please contact us:")),
         control(QStringLiteral("link"), QStringLiteral("https://ixovpn.example/support"),
                 QStringLiteral(": Press, SetFocus")),
         label(texts.support("INFO")), label(texts.support("Version:")), copy("Version:", version),
         label(texts.support("Your ID:")), copy("Your ID:", clientId)}));
}

void tst_ScreenReader::languageSwitch()
{
    startClient();
    service->sendLine("status: running");
    const Texts english{QStringLiteral("en")};
    QVERIFY(reads(mainScreen(english, QStringLiteral("Connected"), QStringLiteral("Tunnel up"),
                             QStringLiteral(" checked"))));
    QVERIFY(pressButton(menuName));
    QVERIFY(pressButton(QStringLiteral("Settings")));
    QVERIFY(waitFor([this] { return find(QStringLiteral("combo box")) != nullptr; }));
    desktop->pressKey(QStringLiteral("Tab"));
    desktop->pressKey(QStringLiteral("Down"));
    desktop->pressKey(QStringLiteral("Down"));
    QVERIFY(waitFor([this] {
        return find(QStringLiteral("combo box"), QStringLiteral("Deutsch")) != nullptr;
    }));
    reader->forget();
    QVERIFY(pressButton(QStringLiteral("Save")));
    QVERIFY(receives(R"({"cmd":"set-lang","lang":"de"})"));

    QVERIFY(waitFor([this] { return find(notification, QStringLiteral("Verbunden")) != nullptr; }));
    const Texts german{QStringLiteral("de")};
    const QStringList expected = mainScreen(german, QStringLiteral("Verbunden"),
                                            german.window("Tunnel up"), QStringLiteral(" checked"));
    QVERIFY(expected.contains(QStringLiteral("label \"Tippen Sie zum Verbinden\"")));
    QVERIFY(reads(expected));
    QVERIFY(hears(control(QStringLiteral("name: push button"), german.menu())));
    QVERIFY(
        hears(control(QStringLiteral("name: label"), QStringLiteral("Tippen Sie zum Verbinden"))));
    // The old text must not be announced before the new one.
    QCOMPARE(reader->heard().count(QStringLiteral("description: check box \"IXOVPN\"")), 1);
}

void tst_ScreenReader::switchFollowsTheService_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QStringList>("states");
    const QStringList changing{QStringLiteral("busy"), QStringLiteral("disabled"),
                               QStringLiteral("insensitive")};
    const QStringList on{QStringLiteral("checked")};
    const auto row = [](const char *line, const char *description, const QStringList &states) {
        QTest::newRow(line) << QByteArray{line} << QString::fromUtf8(description) << states;
    };
    row("status: running", "Connected", on);
    row("status: fetching", "Connecting…", changing);
    row("status: connecting", "Connecting…", changing);
    row("status: stopping", "Disconnecting…", on + changing);
    row("status: stopped", "Disconnected", {});
    row("status: failed: timeout", "Failed", {});
    row("error: no route", "Error", {});
}

void tst_ScreenReader::switchFollowsTheService()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, description);
    QFETCH(QStringList, states);
    startClient();
    // Begins in a state other than the one under test.
    service->sendLine(line == "status: running" ? "status: connecting" : "status: running");
    const Thing toggle = find(checkBox);
    QVERIFY(toggle != nullptr);
    service->sendLine(line);
    QVERIFY(waitFor([&] { return reader->description(toggle) == description; }));
    QCOMPARE(reader->states(toggle), states);
    QCOMPARE(reader->name(toggle), QStringLiteral("IXOVPN"));

    service->stop();
    QVERIFY(waitFor([&] { return reader->description(toggle) == QStringLiteral("Disconnected"); }));
    QCOMPARE(reader->states(toggle), QStringList{});
}

void tst_ScreenReader::changesAreAnnounced()
{
    startClient();
    service->sendLine("status: fetching");
    QVERIFY(hears(QStringLiteral("not enabled: check box \"IXOVPN\"")));
    QVERIFY(hears(QStringLiteral("not sensitive: check box \"IXOVPN\"")));
    QVERIFY(hears(QStringLiteral("showing: notification \"Connecting…\"")));
    QVERIFY(hears(QStringLiteral("showing: notification \"Fetching config…\"")));
    QVERIFY(!reader->heard().contains(QStringLiteral("checked: check box \"IXOVPN\"")));
    reader->forget();

    service->sendLine("status: running");
    QVERIFY(hears(QStringLiteral("checked: check box \"IXOVPN\"")));
    QVERIFY(hears(QStringLiteral("enabled: check box \"IXOVPN\"")));
    QVERIFY(hears(QStringLiteral("description: check box \"IXOVPN\"")));
    QVERIFY(hears(QStringLiteral("name: notification \"Connected\"")));
    QVERIFY(hears(QStringLiteral("showing: notification \"Connected\"")));
    QVERIFY(hears(QStringLiteral("showing: notification \"Tunnel up\"")));
    reader->forget();

    // A status that does not change is not announced.
    service->sendLine("status: running");
    service->sendLine("error: no route to the gateway");
    QVERIFY(hears(QStringLiteral("showing: notification \"no route to the gateway\"")));
    QVERIFY(hears(QStringLiteral("not checked: check box \"IXOVPN\"")));
    QVERIFY(hears(QStringLiteral("showing: notification \"Error\"")));
    QVERIFY(!reader->heard().contains(QStringLiteral("showing: notification \"Connected\"")));
    QVERIFY(!reader->heard().contains(QStringLiteral("checked: check box \"IXOVPN\"")));
    reader->forget();

    service->stop();
    QVERIFY(hears(QStringLiteral("showing: notification \"Disconnected\"")));
    QVERIFY(hears(QStringLiteral("showing: notification \"Service is not running\"")));
}

void tst_ScreenReader::actionIsAClick()
{
    startClient();
    const QByteArray connectLine = R"({"cmd":"connect"})";
    const QByteArray disconnectLine = R"({"cmd":"disconnect"})";
    const Thing toggle = find(checkBox);
    const std::array<std::function<void()>, 2> ways{
        [&] { QVERIFY(reader->act(toggle, toggleAction)); },
        [&] {
            click({180, 214});
        },
    };
    for (const auto &use : ways) {
        service->sendLine("status: stopped");
        QVERIFY(waitFor([&] { return find(notification, QStringLiteral("Idle")) != nullptr; }));
        use();
        QVERIFY(receives(connectLine));
        QVERIFY(waitFor([&] { return reader->states(toggle).contains(QStringLiteral("busy")); }));

        service->sendLine("status: running");
        QVERIFY(waitFor(
            [&] { return reader->states(toggle) == QStringList{QStringLiteral("checked")}; }));
        use();
        QVERIFY(receives(disconnectLine));

        service->sendLine("error: no route");
        QVERIFY(waitFor([&] { return find(notification, QStringLiteral("Error")) != nullptr; }));
        use();
        QVERIFY(receives(connectLine));

        // While the switch is busy the action does nothing; the last one proves that the program
        // had handled it.
        use();
        service->sendLine("status: running");
        QVERIFY(
            waitFor([&] { return find(notification, QStringLiteral("Connected")) != nullptr; }));
        use();
        QVERIFY(waitFor([&] { return !service->lines().isEmpty(); }));
        QCOMPARE(service->lines(), QList<QByteArray>{disconnectLine});
        service->clear();
    }
}

void tst_ScreenReader::actionWithoutAService()
{
    startClient();
    service->stop();
    const QString answer = QStringLiteral("showing: notification \"Service is not running\"");
    QVERIFY(hears(answer));
    // Each press gets its answer, also when it is the same.
    for (int i = 0; i < 2; ++i) {
        reader->forget();
        QVERIFY(act(checkBox, QStringLiteral("IXOVPN"), toggleAction));
        QVERIFY(hears(answer));
    }
}

void tst_ScreenReader::actionReachesNothingCovered()
{
    startClient();
    const Thing toggle = find(checkBox);
    const Thing pill = find(notification, QStringLiteral("Service connected"));
    int question = 0;
    const auto nothingComesOfIt = [&] {
        const bool acted = reader->act(toggle, toggleAction);
        // The answer to this line comes after every announcement that was due before.
        service->sendLine("config-bytes: " + QByteArray::number(++question));
        const bool answered = waitFor(
            [&] { return reader->name(pill) == QStringLiteral("Config %1 bytes").arg(question); });
        QCoreApplication::processEvents();
        return acted && answered && service->lines().isEmpty();
    };
    QVERIFY(pressButton(menuName));
    QVERIFY(waitFor([&] { return !reader->isShowing(toggle); }));
    QVERIFY(nothingComesOfIt());
    QVERIFY(pressButton(QStringLiteral("Settings")));
    QVERIFY(waitFor([&] { return find(button, QStringLiteral("Back")) != nullptr; }));
    QVERIFY(nothingComesOfIt());
    QVERIFY(pressButton(QStringLiteral("Back")));
    QVERIFY(waitFor([&] { return reader->isShowing(toggle); }));
    service->sendLine("notice: Hello");
    QVERIFY(waitFor([&] { return find(QStringLiteral("dialog")) != nullptr; }));
    QVERIFY(nothingComesOfIt());
    QVERIFY(pressButton(QStringLiteral("OK")));
    QVERIFY(waitFor([&] { return find(QStringLiteral("dialog")) == nullptr; }));
    QVERIFY(reader->act(toggle, toggleAction));
    QVERIFY(receives(R"({"cmd":"connect"})"));
}

void tst_ScreenReader::menuHidesTheScreen()
{
    startClient();
    const Thing toggle = find(checkBox);
    const Thing hint = find(QStringLiteral("label"), QStringLiteral("Tap the switch to connect"));
    QVERIFY(find(button, QStringLiteral("Exit")) == nullptr);
    QVERIFY(pressButton(menuName));
    QVERIFY(waitFor([this] { return find(button, QStringLiteral("Exit")) != nullptr; }));
    QVERIFY(!reader->isShowing(toggle));
    QVERIFY(!reader->isShowing(hint));
    QVERIFY(hears(QStringLiteral("not showing: check box \"IXOVPN\"")));
    QVERIFY(hears(control(QStringLiteral("focused: panel"), menuName)));
    const Thing exitRow = find(button, QStringLiteral("Exit"));
    reader->forget();

    // A click beside the panel closes the menu.
    click({340, 300});
    QVERIFY(waitFor([&] { return reader->isShowing(toggle); }));
    QVERIFY(!reader->isShowing(exitRow));
    QVERIFY(reader->isShowing(hint));
    QVERIFY(hears(QStringLiteral("showing: check box \"IXOVPN\"")));
    QVERIFY(hears(QStringLiteral("not showing: push button \"Exit\"")));
    // The status is there, and no news.
    const QString status = QStringLiteral("notification \"Disconnected\"");
    QVERIFY(find(notification, QStringLiteral("Disconnected")) != nullptr);
    QVERIFY(!reader->heard().contains(QStringLiteral("showing: ") + status));
}

void tst_ScreenReader::pagesHideTheScreen()
{
    startClient();
    const Thing toggle = find(checkBox);
    const QString title = QStringLiteral("IXOVPN");
    for (const auto &[row, inside] :
         {std::pair{"Settings", "Save"}, std::pair{"Support", "Version: " IXOVPN_VERSION}}) {
        const QString part = QString::fromLatin1(inside);
        QVERIFY(find(button, part) == nullptr);
        QVERIFY(pressButton(menuName));
        QVERIFY(pressButton(QString::fromLatin1(row)));
        QVERIFY(waitFor([&] { return find(button, part) != nullptr; }));
        QVERIFY(!reader->isShowing(toggle));
        const Thing shown = find(button, part);
        // A status changes the covered switch and does not make it showing.
        service->sendLine("status: running");
        QVERIFY(
            waitFor([&] { return reader->description(toggle) == QStringLiteral("Connected"); }));
        QVERIFY(find(notification) == nullptr);

        reader->forget();
        const Desktop::Window window = desktop->activeWindow();
        desktop->minimise(window);
        QVERIFY(waitFor([&] { return desktop->visibleWindows(title).isEmpty(); }));
        desktop->activate(window);
        QVERIFY(waitFor([&] { return desktop->visibleWindows(title).size() == 1; }));
        service->sendLine("status: stopping");
        QVERIFY(hears(QStringLiteral("description: check box \"IXOVPN\"")));
        QVERIFY(!reader->heard().contains(QStringLiteral("showing: check box \"IXOVPN\"")));
        QVERIFY(!reader->heard().contains(QStringLiteral("not showing: check box \"IXOVPN\"")));

        QVERIFY(pressButton(QStringLiteral("Back")));
        QVERIFY(waitFor([&] { return reader->isShowing(toggle); }));
        QVERIFY(!reader->isShowing(shown));
        QVERIFY(hears(QStringLiteral("showing: notification \"Disconnecting…\"")));
        service->sendLine("status: stopped");
        QVERIFY(waitFor([&] { return find(notification, QStringLiteral("Idle")) != nullptr; }));
    }
}

void tst_ScreenReader::referralDialog()
{
    startClient();
    const QString title = QStringLiteral("Referral Code");
    const QString prompt = QStringLiteral("Enter your referral code:");
    QVERIFY(pressButton(menuName));
    QVERIFY(pressButton(title));
    const QString dialog = QStringLiteral("dialog");
    const QStringList controls{QStringLiteral("push button \"Save\": Press, SetFocus"),
                               QStringLiteral("push button \"Cancel\": Press, SetFocus")};
    const QString field = QStringLiteral("text \"%1\" (e.g. ABC123) focused: SetFocus").arg(prompt);
    const QString head = control(dialog, title, QStringLiteral(" modal"));
    QVERIFY(reads(QStringList{head, label(prompt), field} + controls, dialog));

    const QString error =
        QStringLiteral("notification \"Invalid code — must be exactly 6 letters or digits\"");
    for (int i = 0; i < 2; ++i) {
        reader->forget();
        QVERIFY(pressButton(QStringLiteral("Save")));
        QVERIFY(hears(QStringLiteral("showing: ") + error));
    }
    const auto holds = [this](const QString &code) {
        return waitFor([&] {
            const Thing text = find(QStringLiteral("text"));
            return text != nullptr && reader->content(text) == code;
        });
    };
    reader->forget();
    desktop->pressKey(QStringLiteral("Return"));
    QVERIFY(hears(QStringLiteral("showing: ") + error));
    desktop->type(QStringLiteral("ABC123"));
    QVERIFY(holds(QStringLiteral("ABC123")));
    QCOMPARE(reader->heard().count(QStringLiteral("showing: ") + error), 1);
    QVERIFY(pressButton(QStringLiteral("Save")));
    QVERIFY(hears(QStringLiteral("showing: notification \"Saved ✓\"")));
    QVERIFY(receives(R"({"cmd":"set-referral","code":"ABC123"})"));
    QVERIFY(waitFor([&] { return find(dialog) == nullptr; }));
}

void tst_ScreenReader::noticeDialog()
{
    startClient();
    service->sendLine(
        "notice: <b>Hello</b>, see <a href=\"https://ixovpn.example/news\">the news</a>");
    const QString dialog = QStringLiteral("dialog");
    const QString title = QStringLiteral("Notice");
    QVERIFY(waitFor([&] { return find(dialog, title) != nullptr; }));
    QVERIFY(find(QStringLiteral("label"), QStringLiteral("Hello, see the news")) != nullptr);
    QVERIFY(reader->states(find(dialog, title)).contains(QStringLiteral("modal")));
    QVERIFY(pressButton(QStringLiteral("OK")));
    QVERIFY(waitFor([&] { return find(dialog) == nullptr; }));
}

// Pastes the copied text into a field that the screen reader can read.
void tst_ScreenReader::copyButtons()
{
    startClient();
    QVERIFY(pressButton(menuName));
    QVERIFY(pressButton(QStringLiteral("Support")));
    const QString caption = QStringLiteral("Version: " IXOVPN_VERSION);
    QVERIFY(waitFor([&] { return find(button, caption) != nullptr; }));
    // A label of it would be read out before the name, which begins with the same words.
    QCOMPARE(reader->labels(find(button, caption)), QStringList{});
    reader->forget();
    QVERIFY(pressButton(caption));
    QVERIFY(hears(QStringLiteral("name: push button \"Version: Copied!\"")));
    QVERIFY(waitFor([&] { return find(button, caption) != nullptr; }));
    QVERIFY(pressButton(QStringLiteral("Back")));

    QVERIFY(pressButton(menuName));
    QVERIFY(pressButton(QStringLiteral("Referral Code")));
    Thing field;
    QVERIFY(waitFor([&] {
        field = find(QStringLiteral("text"));
        return field != nullptr && reader->states(field).contains(QStringLiteral("focused"));
    }));
    desktop->pressKey(QStringLiteral("ctrl+v"));
    QVERIFY(waitFor([&] { return reader->content(field) == version; }));
}

void tst_ScreenReader::supportLink()
{
    // A stand-in for the browser.
    const QDir tools{QDir::homePath() + QStringLiteral("/bin")};
    QVERIFY(QDir::root().mkpath(tools.path()));
    QFile opener{tools.filePath(QStringLiteral("xdg-open"))};
    QVERIFY(opener.open(QIODevice::WriteOnly));
    opener.write("#!/bin/sh\necho \"$1\" > \"$HOME/opened\"\n");
    opener.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    opener.close();
    const QString path = desktop->environment().value(QStringLiteral("PATH"));
    desktop->setVariable(QStringLiteral("PATH"), tools.path() + QLatin1Char{':'} + path);
    startClient();
    desktop->setVariable(QStringLiteral("PATH"), path);

    QVERIFY(pressButton(menuName));
    QVERIFY(pressButton(QStringLiteral("Support")));
    const QString address = QStringLiteral("https://ixovpn.example/support");
    QVERIFY(act(QStringLiteral("link"), address, press));
    QFile opened{QDir::homePath() + QStringLiteral("/opened")};
    QVERIFY(waitFor([&] { return opened.exists() && opened.size() > address.size(); }));
    QVERIFY(opened.open(QIODevice::ReadOnly));
    QCOMPARE(opened.readAll().trimmed(), address.toUtf8());
}

QTEST_GUILESS_MAIN(tst_ScreenReader)

#include "tst_screenreader.moc"
