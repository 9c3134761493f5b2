#pragma once

class QString;
class QTcpSocket;

/// What the tests need of the operating system beyond the toolkit.
namespace support::system {

/// When the socket is closed, its connection ends with a reset.
void resetOnClose(const QTcpSocket &socket);

/// Makes a named pipe that opens at once and never has anything to read. Where files cannot be
/// pipes, nothing is made.
void makeSilentPipe(const QString &path);

} // namespace support::system
