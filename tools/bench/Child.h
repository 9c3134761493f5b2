#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace bench {

/// Nanoseconds of the monotonic clock.
std::int64_t now();

constexpr double msOf(std::int64_t ns)
{
    return static_cast<double>(ns) / 1e6;
}

/// A running program under measurement. The destructor ends it and waits for its end.
class Child
{
public:
    explicit Child(const std::vector<std::string> &command);
    ~Child();
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    /// When the process was about to be started.
    std::int64_t started() const { return startedAt; }
    pid_t pid() const { return id; }

    /// Processor time of all threads so far, in nanoseconds.
    std::int64_t processorTime() const;
    /// Context switches so far, voluntary and involuntary, of each running thread, by its ID.
    std::map<long, long> switches() const;
    /// Proportional set size in KiB.
    long proportionalSize() const;

private:
    std::int64_t startedAt;
    pid_t id = -1;
};

} // namespace bench
