#pragma once

class QTcpSocket;

namespace ipc {

/// When the socket is closed, its connection ends with a reset, and its port is free at once. By
/// default the system keeps the port for a minute or more. To be called while the socket is
/// connected.
void resetOnClose(const QTcpSocket &socket);

} // namespace ipc
