#include "app/PresentWindow_linux.h"

#include "ui/X11Atom_linux.h"

#include <QApplication>
#include <QWidget>
#include <QX11Info>

#include <algorithm>

#include <xcb/xcb.h>

namespace app {

namespace {

// Values of the window manager's and the launchers' common conventions (freedesktop.org: Extended
// Window Manager Hints, Startup Notification).
constexpr uint32_t directUserAction = 2;
constexpr int announcementPart = 20;
constexpr char timeMark[] = "_TIME";

uint32_t userTime(const QByteArray &startupId)
{
    const int mark = startupId.lastIndexOf(timeMark);
    return mark < 0
               ? XCB_CURRENT_TIME
               : static_cast<uint32_t>(
                     startupId.mid(mark + static_cast<int>(sizeof timeMark) - 1).toULongLong());
}

xcb_client_message_event_t clientMessage(xcb_window_t window, uint8_t format,
                                         const QByteArray &type)
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = format;
    message.window = window;
    message.type = ui::x11Atom(type);
    return message;
}

void sendToRoot(const xcb_client_message_event_t &message, uint32_t mask)
{
    xcb_send_event(QX11Info::connection(), 0, static_cast<xcb_window_t>(QX11Info::appRootWindow()),
                   mask, reinterpret_cast<const char *>(&message));
}

// Qt would say that the program asks, not the user, and focus-stealing prevention would refuse
// that.
void activate(xcb_window_t window, uint32_t time)
{
    xcb_client_message_event_t message = clientMessage(window, 32, "_NET_ACTIVE_WINDOW");
    message.data.data32[0] = directUserAction;
    message.data.data32[1] = time;
    sendToRoot(message, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
}

// Qt would announce it only with the next window that it maps.
void announceStartupComplete(xcb_window_t sender, const QByteArray &startupId)
{
    QByteArray escaped = startupId;
    escaped.replace('\\', "\\\\").replace('"', "\\\"");
    QByteArray text = "remove: ID=\"" + escaped + '"';
    text.append('\0');

    const char *type = "_NET_STARTUP_INFO_BEGIN";
    for (int at = 0; at < text.size(); at += announcementPart) {
        xcb_client_message_event_t message = clientMessage(sender, 8, type);
        const QByteArray part = text.mid(at, announcementPart);
        std::copy(part.begin(), part.end(), message.data.data8);
        sendToRoot(message, XCB_EVENT_MASK_PROPERTY_CHANGE);
        type = "_NET_STARTUP_INFO";
    }
}

bool isWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String{"wayland"});
}

} // namespace

void presentWindow(QWidget *window, const QByteArray &startupId)
{
    QWidget *const dialog = QApplication::activeModalWidget();
    // On Wayland Qt cannot raise a window, but a new one opens in front. A dialog would end if it
    // were hidden.
    if (isWayland() && dialog == nullptr && !window->isActiveWindow()) {
        window->hide();
    }
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    if (isWayland()) {
        return;
    }
    QWidget *const front = dialog != nullptr ? dialog : window;
    window->raise();
    front->raise();
    front->activateWindow();
    if (QX11Info::isPlatformX11()) {
        const auto id = static_cast<xcb_window_t>(front->winId());
        activate(id, userTime(startupId));
        if (!startupId.isEmpty()) {
            announceStartupComplete(id, startupId);
        }
        xcb_flush(QX11Info::connection());
    }
}

} // namespace app
