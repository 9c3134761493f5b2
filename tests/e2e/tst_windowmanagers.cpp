#include "tests/support/ClientSession.h"

#include <QTest>

#include <functional>
#include <map>
#include <memory>

using support::clientProgram;
using support::ClientSession;
using support::clientTitle;
using support::Desktop;
using support::waitFor;
using WindowManager = Desktop::WindowManager;

namespace {

/// Where the window is while its user does something else.
enum class Whereabouts { Behind, Minimised, InTray };

/// A desktop with a tray and the client, linked to its service.
class Workplace : public ClientSession
{
public:
    explicit Workplace(WindowManager manager)
        : ClientSession(clientProgram(), manager)
    {
        trayIsUp = startTrayer() != nullptr;
        service.listen();
        hurry();
        keepAll();
    }

    bool trayIsUp = false;

    QList<Window> notices() const { return visibleWindows(QStringLiteral("Notice")); }

    [[nodiscard]] bool put(Whereabouts whereabouts)
    {
        switch (whereabouts) {
        case Whereabouts::Behind:
            return true;
        case Whereabouts::Minimised:
            minimise(window);
            break;
        case Whereabouts::InTray:
            close(window);
            return waitFor([this] { return !isManaged(); });
        }
        return waitFor([this] { return !isShown(); });
    }

private:
    /// Also when it is minimised.
    bool isManaged() const
    {
        const QByteArray state =
            run(QStringLiteral("xprop"),
                {QStringLiteral("-id"), QString::number(window), QStringLiteral("WM_STATE")})
                .output;
        return state.contains("Normal") || state.contains("Iconic");
    }
};

void addWindowManagers(const std::function<void(const char *, WindowManager)> &add)
{
    add("openbox", WindowManager::Openbox);
    add("metacity", WindowManager::Metacity);
    add("xfwm4", WindowManager::Xfwm4);
}

} // namespace

Q_DECLARE_METATYPE(WindowManager)
Q_DECLARE_METATYPE(Whereabouts)

/// What the window managers of common desktops make of the program's windows.
class tst_WindowManagers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void noticeLeavesTheKeyboardAlone_data();
    void noticeLeavesTheKeyboardAlone();
    void noticeOfTheGreetingTakesTheKeyboard_data();
    void noticeOfTheGreetingTakesTheKeyboard();
    void windowStaysWhereItWasPut_data();
    void windowStaysWhereItWasPut();

private:
    /// Without a client; null if its tray does not come up.
    Workplace *workplaceOf(WindowManager manager);
    /// With a client that has just been started; null if it does not come up.
    Workplace *workplaceWithClient(WindowManager manager);

    std::map<WindowManager, std::unique_ptr<Workplace>> workplaces;
};

void tst_WindowManagers::cleanup()
{
    for (const auto &each : workplaces) {
        each.second->stopAll();
    }
}

Workplace *tst_WindowManagers::workplaceOf(WindowManager manager)
{
    // One service at a time has the port.
    if (workplaces.count(manager) == 0) {
        workplaces.clear();
        workplaces[manager] = std::make_unique<Workplace>(manager);
    }
    Workplace *const workplace = workplaces[manager].get();
    return workplace->trayIsUp ? workplace : nullptr;
}

Workplace *tst_WindowManagers::workplaceWithClient(WindowManager manager)
{
    Workplace *const workplace = workplaceOf(manager);
    return workplace != nullptr && workplace->startLinkedClient() ? workplace : nullptr;
}

void tst_WindowManagers::noticeLeavesTheKeyboardAlone_data()
{
    QTest::addColumn<WindowManager>("manager");
    QTest::addColumn<Whereabouts>("whereabouts");
    addWindowManagers([](const char *name, WindowManager manager) {
        QTest::addRow("%s, behind", name) << manager << Whereabouts::Behind;
        QTest::addRow("%s, minimised", name) << manager << Whereabouts::Minimised;
        QTest::addRow("%s, in the tray", name) << manager << Whereabouts::InTray;
    });
}

void tst_WindowManagers::noticeLeavesTheKeyboardAlone()
{
    QFETCH(WindowManager, manager);
    QFETCH(Whereabouts, whereabouts);
    Workplace *const desktop = workplaceWithClient(manager);
    QVERIFY(desktop != nullptr);

    // It covers the window's left half.
    const QRect place = desktop->geometry(desktop->window);
    QProcess *const editor = desktop->start(
        QStringLiteral("xev"),
        {QStringLiteral("-event"), QStringLiteral("keyboard"), QStringLiteral("-geometry"),
         QStringLiteral("280x600+%1+%2").arg(place.x() - 100).arg(place.y() - 30)});
    QVERIFY(desktop->put(whereabouts));
    const QString title = QStringLiteral("Event Tester");
    QVERIFY(waitFor([&] { return desktop->visibleWindows(title).size() == 1; }));
    const Desktop::Window other = desktop->visibleWindows(title).first();
    desktop->activate(other);
    QVERIFY(desktop->linkAgain());
    const QList<Desktop::Window> shown = desktop->visibleWindows(clientTitle());
    const QPoint coveredCorner = place.topLeft() + QPoint{2, 2};
    const QColor cover = desktop->screenshot().pixelColor(coveredCorner);

    int typed = 0;
    const auto type = [&](const char *key) {
        desktop->pressKey(QString::fromLatin1(key));
        ++typed;
    };
    type("a");
    desktop->service.sendLine("notice: one");
    desktop->service.sendLine("notice: two");
    QVERIFY(waitFor([&] {
        type("b");
        return desktop->notices().size() == 1;
    }));
    const Desktop::Window first = desktop->notices().first();
    // What the program asks for as the dialog comes up, it has asked for when it has drawn it.
    desktop->still(first);
    type("c");
    type("Return");
    QByteArray heard;
    QVERIFY(waitFor([&] {
        heard += editor->readAllStandardOutput();
        return heard.count("KeyPress event") == typed;
    }));
    QCOMPARE(desktop->activeWindow(), other);
    // This one marks no window that can be seen.
    if (manager != WindowManager::Metacity) {
        QVERIFY(waitFor([&] { return desktop->wantsAttention(first); }));
    }
    QCOMPARE(desktop->notices(), QList<Desktop::Window>{first});
    QCOMPARE(desktop->visibleWindows(clientTitle()), shown);
    QCOMPARE(desktop->screenshot().pixelColor(coveredCorner), cover);

    // The part that the other window leaves free.
    desktop->click(desktop->geometry(first).topRight() + QPoint{-8, 8});
    QVERIFY(waitFor([&] { return desktop->activeWindow() == first; }));
    QVERIFY(waitFor([&] { return !desktop->wantsAttention(first); }));
    desktop->pressKey(QStringLiteral("Return"));
    QVERIFY(waitFor([&] {
        const QList<Desktop::Window> now = desktop->notices();
        return now.size() == 1 && now != QList<Desktop::Window>{first};
    }));
    // Whoever reads one notice after the other needs no mouse for it.
    const Desktop::Window second = desktop->notices().first();
    QVERIFY(waitFor([&] { return desktop->activeWindow() == second; }));
    desktop->pressKey(QStringLiteral("Escape"));
    QVERIFY(waitFor([&] { return desktop->notices().isEmpty(); }));
}

void tst_WindowManagers::noticeOfTheGreetingTakesTheKeyboard_data()
{
    QTest::addColumn<WindowManager>("manager");
    addWindowManagers(
        [](const char *name, WindowManager manager) { QTest::newRow(name) << manager; });
}

// It usually comes before the window manager has given the keyboard to the new window.
void tst_WindowManagers::noticeOfTheGreetingTakesTheKeyboard()
{
    QFETCH(WindowManager, manager);
    Workplace *const desktop = workplaceOf(manager);
    QVERIFY(desktop != nullptr);
    const QObject greeting;
    connect(&desktop->service, &support::ScriptedService::clientConnected, &greeting,
            [desktop] { desktop->service.sendLine("notice: one"); });
    QVERIFY(desktop->startClient());
    QVERIFY(waitFor([&] { return desktop->notices().size() == 1; }));
    const Desktop::Window notice = desktop->notices().first();
    QVERIFY(waitFor([&] { return desktop->activeWindow() == notice; }));
    desktop->pressKey(QStringLiteral("Return"));
    QVERIFY(waitFor([&] { return desktop->notices().isEmpty(); }));
    QVERIFY(waitFor([&] { return desktop->activeWindow() == desktop->window; }));
}

void tst_WindowManagers::windowStaysWhereItWasPut_data()
{
    QTest::addColumn<WindowManager>("manager");
    QTest::addColumn<QPoint>("corner");
    QTest::addColumn<bool>("minimised");
    addWindowManagers([](const char *name, WindowManager manager) {
        QTest::addRow("%s, elsewhere", name) << manager << QPoint{600, 120} << false;
        QTest::addRow("%s, partly outside", name) << manager << QPoint{-150, 700} << false;
        QTest::addRow("%s, minimised", name) << manager << QPoint{600, 120} << true;
    });
}

void tst_WindowManagers::windowStaysWhereItWasPut()
{
    QFETCH(WindowManager, manager);
    QFETCH(QPoint, corner);
    QFETCH(bool, minimised);
    Workplace *const desktop = workplaceWithClient(manager);
    QVERIFY(desktop != nullptr);
    const QRect before = desktop->geometry(desktop->window);
    desktop->move(desktop->window, corner);
    QVERIFY(waitFor([&] { return desktop->geometry(desktop->window) != before; }));
    desktop->still(desktop->window);
    const QRect place = desktop->geometry(desktop->window);

    const std::function<void()> waysBack[] = {
        [&] { desktop->click(desktop->trayIcon()); },
        [&] { desktop->run(clientProgram()); },
        [&] {
            desktop->service.sendLine("notice: one");
            QVERIFY(waitFor([&] { return desktop->notices().size() == 1; }));
            desktop->activate(desktop->notices().first());
            desktop->pressKey(QStringLiteral("Return"));
            QVERIFY(waitFor([&] { return desktop->notices().isEmpty(); }));
            desktop->click(desktop->trayIcon());
        },
    };
    for (const auto &comeBack : waysBack) {
        if (minimised) {
            QVERIFY(desktop->put(Whereabouts::Minimised));
        }
        QVERIFY(desktop->put(Whereabouts::InTray));
        comeBack();
        QVERIFY(waitFor([&] { return desktop->isShown(); }));
        waitFor([&] { return desktop->geometry(desktop->window) == place; });
        desktop->still(desktop->window);
        QCOMPARE(desktop->geometry(desktop->window), place);
    }
}

QTEST_GUILESS_MAIN(tst_WindowManagers)

#include "tst_windowmanagers.moc"
