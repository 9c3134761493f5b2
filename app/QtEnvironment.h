#pragma once

#include <QByteArray>

#include <vector>

namespace app {

/// What Qt finds in this process's environment, where it looks before any call could tell it:
///
/// - On X11 it makes windows that cannot show OpenGL. This program draws none, and each process
///   would load the whole driver with its first window: half of the start-up time and two thirds of
///   the memory.
/// - On Windows it follows each screen's scale, exactly, and loads libraries and plugins only from
///   the program's own folder and the system. On Linux the desktop and the system say both.
/// - On Linux a run without a window needs no display.
///
/// A choice that the user has made in the environment stands. What was set is taken back at this
/// object's end, so that programs which are started later do not inherit it.
///
/// To be made first in main(), before the application object, and ended on the main thread right
/// after the first window is shown: Qt has read everything then.
class QtEnvironment
{
public:
    enum class Run { WithWindow, WithoutWindow };

    explicit QtEnvironment(Run run);
    ~QtEnvironment();
    QtEnvironment(const QtEnvironment &) = delete;
    QtEnvironment &operator=(const QtEnvironment &) = delete;

private:
    void prepare(Run run);
    /// `name` is a literal.
    void setDefault(const char *name, const QByteArray &value);

    std::vector<const char *> ours;
};

} // namespace app
