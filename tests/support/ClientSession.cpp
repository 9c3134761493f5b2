#include "tests/support/ClientSession.h"

#include "tests/support/Client.h"
#include "tests/support/Contents.h"

#include <algorithm>

namespace support {

namespace {

constexpr QPoint menuButton{48, 34};
// Outside every window.
constexpr QPoint aside{1270, 1010};

} // namespace

QByteArray setLanguage(const QByteArray &tag)
{
    return R"({"cmd":"set-lang","lang":")" + tag + R"("})";
}

QByteArray setReferral(const QByteArray &code)
{
    return R"({"cmd":"set-referral","code":")" + code + R"("})";
}

QByteArray askStatus()
{
    return QByteArrayLiteral(R"({"cmd":"status"})");
}

void ClientSession::setPace(double pace)
{
    Desktop::setPace(pace);
    // The X server keeps its pace, but at a high one the program wakes up often.
    betweenPicturesMs = pace < 1 ? static_cast<int>(25 / pace) : static_cast<int>(250 / pace);
}

bool ClientSession::startClient()
{
    service.clear();
    last.which = 0;
    client = start(program);
    if (!waitFor([this] { return visibleWindows(clientTitle()).size() == 1; })) {
        qWarning("Windows of the program: %d", visibleWindows(clientTitle()).size());
        return false;
    }
    window = visibleWindows(clientTitle()).first();
    return true;
}

bool ClientSession::startLinkedClient()
{
    if (!startClient()) {
        return false;
    }
    if (!waitFor([this] { return hasReceived(askStatus()); })) {
        qWarning("The service has heard only: %s", service.received().left(1000).constData());
        return false;
    }
    const QImage before = still(window);
    service.sendLine("status: running");
    return changesFrom(before);
}

QProcess *ClientSession::startTrayer()
{
    QProcess *const trayer =
        start(QStringLiteral("trayer"),
              {QStringLiteral("--edge"), QStringLiteral("top"), QStringLiteral("--align"),
               QStringLiteral("left"), QStringLiteral("--widthtype"), QStringLiteral("pixel"),
               QStringLiteral("--width"), QStringLiteral("300"), QStringLiteral("--heighttype"),
               QStringLiteral("pixel"), QStringLiteral("--height"), QStringLiteral("32")});
    return waitFor([this] { return isSelectionOwned("_NET_SYSTEM_TRAY_S0"); }) ? trayer : nullptr;
}

QPoint ClientSession::trayIcon() const
{
    QPoint found;
    waitFor([&] {
        const QPoint before = found;
        found = orange(screenshot().copy(trayArea));
        return !found.isNull() && found == before;
    });
    return found;
}

bool ClientSession::linkAgain()
{
    service.clear();
    service.reset();
    return waitFor([this] { return hasReceived(askStatus()); });
}

void ClientSession::killClient()
{
    client->kill();
    client->waitForFinished(-1);
    stop(client);
}

bool ClientSession::use(const QPoint &point)
{
    activate(window);
    moveMouse(aside);
    const QImage before = still(window);
    click(at(point));
    // Moved away at once, the pointer would leave the hover colour on what appears beneath it.
    still(window);
    moveMouse(aside);
    return changesFrom(before);
}

bool ClientSession::openMenu()
{
    return use(menuButton);
}

bool ClientSession::openPage(const QPoint &row)
{
    return openMenu() && use(row);
}

Desktop::Window ClientSession::openReferral()
{
    if (!openMenu()) {
        return 0;
    }
    click(at(referralRow));
    moveMouse(aside);
    Window dialog = 0;
    const bool came = waitFor([this, &dialog] {
        dialog = activeWindow();
        return dialog != 0 && dialog != window;
    });
    return came ? dialog : 0;
}

bool ClientSession::closeDialog(Window dialog)
{
    pressKey(QStringLiteral("Escape"));
    return isGone(dialog);
}

bool ClientSession::isGone(Window dialog)
{
    return waitFor([this, dialog] { return activeWindow() == window && !isMapped(dialog); });
}

void ClientSession::chooseLanguage(int row)
{
    pressKey(QStringLiteral("Tab"));
    pressKey(QStringLiteral("Home"));
    for (int i = 0; i < row; ++i) {
        pressKey(QStringLiteral("Down"));
    }
    pressKey(QStringLiteral("Tab"));
    pressKey(QStringLiteral("Return"));
}

QImage ClientSession::still(Window which) const
{
    const auto isStill = [this, which] {
        if (last.which == which && !last.since.hasExpired(betweenPicturesMs)) {
            return false;
        }
        // On a busy machine, a program with a running animation may wait long for its turn.
        const QString process = QStringLiteral("/proc/%1/").arg(client->processId());
        const QByteArray turn = contents(process + QStringLiteral("schedstat"));
        const bool sleeps = contents(process + QStringLiteral("stat")).contains(") S ");
        QImage picture = screenshot(which);
        const bool same =
            sleeps && last.which == which && turn == last.turn && picture == last.picture;
        last.which = which;
        last.turn = turn;
        last.picture = std::move(picture);
        last.since.start();
        return same;
    };
    if (!waitFor(isStill)) {
        qWarning("The window changes without end");
    }
    return last.picture;
}

bool ClientSession::pastes(const QByteArray &text) const
{
    return waitFor([&] {
        return run(QStringLiteral("xclip"), {QStringLiteral("-selection"),
                                             QStringLiteral("clipboard"), QStringLiteral("-o")})
                   .output == text;
    });
}

bool ClientSession::changesFrom(const QImage &before)
{
    return waitFor([&] { return still(window) != before; });
}

QList<QPoint> copyButtons(const QImage &page)
{
    constexpr int longestGap = 8;
    // Nothing else on the page has the colour of the buttons' texts.
    QList<QRect> rows;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const QColor colour = page.pixelColor(x, y);
            if (colour.blue() > 190 && colour.blue() - colour.red() > 22) {
                if (rows.isEmpty() || y - rows.last().bottom() > longestGap) {
                    rows.append(QRect{x, y, 1, 1});
                }
                rows.last() |= QRect{x, y, 1, 1};
            }
        }
    }
    QList<QPoint> middles;
    std::transform(rows.cbegin(), rows.cend(), std::back_inserter(middles),
                   [](const QRect &row) { return row.center(); });
    return middles;
}

QPoint orange(const QImage &picture)
{
    QRect found;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor colour = picture.pixelColor(x, y);
            if (colour.red() > 180 && colour.green() < 160 && colour.blue() < 120) {
                found |= QRect{x, y, 1, 1};
            }
        }
    }
    return found.isNull() ? QPoint{} : found.center();
}

} // namespace support
