#include "tests/support/System.h"

#include <QFile>
#include <QTcpSocket>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>

namespace support {

void system::resetOnClose(const QTcpSocket &socket)
{
    // Without lingering, closing a socket sends a reset.
    const linger none = {1, 0};
    setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
               sizeof none);
}

void system::makeSilentPipe(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    // As long as a writer has it open, readers are not held up.
    if (mkfifo(name.constData(), 0600) != 0 || open(name.constData(), O_RDWR) < 0) {
        qFatal("No pipe");
    }
}

} // namespace support
