#pragma once

#include <QApplication>

namespace app {

/// The application object: it has the names under which settings lie and the version, and ends the
/// program when the desktop says that the session ends.
///
/// Qt asks the windows first, twice: at the question whether anything must be saved it closes them,
/// and one that only hides calls the log-out off; at the order to end it closes them again, and one
/// that is still visible, be it the tray's icon, keeps the program running. Nothing here waits to
/// be saved, so neither is asked.
class Application : public QApplication
{
public:
    /// Keeps references to both, as QApplication does. Where that has no way on, for example without
    /// a display, it says so and ends the program with exit code 1, not with a crash. A fatal
    /// message later on leaves a core.
    Application(int &argc, char **argv);

protected:
    bool event(QEvent *event) override;
};

} // namespace app
