#include "tools/bench/Child.h"

#include <csignal>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

constexpr std::int64_t nsPerSecond = 1'000'000'000;

std::int64_t read(clockid_t clock)
{
    timespec time = {};
    if (clock_gettime(clock, &time) != 0) {
        throw std::runtime_error{"the measured program has ended"};
    }
    return time.tv_sec * nsPerSecond + time.tv_nsec;
}

// Sum of the numbers on the lines that begin with one of the keys.
long sumOf(const std::filesystem::path &file, const std::vector<std::string> &keys)
{
    std::ifstream stream{file};
    long sum = 0;
    for (std::string line; std::getline(stream, line);) {
        for (const std::string &key : keys) {
            if (line.compare(0, key.size(), key) == 0) {
                sum += std::stol(line.substr(key.size()));
            }
        }
    }
    return sum;
}

std::filesystem::path processFolder(pid_t id)
{
    return std::filesystem::path{"/proc"} / std::to_string(id);
}

} // namespace

std::int64_t now()
{
    return read(CLOCK_MONOTONIC);
}

Child::Child(const std::vector<std::string> &command)
{
    std::vector<char *> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string &word : command) {
        arguments.push_back(const_cast<char *>(word.c_str()));
    }
    arguments.push_back(nullptr);
    startedAt = now();
    const int error = posix_spawn(&id, arguments[0], nullptr, nullptr, arguments.data(), environ);
    if (error != 0) {
        throw std::runtime_error{command.front() + ": " + std::strerror(error)};
    }
}

Child::~Child()
{
    kill(id, SIGKILL);
    waitpid(id, nullptr, 0);
}

std::int64_t Child::processorTime() const
{
    clockid_t clock = {};
    if (clock_getcpuclockid(id, &clock) != 0) {
        throw std::runtime_error{"the measured program has ended"};
    }
    return read(clock);
}

std::map<long, long> Child::switches() const
{
    std::map<long, long> sums;
    for (const auto &thread : std::filesystem::directory_iterator{processFolder(id) / "task"}) {
        const long sum = sumOf(thread.path() / "status",
                               {"voluntary_ctxt_switches:", "nonvoluntary_ctxt_switches:"});
        // A sum of 0 means that the thread has ended meanwhile.
        if (sum > 0) {
            sums[std::stol(thread.path().filename())] = sum;
        }
    }
    return sums;
}

long Child::proportionalSize() const
{
    return sumOf(processFolder(id) / "smaps_rollup", {"Pss:"});
}

} // namespace bench
