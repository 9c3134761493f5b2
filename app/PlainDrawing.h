#pragma once

#include "app/EnvironmentDefault.h"

namespace app {

/// As long as this object lives, the toolkit makes windows that cannot show OpenGL. This program
/// draws none, and on X11 each process would load the whole OpenGL driver with its first window:
/// half of the start-up time and two thirds of the memory.
///
/// The toolkit reads this from the environment when it makes the first window and never again.
/// Programs that are started after this object's end do not inherit it. A choice that the user
/// has made in the environment stands.
///
/// To be made before the application object, while there are no other threads, and ended on the
/// main thread right after the first window is shown.
class PlainDrawing
{
public:
    PlainDrawing();

private:
    const EnvironmentDefault withoutOpenGl;
};

} // namespace app
