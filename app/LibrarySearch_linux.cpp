#include "app/LibrarySearch.h"

namespace app {

void keepLibrarySearchAtHome()
{
    // The system's own toolkit, with the plugins that the user has chosen for all its programs.
}

} // namespace app
