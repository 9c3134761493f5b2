#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace bench {

/// The X server's view of one measured program: when its window is drawn on, what it then shows,
/// and how soon it answers the window manager's ping.
///
/// The window is recognised by its size when it is created, so no time is lost in looking for it.
class Screen
{
public:
    Screen();
    ~Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    int descriptor() const;
    /// Handles what the server has reported.
    void serve();

    /// Forgets the last program's window. Call it before a program is started.
    void expectWindow();
    bool hasWindow() const { return window != XCB_NONE; }

    /// Times of the reports that the window was drawn on, oldest first.
    const std::vector<std::int64_t> &paintings() const { return paintingTimes; }
    void forgetPaintings() { paintingTimes.clear(); }

    /// What a narrow strip at the window's left edge shows, which neither text nor animation
    /// reaches; nothing if it cannot be read.
    std::optional<std::vector<std::uint8_t>> edge() const;
    /// True if the row of pixels through the switch's upper border holds the colour of a failure.
    bool showsFailure() const;

    void ping();
    /// When the last ping was answered; nothing if it has not been.
    std::optional<std::int64_t> pong() const { return pongTime; }

    /// Asks the program, as a window manager does, to close or to minimise its window.
    void close();
    void minimise();

    /// Takes the selection of an XEmbed tray, so that programs that start then find a tray for
    /// their icon.
    void raiseTray();
    void removeTray();

private:
    using Pixels = std::vector<std::uint8_t>;

    void handle(const xcb_generic_event_t &event);
    void watch(xcb_window_t created);
    void send(xcb_window_t to, xcb_window_t about, std::uint32_t mask, xcb_atom_t type,
              const std::vector<std::uint32_t> &data) const;
    xcb_atom_t atom(const std::string &name) const;
    std::optional<Pixels> pixels(std::int16_t x, std::int16_t y, std::uint16_t width,
                                 std::uint16_t height) const;

    xcb_connection_t *connection;
    xcb_window_t root = XCB_NONE;
    xcb_window_t window = XCB_NONE;
    xcb_window_t tray = XCB_NONE;
    xcb_damage_damage_t damage = XCB_NONE;
    std::uint8_t damageEvent = 0;
    mutable std::map<std::string, xcb_atom_t> atoms;
    std::vector<std::int64_t> paintingTimes;
    std::uint32_t pingNumber = 0;
    std::optional<std::int64_t> pongTime;
};

} // namespace bench
