#include "app/WindowActivation_linux.h"

#include <QApplication>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace app {

namespace {

// Values of the window manager's and the launchers' common conventions (freedesktop.org: Extended
// Window Manager Hints, Startup Notification).
constexpr uint32_t directUserAction = 2;
constexpr std::size_t announcementPart = 20;
constexpr char timeMark[] = "_TIME";

uint32_t userTime(const QByteArray &startupId)
{
    const int mark = startupId.lastIndexOf(timeMark);
    return mark < 0
               ? XCB_CURRENT_TIME
               : static_cast<uint32_t>(
                     startupId.mid(mark + static_cast<int>(sizeof timeMark) - 1).toULongLong());
}

/// A connection of our own to the display: the toolkit has no public way to send these messages.
class Display
{
public:
    Display()
        : connection(xcb_connect(nullptr, &screenNumber))
    {}
    ~Display() { xcb_disconnect(connection); }
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    bool isOpen() const { return xcb_connection_has_error(connection) == 0; }

    void activate(xcb_window_t window, uint32_t time)
    {
        xcb_client_message_event_t message = clientMessage(window, 32, "_NET_ACTIVE_WINDOW");
        message.data.data32[0] = directUserAction;
        message.data.data32[1] = time;
        sendToRoot(message,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    }

    void announceStartupComplete(const QByteArray &startupId)
    {
        const xcb_window_t sender = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, root(), -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        QByteArray escaped = startupId;
        escaped.replace('\\', "\\\\").replace('"', "\\\"");
        QByteArray text = "remove: ID=\"" + escaped + '"';
        text.append('\0');

        const char *type = "_NET_STARTUP_INFO_BEGIN";
        for (int at = 0; at < text.size(); at += static_cast<int>(announcementPart)) {
            xcb_client_message_event_t message = clientMessage(sender, 8, type);
            const QByteArray part = text.mid(at, static_cast<int>(announcementPart));
            std::copy(part.begin(), part.end(), message.data.data8);
            sendToRoot(message, XCB_EVENT_MASK_PROPERTY_CHANGE);
            type = "_NET_STARTUP_INFO";
        }
        xcb_destroy_window(connection, sender);
    }

    // What a client that has gone has sent is not always read; an answer shows that it was.
    void waitUntilRead()
    {
        const xcb_get_input_focus_cookie_t asked = xcb_get_input_focus(connection);
        std::free(xcb_get_input_focus_reply(connection, asked, nullptr));
    }

private:
    xcb_window_t root() const
    {
        xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
        for (int i = 0; i < screenNumber && it.rem > 1; ++i) {
            xcb_screen_next(&it);
        }
        return it.data->root;
    }

    xcb_atom_t atom(const QByteArray &name) const
    {
        const xcb_intern_atom_cookie_t asked =
            xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> answer{
            xcb_intern_atom_reply(connection, asked, nullptr), &std::free};
        return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    xcb_client_message_event_t clientMessage(xcb_window_t window, uint8_t format,
                                             const char *type) const
    {
        xcb_client_message_event_t message = {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = format;
        message.window = window;
        message.type = atom(type);
        return message;
    }

    void sendToRoot(const xcb_client_message_event_t &message, uint32_t mask)
    {
        xcb_send_event(connection, 0, root(), mask, reinterpret_cast<const char *>(&message));
    }

    int screenNumber = 0;
    xcb_connection_t *connection;
};

bool isWayland()
{
    return QGuiApplication::platformName().startsWith(QLatin1String{"wayland"});
}

void tellX11(const QWidget *window, const QByteArray &startupId)
{
    // The window manager must have seen the window before it is told to activate it.
    QGuiApplication::sync();
    Display display;
    if (!display.isOpen()) {
        return;
    }
    display.activate(static_cast<xcb_window_t>(window->winId()), userTime(startupId));
    if (!startupId.isEmpty()) {
        display.announceStartupComplete(startupId);
    }
    display.waitUntilRead();
}

} // namespace

QByteArray startupIdFromEnvironment()
{
    return qgetenv("DESKTOP_STARTUP_ID");
}

void showAtUserRequest(QWidget *window, const QByteArray &startupId)
{
    QWidget *const dialog = QApplication::activeModalWidget();
    // There the toolkit can put no window to the front, but a new one comes up there. To hide a
    // dialog would be to end it.
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
    window->activateWindow();
    front->raise();
    front->activateWindow();
    if (QGuiApplication::platformName() == QLatin1String{"xcb"}) {
        tellX11(front, startupId);
    }
}

} // namespace app
