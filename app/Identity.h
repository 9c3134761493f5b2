#pragma once

namespace app {

/// Sets the organisation, name and version of the application; call it before QSettings is used.
void setIdentity();

} // namespace app
