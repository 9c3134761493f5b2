#include "app/SessionStart.h"

namespace app {

SessionStart::SessionStart()
    : autostarted(false)
{}

// Windows always has a tray.
bool SessionStart::waitForTray(SingleInstance & /*instance*/) const
{
    return true;
}

} // namespace app
