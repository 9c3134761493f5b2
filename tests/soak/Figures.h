#pragma once

#include <QtGlobal>

namespace soak {

/// What the system says that a process holds and does.
struct Figures
{
    /// Throws std::runtime_error if the system does not say all of it.
    static Figures of(qint64 process);

    int descriptors = 0;
    int threads = 0;
    /// Proportional set size, and what it has written to and shares with nobody, in KiB. Of the
    /// former, how much of the mapped files is there is the system's choice.
    int proportional = 0;
    int written = 0;
    /// Context switches of all threads since the process began that they asked for.
    qint64 wakeUps = 0;
};

} // namespace soak
