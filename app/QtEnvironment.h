#pragma once

#include <QByteArray>

#include <vector>

namespace app {

/// Sets the environment variables that Qt reads when it starts:
///
/// - On X11 Qt does not load the OpenGL driver, which this program does not use and which takes
///   half of the start-up time and two thirds of the memory.
/// - On X11 Qt follows the desktop's exact scale, Xft.dpi / 96, unless QT_SCALE_FACTOR is set.
/// - On Windows Qt follows each screen's exact scale and loads libraries and plugins only from the
///   program's folder and the system.
/// - On Linux a run without a window needs no display.
///
/// A variable that the user has set stays. The destructor removes the others, so that child
/// processes do not inherit them.
///
/// Create it before the application object and destroy it after the first window is shown.
class QtEnvironment
{
public:
    enum class Run { WithWindow, WithoutWindow };

    explicit QtEnvironment(Run run);
    ~QtEnvironment();
    QtEnvironment(const QtEnvironment &) = delete;
    QtEnvironment &operator=(const QtEnvironment &) = delete;

private:
    /// `name` is a string literal.
    void setDefault(const char *name, const QByteArray &value);

    std::vector<const char *> ours;
};

} // namespace app
