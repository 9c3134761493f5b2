#pragma once

/// Another user of the machine, whom a test impersonates to see what others can do.
namespace support::otheruser {

/// ID of the user, who owns no file of the test.
constexpr int id = 1;

/// Whether this process can become that user. Only root can, and not root of a user namespace with
/// one user, which scripts/isolated makes for users other than root.
bool isPossible();

} // namespace support::otheruser
