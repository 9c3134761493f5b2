#pragma once

namespace app {

/// Gives the application object the names under which its settings lie, and its version.
/// To be called before anything reads settings.
void setIdentity();

} // namespace app
