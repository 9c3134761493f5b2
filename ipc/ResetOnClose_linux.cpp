#include "ipc/ResetOnClose.h"

#include <QTcpSocket>

#include <sys/socket.h>

namespace ipc {

void resetOnClose(const QTcpSocket &socket)
{
    const linger none = {1, 0};
    setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
               sizeof none);
}

} // namespace ipc
