#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// The background service as far as the measurements need it: accepts one program at a time and
/// answers each request for the status.
class FakeService
{
public:
    explicit FakeService(std::string status);
    ~FakeService();
    FakeService(const FakeService &) = delete;
    FakeService &operator=(const FakeService &) = delete;

    /// The descriptor to poll: the connection, or without one the listening socket.
    int descriptor() const { return connection >= 0 ? connection : listener; }
    /// The events to poll for.
    short interest() const;
    /// Call it when the descriptor is ready.
    void serve();

    bool isConnected() const { return connection >= 0; }
    /// Queues bytes, which leave as fast as the other end takes them.
    void write(const std::string &bytes);

private:
    void flush();
    void drop();

    std::string status;
    std::string received;
    std::string pending;
    std::size_t sent = 0;
    int listener;
    int connection = -1;
};

} // namespace bench
