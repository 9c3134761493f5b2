#pragma once

namespace app {

/// Lets a run that shows nothing make its application object on a machine without a display. It
/// changes nothing where there is a display or where a platform has been named.
///
/// To be called before the application object exists.
void allowMissingDisplay();

} // namespace app
