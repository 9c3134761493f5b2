#pragma once

#include "tests/support/Programs.h"

#include <QList>
#include <QObject>
#include <QSize>
#include <QString>

namespace support {

/// A Wayland compositor without a screen, which also shows X11 programs (Xwayland), and its list of
/// windows. Use it inside scripts/isolated. Needs from Debian: sway and xwayland.
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

    /// False for root without user namespaces, since sway refuses to run as root.
    static bool isPossible();

    /// Returns when the compositor is ready. Programs have a session bus of their own.
    Sway();

    Programs programs;

    /// Everything that is open, in no particular order.
    QList<Window> windows() const;
    /// Those with exactly this title.
    QList<Window> windows(const QString &title) const;

    /// As the compositor's own key binding for closing does.
    void close(const Window &window) const;
    void focus(const Window &window) const;

private:
    QByteArray ask(const QStringList &arguments) const;
};

} // namespace support
