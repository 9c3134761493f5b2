#pragma once

namespace app {

/// Sets the user's settings aside if they hold a value of one of the toolkit's own types
/// ("@Variant(…)"), which neither the client nor the service writes. The toolkit restores such a
/// value when it reads the settings, with the sizes that it claims, and the program ends over one
/// that cannot be had. The client then goes on as if it had not been there. On Linux the file
/// IxoClient.conf becomes IxoClient.unreadable.conf, in place of an older one; if it cannot be
/// renamed, the user's settings are neither read nor written until the program ends. On Windows the
/// value goes from the key IxoClient to IxoClient.unreadable.
///
/// Does not look at the settings that only an administrator can write, nor at what is written while
/// the program runs. To be called after setIdentity() and before anything reads settings.
void setHarmfulSettingsAside();

} // namespace app
