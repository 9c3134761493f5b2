#pragma once

namespace app {

/// Has libraries and plugins that are loaded while the program runs come from the program's own
/// folder and from the system, and from nowhere else: not from the working directory, not from
/// the search path, and not from where a toolkit has been installed, built or pointed to by the
/// environment. Where the toolkit is a part of the system, as on Linux, this changes nothing.
///
/// To be called once, before anything of the toolkit is used.
void keepLibrarySearchAtHome();

} // namespace app
