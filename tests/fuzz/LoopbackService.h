#pragma once

#include <QByteArray>
#include <QList>

namespace fuzz {

/// The other end of the client's connection, in the same process and without an event loop: what is
/// written has arrived, and what has arrived is read, at once.
class LoopbackService
{
public:
    /// Ends the program if somebody has the port.
    LoopbackService();
    ~LoopbackService();
    LoopbackService(const LoopbackService &) = delete;
    LoopbackService &operator=(const LoopbackService &) = delete;

    /// A connection waits to be taken.
    bool isCalled() const;
    /// Takes the connection that has been made.
    void accept();
    void write(const QByteArray &bytes);
    /// Ends the connection in the orderly way: what was written still arrives.
    void close();
    /// Ends it with a reset.
    void reset();

    /// Whole lines that the client has sent since the last call, without line feeds.
    QList<QByteArray> takeLines();

private:
    int listener;
    int connection = -1;
    QByteArray received;
};

} // namespace fuzz
