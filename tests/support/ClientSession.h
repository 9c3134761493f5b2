#pragma once

#include "tests/support/Client.h"
#include "tests/support/Desktop.h"
#include "tests/support/ScriptedService.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QImage>
#include <QPoint>

namespace support {

/// The commands as the client puts them on the wire.
QByteArray setLanguage(const QByteArray &tag);
QByteArray setReferral(const QByteArray &code);
QByteArray askStatus();

/// The real program in English, as somebody uses it who has a desktop, a mouse and a keyboard,
/// and a service under the test's control. Every function that waits tells whether what it waited
/// for has come.
class ClientSession : public Desktop
{
    Q_OBJECT

public:
    // In the main window.
    static constexpr QPoint settingsRow{80, 42};
    static constexpr QPoint referralRow{80, 98};
    static constexpr QPoint supportRow{80, 154};
    static constexpr QPoint backButton{32, 30};

    /// With another build of the program than the tests' own, if a path is given.
    explicit ClientSession(const QString &path = clientProgram())
        : program(path)
    {}

    /// For programs that are started from now on, time passes ten times as fast: nobody has to sit
    /// through what glides, or through their pauses. Not with the sanitisers, which bear no other
    /// library before them.
    void hurry();

    /// Starts the program and waits for its window.
    [[nodiscard]] bool startClient();
    /// As above, with a service that listens and answers that the tunnel is up.
    [[nodiscard]] bool startLinkedClient();
    /// Without a chance to put anything in order.
    void killClient();

    bool hasReceived(const QByteArray &line) const { return service.lines().contains(line); }

    /// Where it is on the screen, for a point of the main window.
    QPoint at(const QPoint &point) const { return geometry(window).topLeft() + point; }

    /// Clicks into the main window and waits until that has shown and nothing moves any more.
    [[nodiscard]] bool use(const QPoint &point);
    [[nodiscard]] bool openMenu();
    /// Through the menu.
    [[nodiscard]] bool openPage(const QPoint &row);
    /// Through the menu; 0 if it does not come.
    Window openReferral();
    [[nodiscard]] bool closeDialog(Window dialog);
    [[nodiscard]] bool isGone(Window dialog);
    /// With the keyboard, on the open settings page, by the place in its list.
    void chooseLanguage(int row);

    /// The picture of a window that does not change any more.
    QImage still(Window which) const;

    /// Waits until another program that asks for what was copied is given this.
    [[nodiscard]] bool pastes(const QByteArray &text) const;

    ScriptedService service;
    QProcess *client = nullptr;
    Window window = 0;

private:
    bool changesFrom(const QImage &before);

    QString program;
    /// More than from one step of an animation to the next.
    int betweenPicturesMs = 25;
    /// The last picture for still(), and how often the program had had its turn before it.
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
