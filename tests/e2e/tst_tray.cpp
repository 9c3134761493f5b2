#include "tests/support/Client.h"
#include "tests/support/ClientSession.h"
#include "tests/support/Desktop.h"
#include "tests/support/StatusPanel.h"

#include <QTest>

#include <algorithm>
#include <map>
#include <memory>

using support::clientProgram;
using support::ClientSession;
using support::clientTitle;
using support::Desktop;
using support::StatusPanel;
using support::waitFor;

namespace {

/// How a desktop shows other programs' icons.
enum class Host {
    /// XEmbed, without a session bus.
    XEmbed,
    /// StatusNotifierItem, over the session bus.
    StatusNotifier
};

/// A desktop with a tray.
class TrayDesktop : public ClientSession
{
public:
    explicit TrayDesktop(Host host)
    {
        if (host == Host::XEmbed) {
            trayIsUp = startTrayer() != nullptr;
        } else {
            panel = std::make_unique<StatusPanel>(*this);
            trayIsUp = panel->isUp();
        }
        keepAll();
    }

    /// Starts the client and waits until it is connected and has its icon.
    void startClientInTray()
    {
        service.listen();
        // The icon of an earlier client may still be there.
        const auto isEmpty = [this] {
            return support::orange(screenshot().copy(trayArea)).isNull();
        };
        up = trayIsUp && waitFor(isEmpty) && startClient() &&
             waitFor([this] { return service.connected() == 1; }) && !trayIcon().isNull();
    }

    bool isActive() const { return activeWindow() == window; }

    /// The one menu or tool tip that is open; 0 as long as there is none.
    Window popup() const
    {
        const QList<Window> found = unmanagedWindows();
        return found.size() == 1 ? found.first() : 0;
    }

    bool trayIsUp = false;
    /// The tray and the client are there.
    bool up = false;
    std::unique_ptr<StatusPanel> panel;
};

void addHosts()
{
    QTest::addColumn<Host>("host");
    QTest::newRow("XEmbed") << Host::XEmbed;
    QTest::newRow("StatusNotifierItem") << Host::StatusNotifier;
}

} // namespace

Q_DECLARE_METATYPE(Host)

class tst_Tray : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void toolTipOverBus();
    void toolTipUnderMouse();
    void clickBringsWindowBack_data();
    void clickBringsWindowBack();
    void clickBringsWindowToFront_data();
    void clickBringsWindowToFront();
    void otherButtonsDoNot_data();
    void otherButtonsDoNot();
    void menuOverBus();
    void menuUnderMouse_data();
    void menuUnderMouse();
    void noticesOverHiddenWindow_data();
    void noticesOverHiddenWindow();
    void withoutTray();
    void trayThatComesLate();

private:
    static void verifyQuietEnd(QProcess *client);
    /// With a client that has just been started.
    TrayDesktop &desktopOf(Host host);

    std::map<Host, std::unique_ptr<TrayDesktop>> desktops;
};

void tst_Tray::cleanup()
{
    for (const auto &each : desktops) {
        each.second->stopAll();
        each.second->service.stop();
    }
}

TrayDesktop &tst_Tray::desktopOf(Host host)
{
    std::unique_ptr<TrayDesktop> &desktop = desktops[host];
    if (desktop == nullptr) {
        desktop = std::make_unique<TrayDesktop>(host);
    }
    desktop->startClientInTray();
    return *desktop;
}

void tst_Tray::verifyQuietEnd(QProcess *client)
{
    QVERIFY(waitFor([client] { return client->state() == QProcess::NotRunning; }));
    QCOMPARE(client->readAllStandardOutput(), QByteArray{});
    // Qt sometimes asks for a frame that the window manager has just destroyed.
    QByteArrayList errors = client->readAllStandardError().split('\n');
    errors.erase(std::remove_if(errors.begin(), errors.end(),
                                [](const QByteArray &line) {
                                    return line.startsWith("qt.qpa.xcb: QXcbConnection: XCB error: "
                                                           "3 (BadWindow)");
                                }),
                 errors.end());
    QCOMPARE(errors.join('\n'), QByteArray{});
    QCOMPARE(client->exitStatus(), QProcess::NormalExit);
    QCOMPARE(client->exitCode(), 0);
}

void tst_Tray::toolTipOverBus()
{
    TrayDesktop &desktop = desktopOf(Host::StatusNotifier);
    QVERIFY(desktop.up);
    const auto shows = [&desktop](const char16_t *text) {
        const QString expected = QString::fromUtf16(text);
        return waitFor([&] { return desktop.panel->toolTip() == expected; });
    };
    QVERIFY(shows(u"IXOVPN \u2014 disconnected"));
    desktop.service.sendLine("status: starting");
    QVERIFY(shows(u"IXOVPN \u00e2\u20ac\u201d Connecting\u2026"));
    desktop.service.sendLine("status: running");
    QVERIFY(shows(u"IXOVPN \u00e2\u20ac\u201d Connected"));
    desktop.service.sendLine("error: no route");
    QVERIFY(shows(u"IXOVPN \u00e2\u20ac\u201d Error"));
    desktop.service.stop();
    QVERIFY(shows(u"IXOVPN \u00e2\u20ac\u201d Service is not running"));
}

// The text of an XEmbed icon's tool tip cannot be read, but each text has its own size.
void tst_Tray::toolTipUnderMouse()
{
    TrayDesktop &desktop = desktopOf(Host::XEmbed);
    QVERIFY(desktop.up);
    const auto picture = [&desktop] {
        Desktop::Window tip = 0;
        desktop.moveMouse({600, 10});
        waitFor([&] { return desktop.popup() == 0; });
        desktop.moveMouse(desktop.trayIcon());
        waitFor([&] {
            // Qt shows a tool tip only after the mouse has moved over the icon.
            desktop.moveMouse(desktop.trayIcon() + QPoint{1, 0});
            tip = desktop.popup();
            return tip != 0;
        });
        return desktop.geometry(tip).size();
    };
    const QSize first = picture();
    QVERIFY(first.width() > 40);
    desktop.service.sendLine("status: starting");
    const QSize connecting = picture();
    QVERIFY(connecting != first);
    desktop.service.sendLine("status: stopped");
    const QSize disconnected = picture();
    QVERIFY(disconnected != connecting);
    desktop.service.sendLine("status: starting");
    QCOMPARE(picture(), connecting);
}

void tst_Tray::clickBringsWindowBack_data()
{
    QTest::addColumn<Host>("host");
    QTest::addColumn<bool>("minimised");
    QTest::addColumn<bool>("twice");
    for (const Host host : {Host::XEmbed, Host::StatusNotifier}) {
        for (const bool minimised : {false, true}) {
            for (const bool twice : {false, true}) {
                QTest::addRow("%s, %s, %s", host == Host::XEmbed ? "XEmbed" : "StatusNotifierItem",
                              minimised ? "minimised" : "hidden", twice ? "double click" : "click")
                    << host << minimised << twice;
            }
        }
    }
}

void tst_Tray::clickBringsWindowBack()
{
    QFETCH(Host, host);
    QFETCH(bool, minimised);
    QFETCH(bool, twice);
    TrayDesktop &desktop = desktopOf(host);
    QVERIFY(desktop.up);
    if (minimised) {
        desktop.minimise(desktop.window);
    } else {
        desktop.close(desktop.window);
    }
    QVERIFY(waitFor([&] { return !desktop.isShown(); }));
    QCOMPARE(desktop.client->state(), QProcess::Running);

    if (twice) {
        desktop.doubleClick(desktop.trayIcon());
    } else {
        desktop.click(desktop.trayIcon());
    }
    QVERIFY(waitFor([&] { return desktop.isShown(); }));
    QVERIFY(waitFor([&] { return desktop.isActive(); }));
    QCOMPARE(desktop.geometry(desktop.window).size(), QSize(360, 560));
    QVERIFY(!desktop.trayIcon().isNull());
}

void tst_Tray::clickBringsWindowToFront_data()
{
    addHosts();
}

void tst_Tray::clickBringsWindowToFront()
{
    QFETCH(Host, host);
    TrayDesktop &desktop = desktopOf(host);
    QVERIFY(desktop.up);
    const QRect place = desktop.geometry(desktop.window);
    desktop.start(QStringLiteral("xev"), {QStringLiteral("-geometry"), QStringLiteral("%1x%2+%3+%4")
                                                                           .arg(place.width())
                                                                           .arg(place.height())
                                                                           .arg(place.x())
                                                                           .arg(place.y())});
    const QString other = QStringLiteral("Event Tester");
    QVERIFY(waitFor([&] { return desktop.visibleWindows(other).size() == 1; }));
    desktop.activate(desktop.visibleWindows(other).first());
    QVERIFY(!desktop.isActive());

    desktop.click(desktop.trayIcon());
    QVERIFY(waitFor([&] { return desktop.isActive(); }));
    const QImage picture = desktop.screenshot(desktop.window);
    QCOMPARE(picture.pixelColor(2, 2), QColor(27, 29, 61));
}

void tst_Tray::otherButtonsDoNot_data()
{
    addHosts();
}

void tst_Tray::otherButtonsDoNot()
{
    QFETCH(Host, host);
    TrayDesktop &desktop = desktopOf(host);
    QVERIFY(desktop.up);
    desktop.close(desktop.window);
    QVERIFY(waitFor([&] { return !desktop.isShown(); }));
    QVERIFY(desktop.linkAgain());
    desktop.click(desktop.trayIcon(), 2);
    desktop.click(desktop.trayIcon(), 3);
    // Once the menu is open, the click of the middle button has been handled.
    QVERIFY(waitFor([&] { return desktop.popup() != 0; }));
    QVERIFY(!desktop.isShown());
}

void tst_Tray::menuOverBus()
{
    TrayDesktop &desktop = desktopOf(Host::StatusNotifier);
    QVERIFY(desktop.up);
    const QList<StatusPanel::MenuEntry> entries = desktop.panel->menu();
    QCOMPARE(entries.size(), 3);
    QCOMPARE(entries.at(0).label, QStringLiteral("Show"));
    QCOMPARE(entries.at(1).type, QStringLiteral("separator"));
    QCOMPARE(entries.at(2).label, QStringLiteral("Quit"));

    desktop.close(desktop.window);
    QVERIFY(waitFor([&] { return !desktop.isShown(); }));
    desktop.panel->choose(QStringLiteral("Show"));
    QVERIFY(waitFor([&] { return desktop.isShown(); }));

    desktop.panel->choose(QStringLiteral("Quit"));
    verifyQuietEnd(desktop.client);
}

void tst_Tray::menuUnderMouse_data()
{
    addHosts();
}

void tst_Tray::menuUnderMouse()
{
    QFETCH(Host, host);
    TrayDesktop &desktop = desktopOf(host);
    QVERIFY(desktop.up);
    desktop.close(desktop.window);
    QVERIFY(waitFor([&] { return !desktop.isShown(); }));
    QVERIFY(desktop.linkAgain());

    const auto openMenu = [&desktop] {
        desktop.click(desktop.trayIcon(), 3);
        return waitFor([&] { return desktop.popup() != 0; }) ? desktop.geometry(desktop.popup())
                                                             : QRect{};
    };
    constexpr int intoEntry = 14;
    QRect menu = openMenu();
    QVERIFY(menu.height() > 3 * intoEntry);
    desktop.click({menu.center().x(), menu.top() + intoEntry});
    QVERIFY(waitFor([&] { return desktop.isShown(); }));
    QVERIFY(waitFor([&] { return desktop.popup() == 0; }));

    menu = openMenu();
    QVERIFY(!menu.isEmpty());
    desktop.click({menu.center().x(), menu.bottom() - intoEntry});
    verifyQuietEnd(desktop.client);
}

void tst_Tray::noticesOverHiddenWindow_data()
{
    addHosts();
}

void tst_Tray::noticesOverHiddenWindow()
{
    QFETCH(Host, host);
    TrayDesktop &desktop = desktopOf(host);
    QVERIFY(desktop.up);
    desktop.close(desktop.window);
    QVERIFY(waitFor([&] { return !desktop.isShown(); }));
    desktop.service.sendLine("notice: <b>one</b>");
    desktop.service.sendLine("notice: two");
    const QString notice = QStringLiteral("Notice");
    QVERIFY(waitFor([&] { return desktop.visibleWindows(notice).size() == 1; }));

    // Closing the last window that can be seen leaves the program in the tray.
    const Desktop::Window first = desktop.visibleWindows(notice).first();
    desktop.activate(first);
    desktop.pressKey(QStringLiteral("Escape"));
    QVERIFY(waitFor([&] {
        const QList<Desktop::Window> now = desktop.visibleWindows(notice);
        return now.size() == 1 && now.first() != first;
    }));
    desktop.activate(desktop.visibleWindows(notice).first());
    desktop.pressKey(QStringLiteral("Return"));
    QVERIFY(waitFor([&] { return desktop.visibleWindows(notice).isEmpty(); }));
    desktop.service.sendLine("notice: three");
    QVERIFY(waitFor([&] { return desktop.visibleWindows(notice).size() == 1; }));
    QCOMPARE(desktop.client->state(), QProcess::Running);

    if (host == Host::StatusNotifier) {
        desktop.panel->choose(QStringLiteral("Quit"));
    } else {
        desktop.activate(desktop.visibleWindows(notice).first());
        desktop.pressKey(QStringLiteral("Return"));
        QVERIFY(waitFor([&] { return desktop.visibleWindows(notice).isEmpty(); }));
        QVERIFY(desktop.linkAgain());
        desktop.click(desktop.trayIcon(), 3);
        QVERIFY(waitFor([&] { return desktop.popup() != 0; }));
        desktop.pressKey(QStringLiteral("Up"));
        desktop.pressKey(QStringLiteral("Return"));
    }
    verifyQuietEnd(desktop.client);
}

void tst_Tray::withoutTray()
{
    Desktop desktop;
    QProcess *const client = desktop.start(clientProgram());
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
    const Desktop::Window window = desktop.visibleWindows(clientTitle()).first();
    QCOMPARE(desktop.geometry(window).size(), QSize(360, 560));
    desktop.close(window);
    verifyQuietEnd(client);
}

void tst_Tray::trayThatComesLate()
{
    Desktop desktop;
    QProcess *const client = desktop.start(clientProgram());
    QVERIFY(waitFor([&] { return desktop.visibleWindows(clientTitle()).size() == 1; }));
    desktop.start(QStringLiteral("trayer"));
    QVERIFY(waitFor([&] { return !desktop.windows(QStringLiteral("panel")).isEmpty(); }));

    // The client has no icon in a tray that came late: a hidden window could not be reached.
    desktop.close(desktop.visibleWindows(clientTitle()).first());
    verifyQuietEnd(client);
}

QTEST_GUILESS_MAIN(tst_Tray)

#include "tst_tray.moc"
