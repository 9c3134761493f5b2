#pragma once

#include "tests/support/Client.h"
#include "tests/support/Desktop.h"
#include "tests/support/ScriptedService.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QImage>
#include <QPoint>

namespace support {

/// The commands as the client sends them.
QByteArray setLanguage(const QByteArray &tag);
QByteArray setReferral(const QByteArray &code);
QByteArray askStatus();

/// The real program in English on a desktop, with mouse and keyboard, and a service under the
/// test's control. Functions that wait return false on a timeout.
class ClientSession : public Desktop
{
    Q_OBJECT

public:
    // In the main window.
    static constexpr QPoint settingsRow{80, 42};
    static constexpr QPoint referralRow{80, 98};
    static constexpr QPoint supportRow{80, 154};
    static constexpr QPoint backButton{32, 30};
    // On the screen, where every tray is placed.
    static constexpr QRect trayArea{0, 0, 380, 40};

    /// With another build of the program than the tests' own, if a path is given.
    explicit ClientSession(const QString &path = clientProgram(),
                           WindowManager manager = WindowManager::Openbox)
        : Desktop(manager)
        , program(path)
    {}

    /// Makes the clock of programs that are started from now on ten times as fast, which shortens
    /// animations and pauses.
    void hurry() { setPace(10); }
    /// As above, this many times as fast.
    void setPace(double pace);

    /// Starts the program and waits for its window.
    [[nodiscard]] bool startClient();
    /// As above, with a service that listens and answers that the tunnel is up.
    [[nodiscard]] bool startLinkedClient();
    /// Resets the client's connection and waits for the next. That takes longer than Qt needs to
    /// notice that the focus has gone to another program, upon which it closes every menu.
    [[nodiscard]] bool linkAgain();
    /// With SIGKILL.
    void killClient();

    /// An XEmbed tray in the corner of the screen; null if it does not come up.
    QProcess *startTrayer();
    /// The middle of the icon in a tray at the top of the screen. Waits until the tray has drawn it
    /// and moves it no more; null on a timeout.
    QPoint trayIcon() const;
    /// The main window is neither minimised nor hidden.
    bool isShown() const { return visibleWindows(clientTitle()) == QList<Window>{window}; }

    bool hasReceived(const QByteArray &line) const { return service.lines().contains(line); }

    /// The screen coordinates of a point in the main window.
    QPoint at(const QPoint &point) const { return geometry(window).topLeft() + point; }

    /// Clicks into the main window and waits until the picture has changed and is still.
    [[nodiscard]] bool use(const QPoint &point);
    [[nodiscard]] bool openMenu();
    /// Through the menu.
    [[nodiscard]] bool openPage(const QPoint &row);
    /// Through the menu; 0 on a timeout.
    Window openReferral();
    [[nodiscard]] bool closeDialog(Window dialog);
    [[nodiscard]] bool isGone(Window dialog);
    /// With the keyboard, on the open settings page, by the place in its list.
    void chooseLanguage(int row);

    /// A screenshot of the window, once it changes no more.
    QImage still(Window which) const;

    /// Waits until another program reads this from the clipboard.
    [[nodiscard]] bool pastes(const QByteArray &text) const;

    ScriptedService service;
    QProcess *client = nullptr;
    Window window = 0;

private:
    bool changesFrom(const QImage &before);

    QString program;
    /// Longer than a frame of an animation.
    int betweenPicturesMs = 25;
    /// The last picture for still(), and the program's scheduler statistics before it.
    mutable struct
    {
        Window which = 0;
        QByteArray turn;
        QImage picture;
        QElapsedTimer since;
    } last;
};

/// The middles of the copy buttons on a picture of the support page, from the top.
QList<QPoint> copyButtons(const QImage &page);

/// The middle of what is orange, as the tray icon and the support page's link are; null if nothing
/// is.
QPoint orange(const QImage &picture);

} // namespace support
