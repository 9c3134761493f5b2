#include "tests/support/Desktop.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

// These headers define macros that break other headers.
#include <X11/Xlib-xcb.h>
#include <xcb/xcb.h>
extern "C" {
#include <xdo.h>
}

namespace support {

namespace {

constexpr int smallestPopup = 5;

// No window manager starts with this number: the usual ones are one and four.
constexpr uint32_t unusualDesktops = 5;

// Two presses of a key within a millisecond look like one that is held down.
constexpr useconds_t keyUs = 2'000;

constexpr uint32_t longestProperty = 1'024;

// The source indication of EWMH for requests of the user, as pagers send them.
constexpr uint32_t fromUser = 2;

constexpr uint32_t iconicState = 3;

// The frame's north-western corner, x and y given.
constexpr uint32_t cornerByUser = XCB_GRAVITY_NORTH_WEST | 1U << 8 | 1U << 9 | fromUser << 12;

template <typename Reply> std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

} // namespace

/// A connection to the display server. Windows that are gone have no properties, no geometry and no
/// children.
class Desktop::Server
{
public:
    explicit Server(const QString &display)
        : xdo(xdo_new(display.toLatin1().constData()), &xdo_free)
    {
        if (xdo == nullptr) {
            qFatal("The display server does not answer at %s", qPrintable(display));
        }
        xcb = XGetXCBConnection(xdo->xdpy);
        root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    }

    xcb_atom_t atom(const char *name) const
    {
        const auto length = static_cast<uint16_t>(std::strlen(name));
        return owned(xcb_intern_atom_reply(xcb, xcb_intern_atom(xcb, 0, length, name), nullptr))
            ->atom;
    }

    /// Sends all requests before it waits for the first reply.
    template <typename Request, typename Reply>
    auto ask(const std::vector<xcb_window_t> &windows, Request request, Reply reply) const
    {
        std::vector<decltype(request(XCB_WINDOW_NONE))> asked;
        std::transform(windows.begin(), windows.end(), std::back_inserter(asked), request);
        std::vector<decltype(owned(reply(xcb, asked.front(), nullptr)))> answers;
        answers.reserve(asked.size());
        for (const auto question : asked) {
            answers.push_back(owned(reply(xcb, question, nullptr)));
        }
        return answers;
    }

    std::vector<xcb_window_t> childrenOf(const std::vector<xcb_window_t> &parents) const
    {
        const auto request = [this](xcb_window_t window) { return xcb_query_tree(xcb, window); };
        std::vector<xcb_window_t> all;
        for (const auto &tree : ask(parents, request, &xcb_query_tree_reply)) {
            if (tree != nullptr) {
                const xcb_window_t *const first = xcb_query_tree_children(tree.get());
                all.insert(all.end(), first, first + xcb_query_tree_children_length(tree.get()));
            }
        }
        return all;
    }

    auto attributes(xcb_window_t window) const
    {
        return owned(
            xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr));
    }

    std::vector<uint32_t> property(xcb_window_t window, const char *name) const
    {
        const auto found = owned(
            xcb_get_property_reply(xcb,
                                   xcb_get_property(xcb, 0, window, atom(name),
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty),
                                   nullptr));
        if (found == nullptr || found->format != 32) {
            return {};
        }
        const auto *const values =
            static_cast<const uint32_t *>(xcb_get_property_value(found.get()));
        return {values, values + found->value_len};
    }

    bool hasState(Window window, const char *state) const
    {
        const auto states = property(static_cast<xcb_window_t>(window), "_NET_WM_STATE");
        return std::find(states.begin(), states.end(), atom(state)) != states.end();
    }

    void askWindowManager(Window window, const char *what, std::array<uint32_t, 5> details) const
    {
        xcb_client_message_event_t event = {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = static_cast<xcb_window_t>(window);
        event.type = atom(what);
        std::copy(details.begin(), details.end(), event.data.data32);
        xcb_send_event(xcb, 0, root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char *>(&event));
        xcb_flush(xcb);
    }

    auto pointer() const
    {
        return owned(xcb_query_pointer_reply(xcb, xcb_query_pointer(xcb, root), nullptr));
    }

    /// Waits until the server has handled our requests, before those of other programs that follow.
    void sync() const { pointer(); }

    std::unique_ptr<xdo_t, decltype(&xdo_free)> xdo;
    xcb_connection_t *xcb = nullptr;
    xcb_window_t root = XCB_WINDOW_NONE;
};

Desktop::Desktop(WindowManager manager)
{
    // Without -noreset the server resets itself whenever its last client disconnects.
    QProcess *const display =
        start(QStringLiteral("Xvfb"),
              {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
               QStringLiteral("0"), QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
               QStringLiteral("tcp"), QStringLiteral("-noreset")});
    const QString name = QLatin1Char{':'} + QString::fromLatin1(Programs::firstLine(*display));
    setVariable(QStringLiteral("DISPLAY"), name);
    server = std::make_unique<Server>(name);

    switch (manager) {
    case WindowManager::Openbox:
        start(QStringLiteral("openbox"),
              {QStringLiteral("--sm-disable"), QStringLiteral("--config-file"),
               QStringLiteral("/etc/xdg/openbox/rc.xml")});
        break;
    case WindowManager::Metacity:
        setVariable(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
        start(QStringLiteral("metacity"),
              {QStringLiteral("--sm-disable"), QStringLiteral("--no-composite")});
        break;
    case WindowManager::Xfwm4:
        startSessionBus();
        start(QStringLiteral("xfwm4"),
              {QStringLiteral("--sm-client-disable"), QStringLiteral("--compositor=off")});
        break;
    }
    // A window manager announces itself before it manages windows; one shown in between stays
    // hidden.
    const auto doesAsItIsTold = [this] {
        const char *const desktops = "_NET_NUMBER_OF_DESKTOPS";
        server->askWindowManager(server->root, desktops, {unusualDesktops});
        return server->property(server->root, desktops) == std::vector{unusualDesktops};
    };
    if (!waitFor(doesAsItIsTold)) {
        qFatal("The window manager does not come up");
    }
    keepAll();
}

Desktop::~Desktop() = default;

void Desktop::setVariable(const QString &name, const QString &value)
{
    if (value.isNull()) {
        programs.environment.remove(name);
    } else {
        programs.environment.insert(name, value);
    }
}

QList<Desktop::Window> Desktop::windows(const QString &title) const
{
    // Also the windows that a window manager has put a frame around.
    std::vector<xcb_window_t> all = server->childrenOf({server->root});
    const std::vector<xcb_window_t> framed = server->childrenOf(all);
    all.insert(all.end(), framed.begin(), framed.end());

    const auto request = [this](xcb_window_t window) {
        return xcb_get_property(server->xcb, 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY,
                                0, longestProperty);
    };
    const auto names = server->ask(all, request, &xcb_get_property_reply);
    QList<Window> found;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto *const name = names.at(i).get();
        if (name != nullptr &&
            QByteArray{static_cast<const char *>(xcb_get_property_value(name)),
                       xcb_get_property_value_length(name)} == title.toLatin1()) {
            found += all.at(i);
        }
    }
    return found;
}

QList<Desktop::Window> Desktop::visibleWindows(const QString &title) const
{
    QList<Window> found = windows(title);
    const auto cannotBeSeen = [this](Window window) {
        return !isMapped(window) || server->hasState(window, "_NET_WM_STATE_HIDDEN");
    };
    found.erase(std::remove_if(found.begin(), found.end(), cannotBeSeen), found.end());
    return found;
}

QList<Desktop::Window> Desktop::unmanagedWindows() const
{
    QList<Window> found;
    for (const xcb_window_t window : server->childrenOf({server->root})) {
        const auto attributes = server->attributes(window);
        const QRect place = geometry(window);
        // Programs keep invisible helper windows outside the screen.
        if (attributes != nullptr && attributes->override_redirect != 0 &&
            attributes->map_state == XCB_MAP_STATE_VIEWABLE && place.right() >= 0 &&
            place.bottom() >= 0 && place.width() >= smallestPopup) {
            found += window;
        }
    }
    return found;
}

bool Desktop::isMapped(Window window) const
{
    const auto attributes = server->attributes(static_cast<xcb_window_t>(window));
    return attributes != nullptr && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool Desktop::wantsAttention(Window window) const
{
    return server->hasState(window, "_NET_WM_STATE_DEMANDS_ATTENTION");
}

Desktop::Window Desktop::activeWindow() const
{
    const auto active = server->property(server->root, "_NET_ACTIVE_WINDOW");
    return active.empty() ? 0 : active.front();
}

bool Desktop::isSelectionOwned(const char *name) const
{
    const auto owner = owned(xcb_get_selection_owner_reply(
        server->xcb, xcb_get_selection_owner(server->xcb, server->atom(name)), nullptr));
    return owner != nullptr && owner->owner != XCB_WINDOW_NONE;
}

QRect Desktop::geometry(Window window) const
{
    const auto id = static_cast<xcb_window_t>(window);
    const auto size =
        owned(xcb_get_geometry_reply(server->xcb, xcb_get_geometry(server->xcb, id), nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(
        server->xcb, xcb_translate_coordinates(server->xcb, id, server->root, 0, 0), nullptr));
    if (size == nullptr || place == nullptr) {
        return {};
    }
    return {place->dst_x, place->dst_y, size->width, size->height};
}

void Desktop::activate(Window window) const
{
    // A window that has just come up may not want the keyboard yet: whoever clicks is slower.
    const auto becomesActive = [this, window] {
        server->askWindowManager(window, "_NET_ACTIVE_WINDOW", {fromUser});
        return activeWindow() == window;
    };
    if (!waitFor(becomesActive)) {
        qFatal("A window does not get the keyboard");
    }
}

void Desktop::minimise(Window window) const
{
    server->askWindowManager(window, "WM_CHANGE_STATE", {iconicState});
}

void Desktop::move(Window window, const QPoint &corner) const
{
    server->askWindowManager(
        window, "_NET_MOVERESIZE_WINDOW",
        {cornerByUser, static_cast<uint32_t>(corner.x()), static_cast<uint32_t>(corner.y())});
}

void Desktop::close(Window window) const
{
    server->askWindowManager(window, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, fromUser});
}

void Desktop::moveMouse(const QPoint &position) const
{
    xdo_move_mouse(server->xdo.get(), position.x(), position.y(), 0);
    server->sync();
}

void Desktop::click(const QPoint &position, int button) const
{
    moveMouse(position);
    xdo_mouse_down(server->xdo.get(), CURRENTWINDOW, button);
    xdo_mouse_up(server->xdo.get(), CURRENTWINDOW, button);
    // Until the window manager has passed the press on, a release may arrive where the pointer has
    // moved meanwhile.
    constexpr uint16_t buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;
    if (!waitFor([this] { return (server->pointer()->mask & buttons) == 0; })) {
        qFatal("A click does not get through");
    }
}

void Desktop::doubleClick(const QPoint &position) const
{
    click(position);
    click(position);
}

void Desktop::holdButton(const QPoint &position) const
{
    moveMouse(position);
    xdo_mouse_down(server->xdo.get(), CURRENTWINDOW, 1);
    server->sync();
}

void Desktop::releaseButton() const
{
    xdo_mouse_up(server->xdo.get(), CURRENTWINDOW, 1);
    server->sync();
}

void Desktop::pressKeys(const QStringList &keys) const
{
    for (const QString &key : keys) {
        xdo_send_keysequence_window(server->xdo.get(), CURRENTWINDOW, key.toLatin1().constData(),
                                    keyUs);
    }
    server->sync();
}

void Desktop::type(const QString &text) const
{
    xdo_enter_text_window(server->xdo.get(), CURRENTWINDOW, text.toLatin1().constData(), keyUs);
    server->sync();
}

QImage Desktop::screenshot() const
{
    return screenshot(server->root);
}

QImage Desktop::screenshot(Window window) const
{
    const QRect place = geometry(window) & geometry(server->root);
    const auto picture = owned(xcb_get_image_reply(
        server->xcb,
        xcb_get_image(server->xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, server->root,
                      static_cast<int16_t>(place.x()), static_cast<int16_t>(place.y()),
                      static_cast<uint16_t>(place.width()), static_cast<uint16_t>(place.height()),
                      ~0U),
        nullptr));
    return picture == nullptr ? QImage{}
                              : QImage{xcb_get_image_data(picture.get()), place.width(),
                                       place.height(), QImage::Format_RGB32}
                                    .copy();
}

} // namespace support
