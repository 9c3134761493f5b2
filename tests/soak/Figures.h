#pragma once

#include <QtGlobal>

namespace soak {

/// What the system says that a process holds and does.
struct Figures
{
    static Figures of(qint64 process);

    int descriptors = 0;
    int threads = 0;
    /// Proportional set size, and what it does not share with any other process, in KiB.
    int proportional = 0;
    int ownPages = 0;
    /// Context switches of all threads since the process began that they asked for.
    qint64 wakeUps = 0;
};

} // namespace soak
