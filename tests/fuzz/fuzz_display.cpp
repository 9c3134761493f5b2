// Fuzzes the way from bytes on the socket to the display: the real window, its real connection and
// its notices, beside a model of what they have to show.
//
// An input is what the service writes. A record separator (0x1e) and one letter in it are not
// written but done:
//   |  what follows comes in a segment of its own
//   c  the user clicks the switch
//   n  the user closes the notice (which otherwise stays open to the end)
//   l  the service ends the connection; r with a reset
//   u  the connection comes up again
//   d, j, e  the user chooses German, Japanese, English
//   s, g, m  support page, settings page and menu open, or close
// With any other byte after it, both are written.

#include "ipc/ServiceClient.h"
#include "tests/fuzz/DisplayModel.h"
#include "tests/fuzz/Finding.h"
#include "tests/fuzz/LoopbackService.h"
#include "ui/MainWindow.h"
#include "ui/NoticeDialog.h"
#include "ui/PillLabel.h"
#include "ui/SafeMarkup.h"
#include "ui/SettingsDialog.h"
#include "ui/SideMenu.h"
#include "ui/SupportDialog.h"

#include <QApplication>
#include <QMetaEnum>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTimer>

#include <array>
#include <cstdint>
#include <memory>

using fuzz::DisplayModel;
using fuzz::require;
using fuzz::requireEqual;

namespace {

constexpr std::size_t longestInput = 4096;
constexpr int mostNotices = 24;
constexpr char mark = '\x1e';

constexpr int pairsOfLines = DisplayModel::lineKinds * DisplayModel::lineKinds;
__attribute__((section("__libfuzzer_extra_counters"))) std::array<std::uint8_t, pairsOfLines> pairs;

QString name(DisplayModel::State state)
{
    return QString::fromLatin1(
        QMetaEnum::fromType<DisplayModel::State>().valueToKey(static_cast<int>(state)));
}

/// Looks at an open notice the way a user does.
void inspect(ui::NoticeDialog &dialog, const QString &text)
{
    const auto *const label = dialog.findChild<QLabel *>();
    require(label->text().endsWith(QStringLiteral("</style>") + ui::safeMarkup(text)),
            "another notice:", text);
    const QSize room = dialog.screen()->availableSize();
    require(dialog.width() <= room.width() && dialog.height() <= room.height(),
            "a notice larger than the screen");
    const auto *const ok = dialog.findChild<QPushButton *>();
    require(ok != nullptr && ok->isVisible() && dialog.rect().contains(ok->geometry()),
            "no button in sight");
    dialog.grab();
}

/// Plays one input, step by step, in whichever event loop is running: a notice runs its own.
class Player
{
public:
    Player();

    void play(const QByteArray &input);

private:
    void makeWindow();
    void step();
    bool isQuiet() const;
    void check();
    void act(char letter);
    void write(const QByteArray &bytes);
    void connectClient();
    void click();
    void chooseLanguage(const QString &tag);
    bool closeDialog();

    fuzz::LoopbackService service;
    DisplayModel model;
    std::unique_ptr<MainWindow> window;
    ipc::ServiceClient *client = nullptr;
    QTimer clock;
    QByteArray script;
    int at = 0;
    qint64 linesSeen = 0;
    int noticesClosed = 0;
    bool inspected = false;
    bool connectionSeen = false;
    bool languageTouched = false;
    enum class Phase { Script, Dialogs, LastLine, LastLoss, Done } phase = Phase::Done;
};

Player::Player()
{
    clock.setSingleShot(true);
    QObject::connect(&clock, &QTimer::timeout, &clock, [this] { step(); });
    makeWindow();
}

void Player::makeWindow()
{
    window.reset();
    QSettings{}.clear();
    model = DisplayModel{};
    linesSeen = 0;
    connectionSeen = false;
    languageTouched = false;
    window = std::make_unique<MainWindow>();
    window->show();
    client = window->findChild<ipc::ServiceClient *>();
    QObject::connect(client, &ipc::ServiceClient::messageReceived, window.get(),
                     [this] { ++linesSeen; });
    // Both connections are made after the window's own, and so are called after its slots.
    QObject::connect(client, &ipc::ServiceClient::connectionChanged, window.get(),
                     [this](bool connected) { connectionSeen = connected; });
    // The window begins to connect by itself; every input begins without a connection, after
    // "stopped".
    play("status: stopped\n");
}

void Player::play(const QByteArray &input)
{
    if (languageTouched) {
        makeWindow();
    }
    script = input;
    at = 0;
    noticesClosed = 0;
    inspected = false;
    model.notices.clear();
    phase = Phase::Script;
    connectClient();
    clock.start(0);
    while (phase != Phase::Done) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

bool Player::isQuiet() const
{
    const bool noticeWanted = noticesClosed < model.notices.size();
    const bool noticeOpen =
        qobject_cast<ui::NoticeDialog *>(QApplication::activeModalWidget()) != nullptr;
    // The slot that counts lines has not been called yet for the line that opened the notice.
    const qint64 linesTaken = linesSeen + (noticeOpen ? 1 : 0);
    return connectionSeen == model.connected && linesTaken == model.lines &&
           noticeWanted == noticeOpen;
}

void Player::step()
{
    clock.start(0);
    // On a slow machine the client may reconnect before the script makes it.
    if (!model.connected && service.isCalled()) {
        service.accept();
        model.connectionUp();
    }
    if (!isQuiet()) {
        return;
    }
    check();
    switch (phase) {
    case Phase::Script:
        if (at == script.size()) {
            phase = Phase::Dialogs;
        } else if (script.at(at) == mark && at + 1 < script.size()) {
            at += 2;
            act(script.at(at - 1));
        } else {
            const int next = script.indexOf(mark, at + 1);
            const int end = next < 0 ? script.size() : next;
            write(script.mid(at, end - at));
            at = end;
        }
        break;
    case Phase::Dialogs:
        if (!closeDialog()) {
            phase = Phase::LastLine;
        }
        break;
    case Phase::LastLine:
        if (!model.connected) {
            connectClient();
        }
        write("\nstatus: stopped\n");
        phase = Phase::LastLoss;
        break;
    case Phase::LastLoss:
        // The end of the last line may have made it a notice.
        if (closeDialog()) {
            break;
        }
        if (model.connected) {
            service.close();
            model.connectionDown();
        } else {
            clock.stop();
            phase = Phase::Done;
        }
        break;
    case Phase::Done:
        break;
    }
}

void Player::check()
{
    const auto *const toggle = window->findChild<ui::ToggleSwitch *>();
    const auto *const pill = window->findChild<ui::PillLabel *>();
    const auto *const status = window->findChild<QLabel *>(QStringLiteral("status"));
    requireEqual(name(toggle->state()), name(model.state), "the switch");
    requireEqual(status->text(), model.status, "the status");
    requireEqual(pill->text(), model.pill, "the pill");
    require(model.connected || toggle->state() != DisplayModel::State::On,
            "on without a connection");

    if (model.connected) {
        const QList<QByteArray> lines = service.takeLines();
        for (const QByteArray &line : lines) {
            require(!model.sent.isEmpty(), "sent unasked:", QString::fromUtf8(line));
            requireEqual(QString::fromUtf8(line), QString::fromUtf8(model.sent.takeFirst()),
                         "sent");
        }
        require(model.sent.isEmpty(), "not sent");
    }
    if (auto *const notice = qobject_cast<ui::NoticeDialog *>(QApplication::activeModalWidget());
        notice != nullptr && !inspected) {
        inspect(*notice, model.notices.at(noticesClosed));
        inspected = true;
    }
    const int pair = model.kindBefore * DisplayModel::lineKinds + model.lastKind;
    ++pairs.at(static_cast<std::size_t>(pair));
}

void Player::act(char letter)
{
    switch (letter) {
    case '|':
        break;
    case 'c':
        click();
        break;
    case 'n':
        closeDialog();
        break;
    case 'l':
    case 'r':
        if (model.connected) {
            letter == 'l' ? service.close() : service.reset();
            model.connectionDown();
        }
        break;
    case 'u':
        if (!model.connected) {
            connectClient();
        }
        break;
    case 'd':
        chooseLanguage(QStringLiteral("de"));
        break;
    case 'j':
        chooseLanguage(QStringLiteral("ja"));
        break;
    case 'e':
        chooseLanguage(QStringLiteral("en"));
        break;
    case 's':
        if (auto *const page = window->findChild<ui::SupportDialog *>(); page->isVisible()) {
            Q_EMIT page->closeRequested();
        } else {
            page->openPage();
        }
        break;
    case 'g':
        if (auto *const page = window->findChild<ui::SettingsDialog *>(); page->isVisible()) {
            Q_EMIT page->closeRequested();
        } else {
            page->openPage(model.language);
        }
        break;
    case 'm':
        if (auto *const menu = window->findChild<ui::SideMenu *>(); menu->isVisible()) {
            menu->closeMenu();
        } else {
            menu->openMenu();
        }
        break;
    default:
        write(QByteArray{1, mark} + letter);
        break;
    }
}

void Player::write(const QByteArray &bytes)
{
    if (model.connected) {
        service.write(bytes);
        model.receive(bytes);
    }
}

void Player::connectClient()
{
    client->connectToService();
    service.accept();
    model.connectionUp();
}

void Player::click()
{
    auto *const toggle = window->findChild<ui::ToggleSwitch *>();
    QMouseEvent press{QEvent::MouseButtonPress, toggle->rect().center(), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier};
    QCoreApplication::sendEvent(toggle, &press);
    model.click();
}

void Player::chooseLanguage(const QString &tag)
{
    languageTouched = true;
    Q_EMIT window->findChild<ui::SettingsDialog *>()->languageChanged(tag);
    QCoreApplication::sendPostedEvents();
    model.languageChosen(tag);
}

bool Player::closeDialog()
{
    auto *const dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (dialog == nullptr) {
        return false;
    }
    dialog->reject();
    ++noticesClosed;
    inspected = false;
    return true;
}

// Made with the first input: the parent process of -merge runs no input, and must leave the port to
// its children.
Player &player()
{
    static auto *const one = new Player;
    return *one;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto input =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    if (size <= longestInput && input.count("notice: ") <= mostNotices) {
        player().play(QByteArray{input.constData(), input.size()});
    }
    return 0;
}
