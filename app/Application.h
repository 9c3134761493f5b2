#pragma once

#include <QApplication>

namespace app {

/// Sets the names for QSettings and the version, and quits when the desktop ends the session.
///
/// Qt by itself would close the windows first, and a window that only hides, or the tray icon,
/// would cancel the log-out or keep the program running.
class Application : public QApplication
{
public:
    /// Keeps references to both arguments, as QApplication does. Where Qt cannot start, for example
    /// without a display, it prints Qt's message and ends the program with exit code 1, not with a
    /// crash. A later fatal message leaves a core.
    Application(int &argc, char **argv);

protected:
    bool event(QEvent *event) override;
};

} // namespace app
