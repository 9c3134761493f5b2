#pragma once

/// Another user of the machine, whom a test plays to see what others can do.
namespace support::otheruser {

/// Number of the user; nothing of the test belongs to it.
constexpr int id = 1;

/// Whether this process can become that user. Only root can, and not the root of a world that has
/// no other users, as scripts/isolated makes for who is not root.
bool isPossible();

} // namespace support::otheruser
