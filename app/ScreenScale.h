#pragma once

#include "app/EnvironmentDefault.h"

#include <optional>

namespace app {

/// Has the window as large on a very fine screen as on any other, and sharp there: as long as this
/// object lives, an application object that is made draws at the scale that the user has set
/// for each screen, also one between whole numbers. All measures in the program stay what they
/// are. Where the desktop tells the toolkit itself what it wants, as on Linux, this changes
/// nothing; neither does it where the environment has a choice of the user's.
///
/// To be made before the application object, while there are no other threads.
class ScreenScale
{
public:
    ScreenScale();

private:
    std::optional<EnvironmentDefault> followScreens;
    std::optional<EnvironmentDefault> exactly;
};

} // namespace app
