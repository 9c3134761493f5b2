#include "tests/fuzz/LoopbackService.h"

#include "ipc/Protocol.h"
#include "tests/fuzz/Finding.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace fuzz {

LoopbackService::LoopbackService()
    : listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    const int on = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(ipc::protocol::servicePort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    require(bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                listen(listener, 1) == 0,
            "no port:", QString::fromLocal8Bit(std::strerror(errno)));
}

LoopbackService::~LoopbackService()
{
    ::close(listener);
}

bool LoopbackService::isCalled() const
{
    pollfd call = {listener, POLLIN, 0};
    return poll(&call, 1, 0) == 1;
}

void LoopbackService::accept()
{
    connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    require(connection >= 0, "nobody to accept");
    const int on = 1;
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

void LoopbackService::write(const QByteArray &bytes)
{
    require(send(connection, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                 MSG_NOSIGNAL) == bytes.size(),
            "could not write");
}

void LoopbackService::close()
{
    ::close(connection);
    connection = -1;
}

void LoopbackService::reset()
{
    const linger atOnce = {1, 0};
    setsockopt(connection, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close();
}

QList<QByteArray> LoopbackService::takeLines()
{
    std::array<char, 4096> buffer = {};
    ssize_t length = 0;
    while ((length = recv(connection, buffer.data(), buffer.size(), 0)) > 0) {
        received.append(buffer.data(), static_cast<int>(length));
    }
    QList<QByteArray> lines = received.split('\n');
    received = lines.takeLast();
    return lines;
}

} // namespace fuzz
