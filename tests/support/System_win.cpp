#include "tests/support/System.h"

#include <QTcpSocket>

#include <winsock2.h>

namespace support {

void system::resetOnClose(const QTcpSocket &socket)
{
    // Without lingering, closing a socket sends a reset.
    const linger none = {1, 0};
    setsockopt(static_cast<SOCKET>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER,
               reinterpret_cast<const char *>(&none), sizeof none);
}

void system::makeSilentPipe(const QString & /*path*/)
{
    // Pipes have a namespace of their own here.
}

} // namespace support
