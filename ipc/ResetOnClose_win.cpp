#include "ipc/ResetOnClose.h"

#include <QTcpSocket>

#include <winsock2.h>

namespace ipc {

void resetOnClose(const QTcpSocket &socket)
{
    const linger none = {1, 0};
    setsockopt(static_cast<SOCKET>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER,
               reinterpret_cast<const char *>(&none), sizeof none);
}

} // namespace ipc
