#pragma once

class QString;

/// What the tests need of the operating system beyond the toolkit.
namespace support::system {

/// Makes a named pipe that opens at once and never has anything to read. Where files cannot be
/// pipes, nothing is made.
void makeSilentPipe(const QString &path);

} // namespace support::system
