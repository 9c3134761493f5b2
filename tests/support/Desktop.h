#pragma once

#include "tests/support/Programs.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QSize>
#include <QStringList>

#include <cstddef>
#include <memory>

namespace support {

/// An X11 desktop without a screen: a virtual display and a window manager, with the input and the
/// screenshots of a user. Use it inside scripts/isolated; the test itself needs no display and no
/// GUI application object.
///
/// What cannot be started, or does not come up, ends the test run with a message.
class Desktop : public QObject
{
    Q_OBJECT

public:
    using Window = qulonglong;

    enum class WindowManager {
        Openbox,
        /// Has focus-stealing prevention.
        Metacity,
        /// Brings a session bus with it, which it needs for its settings.
        Xfwm4
    };

    using Outcome = Programs::Outcome;

    /// Returns when display and window manager are ready.
    explicit Desktop(WindowManager manager = WindowManager::Openbox);
    ~Desktop() override;

    /// Programs that are started from now on have a session bus of their own.
    void startSessionBus() { programs.startSessionBus(); }
    void setPace(double pace) { programs.setPace(pace); }

    /// The environment of programs, with DISPLAY and without QT_QPA_PLATFORM.
    const QProcessEnvironment &environment() const { return programs.environment; }
    /// For programs that are started from now on; a null value takes the variable out.
    void setVariable(const QString &name, const QString &value);

    /// Starts a program that stays; it belongs to the desktop and ends with it. Its output and
    /// errors can be read from the result.
    QProcess *start(const QString &program, const QStringList &arguments = {})
    {
        return programs.start(program, arguments);
    }
    /// Asks a started program to end and waits until it has.
    void stop(QProcess *process) { programs.stop(process); }
    /// What has been started so far belongs to the desktop itself.
    void keepAll() { furniture = programs.count(); }
    /// Stops all programs but those of the desktop itself.
    void stopAll() { programs.stopFrom(furniture); }
    /// Runs a program to its end.
    Outcome run(const QString &program, const QStringList &arguments = {}) const
    {
        return programs.run(program, arguments);
    }

    /// Top-level windows with exactly this title, mapped or not.
    QList<Window> windows(const QString &title) const;
    /// Those of them that can be seen: mapped and not minimised.
    QList<Window> visibleWindows(const QString &title) const;
    /// Menus, tool tips and other windows that the window manager leaves alone; only those that
    /// can be seen.
    QList<Window> unmanagedWindows() const;
    /// 0 if no window has it.
    Window activeWindow() const;
    /// Whether some program holds the selection, for example `_NET_SYSTEM_TRAY_S0`.
    bool isSelectionOwned(const char *name) const;
    bool isMapped(Window window) const;
    /// As a task bar shows it.
    bool wantsAttention(Window window) const;
    /// Without the frame, in screen coordinates; null if the window is gone.
    QRect geometry(Window window) const;

    /// Returns when the window has the focus.
    void activate(Window window) const;
    void minimise(Window window) const;
    /// As the user does who drags it: the frame's corner, which may lie outside of the screen.
    void move(Window window, const QPoint &corner) const;
    /// As the title bar's close button does.
    void close(Window window) const;

    // These functions return once the input has been sent; programs may not have handled it yet.

    /// In screen coordinates; button 1 is the left one.
    void moveMouse(const QPoint &position) const;
    void click(const QPoint &position, int button = 1) const;
    void doubleClick(const QPoint &position) const;
    /// Presses the left button, for tests that can tell when the press has arrived: until the
    /// window manager has passed it on, a release may arrive where the pointer has moved meanwhile.
    void holdButton(const QPoint &position) const;
    void releaseButton() const;
    /// By the names of the keys, for example `Escape` or `shift+Tab`; they go to the active window.
    void pressKeys(const QStringList &keys) const;
    void pressKey(const QString &key) const { pressKeys({key}); }
    void type(const QString &text) const;

    /// The whole screen.
    QImage screenshot() const;
    /// The window without its frame, cut out of the screen.
    QImage screenshot(Window window) const;

private:
    class Server;

    Programs programs;
    /// The number of programs that belong to the desktop itself.
    std::size_t furniture = 0;
    // Destroyed before the programs, one of which is the display that it is connected to.
    std::unique_ptr<Server> server;
};

} // namespace support
