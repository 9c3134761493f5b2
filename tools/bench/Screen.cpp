#include "tools/bench/Screen.h"

#include "tools/bench/Child.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace bench {

namespace {

constexpr int windowWidth = 360;
constexpr int windowHeight = 560;
constexpr int edgeLeft = 3;
constexpr int bytesPerPixel = 4;
constexpr int iconicState = 3;
constexpr std::uint8_t sentFlag = 0x80;

struct Free
{
    void operator()(void *memory) const { std::free(memory); }
};

template <typename T> std::unique_ptr<T, Free> owned(T *reply)
{
    return std::unique_ptr<T, Free>{reply};
}

bool isFailure(const std::uint8_t *bgr)
{
    const auto near = [](int value, int wanted) { return std::abs(value - wanted) <= 6; };
    return near(bgr[2], 220) && near(bgr[1], 64) && near(bgr[0], 64);
}

} // namespace

Screen::Screen()
    : connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(connection) != 0) {
        throw std::runtime_error{"no X display"};
    }
    root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;

    const auto *const extension = xcb_get_extension_data(connection, &xcb_damage_id);
    if (extension == nullptr || extension->present == 0) {
        throw std::runtime_error{"the X server does not report drawing"};
    }
    damageEvent = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
    owned(xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1),
                                         nullptr));

    // Programs send the answer to a ping to the root window under either mask.
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection);
}

Screen::~Screen()
{
    xcb_disconnect(connection);
}

int Screen::descriptor() const
{
    return xcb_get_file_descriptor(connection);
}

void Screen::serve()
{
    while (const auto event = owned(xcb_poll_for_event(connection))) {
        handle(*event);
    }
    if (xcb_connection_has_error(connection) != 0) {
        throw std::runtime_error{"the X display is gone"};
    }
}

void Screen::expectWindow()
{
    serve();
    window = XCB_NONE;
    damage = XCB_NONE;
    paintingTimes.clear();
}

void Screen::handle(const xcb_generic_event_t &event)
{
    const auto type = static_cast<std::uint8_t>(event.response_type & ~sentFlag);
    if (type == damageEvent) {
        const auto &report = reinterpret_cast<const xcb_damage_notify_event_t &>(event);
        if (report.drawable == window) {
            paintingTimes.push_back(now());
        }
    } else if (type == XCB_CREATE_NOTIFY) {
        const auto &report = reinterpret_cast<const xcb_create_notify_event_t &>(event);
        if (window == XCB_NONE && report.width == windowWidth && report.height == windowHeight) {
            watch(report.window);
        }
    } else if (type == XCB_CLIENT_MESSAGE) {
        const auto &report = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (report.window == root && report.data.data32[1] == pingNumber &&
            report.data.data32[2] == window) {
            pongTime = now();
        }
    }
}

void Screen::watch(xcb_window_t created)
{
    window = created;
    damage = xcb_generate_id(connection);
    xcb_damage_create(connection, damage, window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(connection);
}

std::optional<std::vector<std::uint8_t>> Screen::edge() const
{
    return pixels(edgeLeft, 0, 1, windowHeight);
}

bool Screen::showsFailure() const
{
    constexpr int top = 100;
    constexpr int height = 200;
    const auto column = pixels(windowWidth / 2, top, 1, height);
    for (int y = 0; column && y < height; ++y) {
        if (isFailure(column->data() + std::ptrdiff_t{y} * bytesPerPixel)) {
            return true;
        }
    }
    return false;
}

void Screen::ping()
{
    pongTime.reset();
    ++pingNumber;
    send(window, window, XCB_EVENT_MASK_NO_EVENT, atom("WM_PROTOCOLS"),
         {atom("_NET_WM_PING"), pingNumber, window});
}

void Screen::close()
{
    send(window, window, XCB_EVENT_MASK_NO_EVENT, atom("WM_PROTOCOLS"),
         {atom("WM_DELETE_WINDOW"), XCB_CURRENT_TIME});
}

void Screen::minimise()
{
    send(root, window, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
         atom("WM_CHANGE_STATE"), {iconicState});
}

void Screen::raiseTray()
{
    tray = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, tray, root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection, tray, atom("_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
    xcb_flush(connection);
}

void Screen::removeTray()
{
    xcb_destroy_window(connection, tray);
    xcb_flush(connection);
}

void Screen::send(xcb_window_t to, xcb_window_t about, std::uint32_t mask, xcb_atom_t type,
                  const std::vector<std::uint32_t> &data) const
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(connection, 0, to, mask, reinterpret_cast<const char *>(&message));
    xcb_flush(connection);
}

xcb_atom_t Screen::atom(const std::string &name) const
{
    const auto known = atoms.find(name);
    if (known != atoms.end()) {
        return known->second;
    }
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
    return atoms[name] = reply ? reply->atom : XCB_NONE;
}

std::optional<Screen::Pixels> Screen::pixels(std::int16_t x, std::int16_t y, std::uint16_t width,
                                             std::uint16_t height) const
{
    xcb_generic_error_t *error = nullptr;
    const auto reply = owned(xcb_get_image_reply(
        connection,
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, x, y, width, height, ~0U),
        &error));
    owned(error);
    if (!reply) {
        return std::nullopt;
    }
    const std::uint8_t *const data = xcb_get_image_data(reply.get());
    return Pixels(data, data + xcb_get_image_data_length(reply.get()));
}

} // namespace bench
