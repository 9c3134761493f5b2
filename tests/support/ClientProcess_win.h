#pragma once

#include <QImage>
#include <QList>
#include <QPoint>
#include <QProcess>
#include <QStringList>

#include <windows.h>

namespace support {

/// The path of the program, which lies beside the test.
QString clientPath();

/// All top-level windows of a process, hidden ones too.
QList<HWND> windowsOf(DWORD process);

/// The client as a process, used from outside as by its user and by other programs. The destructor
/// kills it if it is still running.
class ClientProcess
{
public:
    /// `folder` is the working folder.
    explicit ClientProcess(const QStringList &arguments = {}, const QString &folder = {},
                           const QString &program = clientPath());
    ~ClientProcess();
    ClientProcess(const ClientProcess &) = delete;
    ClientProcess &operator=(const ClientProcess &) = delete;

    bool isRunning() const { return process.state() != QProcess::NotRunning; }
    /// Waits, with the event loop running, until it ends by itself; -1 if it crashes.
    int exitCode();
    void kill();

    DWORD id() const { return static_cast<DWORD>(process.processId()); }
    /// The main window, shown or not; null if there is none yet.
    HWND window() const;
    bool isShown() const { return IsWindowVisible(window()) != FALSE; }
    /// Waits until the main window is shown and accepts input.
    [[nodiscard]] bool comesUp() const;

    /// A visible popup of the program, for example the list of a combo box; null if there is none.
    HWND popup() const;
    /// The main window without its frame, as it is on the screen.
    QImage picture() const;
    /// Waits until the main window is in the foreground, and the picture has changed since the last
    /// click and does not change any more.
    [[nodiscard]] bool comesToRest() const;

    /// Does what the close button of the title bar does.
    void close() const { PostMessageW(window(), WM_CLOSE, 0, 0); }
    /// Asks all its windows whether it can end, as the system does before the session ends or an
    /// upgrade begins; `reason` is what the system gives them. Changes nothing yet.
    bool agreesToEnd(LPARAM reason) const;
    /// Sends WM_ENDSESSION, after all programs have agreed, or one has not.
    void tellToEnd(LPARAM reason) const { tellEnd(TRUE, reason); }
    void tellToGoOn(LPARAM reason) const { tellEnd(FALSE, reason); }
    /// Clicks with the mouse, in the main window's coordinates.
    void click(const QPoint &position) const;
    /// Clicks, and waits until what the click changes is at rest.
    [[nodiscard]] bool changesOn(const QPoint &position);

private:
    void tellEnd(WPARAM end, LPARAM reason) const;

    QImage beforeClick;
    QProcess process;
};

/// Presses and releases a key; the window in the foreground gets it.
void pressKey(WORD key);

} // namespace support
