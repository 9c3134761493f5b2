#include "app/SessionStart.h"

#include "app/SingleInstance.h"
#include "ui/X11Atom_linux.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>
#include <QX11Info>

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace app {

namespace {

constexpr int limitMs = 10'000;
constexpr int intervalMs = 100;
// Not 0, with which QCoreApplication::quit() ends every loop.
constexpr int carryOn = 1;

bool hasEmbeddingTray()
{
    if (!QX11Info::isPlatformX11()) {
        return false;
    }
    xcb_connection_t *const server = QX11Info::connection();
    const xcb_atom_t tray =
        ui::x11Atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(QX11Info::appScreen()));
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner{
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, tray), nullptr),
        &std::free};
    return owner && owner->owner != XCB_WINDOW_NONE;
}

bool hasTrayOnBus()
{
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcher, QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << watcher << QStringLiteral("IsStatusNotifierHostRegistered");
    const QDBusReply<QVariant> answer =
        QDBusConnection::sessionBus().call(question, QDBus::Block, intervalMs);
    return answer.value().toBool();
}

// QSystemTrayIcon must not be asked yet: it asks the session bus once and keeps the answer.
bool hasTray()
{
    return hasEmbeddingTray() || hasTrayOnBus();
}

} // namespace

bool takeAutostartId()
{
    constexpr char variable[] = "DESKTOP_AUTOSTART_ID";
    const bool isSet = qEnvironmentVariableIsSet(variable);
    qunsetenv(variable);
    return isSet;
}

bool waitForTray(bool autostarted, SingleInstance &instance)
{
    if (!autostarted && !qGuiApp->isSessionRestored()) {
        return true;
    }
    instance.queueRequests();
    if (hasTray()) {
        return true;
    }
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&loop] {
        if (hasTray()) {
            loop.exit(carryOn);
        }
    });
    poll.start(intervalMs);
    QTimer::singleShot(limitMs, &loop, [&loop] { loop.exit(carryOn); });
    return loop.exec() == carryOn;
}

} // namespace app
