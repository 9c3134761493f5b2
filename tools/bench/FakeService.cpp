#include "tools/bench/FakeService.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr std::uint16_t servicePort = 47652;
constexpr std::size_t readSize = 4096;
constexpr std::size_t writeSize = 65536;

} // namespace

FakeService::FakeService(std::string status_)
    : status(std::move(status_))
    , listener(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
{
    const int on = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(servicePort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        listen(listener, 1) != 0) {
        close(listener);
        throw std::runtime_error{"the service's port is taken"};
    }
}

FakeService::~FakeService()
{
    drop();
    close(listener);
}

short FakeService::interest() const
{
    return connection >= 0 && sent < pending.size() ? POLLIN | POLLOUT : POLLIN;
}

void FakeService::serve()
{
    if (connection < 0) {
        connection = accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        const int on = 1;
        setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        return;
    }
    std::array<char, readSize> buffer{};
    const ssize_t size = read(connection, buffer.data(), buffer.size());
    if (size == 0 || (size < 0 && errno != EAGAIN)) {
        drop();
        return;
    }
    if (size > 0) {
        received.append(buffer.data(), static_cast<std::size_t>(size));
    }
    for (std::size_t end = 0; (end = received.find('\n')) != std::string::npos;) {
        if (received.compare(0, end, R"({"cmd":"status"})") == 0) {
            write("status: " + status + '\n');
        }
        received.erase(0, end + 1);
    }
    flush();
}

void FakeService::write(const std::string &bytes)
{
    pending += bytes;
    flush();
}

// Writes one piece at a time: a program that reads as fast as this writes must not keep Bench from
// watching the display.
void FakeService::flush()
{
    if (connection < 0 || sent == pending.size()) {
        return;
    }
    const std::size_t piece = std::min(pending.size() - sent, writeSize);
    const ssize_t size = send(connection, pending.data() + sent, piece, MSG_NOSIGNAL);
    if (size > 0) {
        sent += static_cast<std::size_t>(size);
    }
    if (sent == pending.size()) {
        pending.clear();
        sent = 0;
    }
}

void FakeService::drop()
{
    if (connection >= 0) {
        close(connection);
    }
    connection = -1;
    received.clear();
    pending.clear();
    sent = 0;
}

} // namespace bench
