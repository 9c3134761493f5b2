#pragma once

namespace app {

/// Keeps the toolkit from settings with values that it restores from a stream ("@Variant(…)",
/// "@DateTime(…)"). It does so with the sizes that they claim, and the program ends over one that
/// cannot be had; neither the client nor the service writes any. The client goes on as if they had
/// not been there.
///
/// On Linux a file that spells one anywhere is harmful as a whole. The user's IxoClient.conf then
/// becomes IxoClient.unreadable.conf, in place of an older one, and IXOVPN.conf likewise; if that
/// fails, no settings of the user's are read or written until the program ends. If there is one
/// among the system's files, none of those is read. On Windows the value goes from the user's key
/// IxoClient to IxoClient.unreadable, from OrganizationDefaults likewise; it stays where the key
/// cannot be written, and so does every value of the system's.
///
/// Does not look at what is written later. To be called after setIdentity() and before the value of
/// any setting is read.
void setHarmfulSettingsAside();

} // namespace app
