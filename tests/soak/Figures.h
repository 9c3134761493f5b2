#pragma once

#include <QtGlobal>

namespace soak {

/// The resources of a process, as the system reports them.
struct Figures
{
    /// Throws std::runtime_error if the system does not say all of it.
    static Figures of(qint64 process);

    int descriptors = 0;
    int threads = 0;
    /// Proportional set size and private dirty memory, in KiB. The system decides how much of the
    /// mapped files the former includes.
    int proportional = 0;
    int written = 0;
    /// Voluntary context switches of all threads since the process began.
    qint64 wakeUps = 0;
};

} // namespace soak
