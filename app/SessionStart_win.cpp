#include "app/SessionStart.h"

namespace app {

SessionStart::SessionStart()
    : autostarted(false)
{}

// There is always a tray.
bool SessionStart::waitForTray(SingleInstance & /*instance*/) const
{
    return true;
}

} // namespace app
