#pragma once

#include "tests/support/Desktop.h"

#include <QList>
#include <QProcess>
#include <QRect>
#include <QString>

#include <memory>
#include <vector>

namespace support {

/// A Wayland compositor without a screen, which also takes X11 programs, and what it tells about
/// the windows on it. To be used inside scripts/isolated. Needs from Debian: sway and xwayland.
///
/// What cannot be started, or does not come up, ends the test run with a message.
class Sway : public QObject
{
    Q_OBJECT

public:
    struct Window
    {
        int id = 0;
        QString title;
        /// `xdg_shell` or `xwayland`.
        QString shell;
        bool focused = false;
        bool visible = false;
        /// Without the compositor's border.
        QSize size;
    };

    /// Returns when it answers. Programs find a session bus of their own on it.
    Sway();
    ~Sway() override;

    QProcessEnvironment &environment() { return surroundings; }

    /// Starts a program that stays; it ends with the compositor.
    QProcess *start(const QString &program, const QStringList &arguments = {});
    /// Runs a program to its end and returns its exit code; -1 if it crashed.
    int run(const QString &program, const QStringList &arguments = {}) const;

    /// Everything that is open, in no particular order.
    QList<Window> windows() const;
    /// Those with exactly this title.
    QList<Window> windows(const QString &title) const;

    /// As the compositor's own key binding for closing does.
    void close(const Window &window) const;
    void focus(const Window &window) const;

private:
    QByteArray ask(const QStringList &arguments) const;

    QProcessEnvironment surroundings;
    std::vector<std::unique_ptr<QProcess>> running;
};

} // namespace support
