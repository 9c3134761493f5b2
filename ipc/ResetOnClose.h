#pragma once

class QTcpSocket;

namespace ipc {

/// Makes closing the connected socket free its port at once, by a reset. By default the system
/// keeps the port for a minute or more.
void resetOnClose(const QTcpSocket &socket);

} // namespace ipc
