#include "app/Windowless.h"

namespace app {

void allowMissingDisplay()
{
    // The toolkit starts there without a desktop too.
}

} // namespace app
