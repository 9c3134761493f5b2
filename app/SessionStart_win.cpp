#include "app/SessionStart.h"

namespace app {

bool takeAutostartId()
{
    return false;
}

// Windows always has a tray.
bool waitForTray(bool /*autostarted*/, SingleInstance & /*instance*/)
{
    return true;
}

} // namespace app
