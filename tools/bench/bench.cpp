// Measures the client and its baselines, programs that do the least possible, in turn. See
// docs/benchmarks.md; scripts/bench gives it a display of its own.
//
//   ixovpn-bench FOLDER-OF-PROGRAMS ROUNDS MEASUREMENT [COMMAND...]
//
// ROUNDS 0 stands for each measurement's own number. The commands, without arguments, are of other
// programs that live in the tray, for the measurement "others".

#include "tools/bench/Child.h"
#include "tools/bench/FakeService.h"
#include "tools/bench/Results.h"
#include "tools/bench/Screen.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>

#include <poll.h>

namespace {

using bench::Child;
using bench::FakeService;
using bench::msOf;
using bench::now;
using bench::Results;
using bench::Screen;

constexpr std::int64_t nsPerMs = 1'000'000;
constexpr std::int64_t settleMs = 300;
constexpr std::int64_t patienceMs = 30'000;
constexpr std::int64_t quietMs = 3'000;
constexpr std::int64_t idleMs = 20'000;
constexpr std::int64_t pulseMs = 10'000;
constexpr std::int64_t othersSettleMs = 10'000;
constexpr std::int64_t betweenPingsMs = 5;
constexpr int floodLines = 200'000;
constexpr int delayLines = 40;

// The targets: the maximum of a ratio (judgeRatio) or of a figure (judgeLargest).
constexpr double startTarget = 1.15;
constexpr double memoryTarget = 1.15;
constexpr double floodTarget = 2.0;
constexpr double answerTargetMs = 100.0;
constexpr double pulseTarget = 2.0;
constexpr double idleTarget = 0.0;

class Bench
{
public:
    Bench(const std::string &programs_, int rounds_, std::vector<std::string> others_)
        : client(programs_ + "/ixovpn-client")
        , baseline(programs_ + "/ixovpn-bench-baseline")
        , wantedRounds(rounds_)
        , strangers(std::move(others_))
    {}

    void start();
    void memory();
    void idle();
    void flood();
    void delay();
    void pulse();
    /// The client beside other programs that live in the tray: what can be measured of any program.
    void others();

private:
    using Command = std::vector<std::string>;
    struct Cost
    {
        double ms;
        double switches;
    };

    int rounds(int usual) const { return wantedRounds > 0 ? wantedRounds : usual; }

    /// Serves display and service until the condition holds; false if it does not within `ms`.
    bool pump(std::int64_t ms, const std::function<bool()> &condition);
    void pass(std::int64_t ms);
    void require(const std::function<bool()> &condition, const char *what);

    /// Leaves the program with its first painting on the screen.
    std::unique_ptr<Child> show(const Command &command);
    void startOnce(Results &results, int round, const std::string &name, const Command &command);
    Cost costOf(const Child &child, std::int64_t ms);
    void addCost(Results &results, const std::string &name, const Child &child, std::int64_t ms);
    void floodOnce(Results &results, const std::string &name, const Command &command);
    void delayOnce(Results &results, const std::string &name, const Command &command,
                   const std::array<std::string, 2> &lines);

    /// The baseline without the OpenGL driver, which the client does not load either.
    Command baselineWithoutOpenGl() const
    {
        return {"/usr/bin/env", "QT_XCB_GL_INTEGRATION=none", baseline};
    }

    Screen screen;
    std::unique_ptr<FakeService> service;
    std::string client;
    std::string baseline;
    int wantedRounds;
    std::vector<std::string> strangers;
};

bool Bench::pump(std::int64_t ms, const std::function<bool()> &condition)
{
    const std::int64_t end = now() + ms * nsPerMs;
    for (;;) {
        screen.serve();
        if (condition()) {
            return true;
        }
        const std::int64_t left = end - now();
        if (left <= 0) {
            return false;
        }
        std::array<pollfd, 2> sources{pollfd{screen.descriptor(), POLLIN, 0}, pollfd{-1, 0, 0}};
        if (service) {
            sources[1] = {service->descriptor(), service->interest(), 0};
        }
        poll(sources.data(), sources.size(), static_cast<int>(left / nsPerMs) + 1);
        if (sources[1].revents != 0) {
            service->serve();
        }
    }
}

void Bench::pass(std::int64_t ms)
{
    pump(ms, [] { return false; });
}

void Bench::require(const std::function<bool()> &condition, const char *what)
{
    if (!pump(patienceMs, condition)) {
        throw std::runtime_error{std::string{"waited in vain for "} + what};
    }
}

std::unique_ptr<Child> Bench::show(const Command &command)
{
    screen.expectWindow();
    auto child = std::make_unique<Child>(command);
    require([this] { return !screen.paintings().empty(); }, "the first painting");
    return child;
}

void Bench::startOnce(Results &results, int round, const std::string &name, const Command &command)
{
    screen.expectWindow();
    Child child{command};
    std::size_t seen = 0;
    std::int64_t paintedAt = 0;
    std::int64_t processorTime = 0;
    std::vector<std::uint8_t> shown;
    const auto look = [&] {
        if (screen.paintings().size() == seen) {
            return false;
        }
        const std::int64_t reported = screen.paintings()[seen];
        const std::int64_t used = child.processorTime();
        seen = screen.paintings().size();
        const auto edge = screen.edge();
        if (edge && *edge != shown) {
            shown = *edge;
            paintedAt = reported;
            processorTime = used;
        }
        return paintedAt != 0;
    };
    require(look, "the first painting");
    pump(settleMs, [&look] {
        look();
        return false;
    });
    if (round > 0) {
        results.add(name, "ms to first painting", msOf(paintedAt - child.started()));
        results.add(name, "CPU ms to first painting", msOf(processorTime));
    }
}

void Bench::start()
{
    constexpr int usualRounds = 21;
    constexpr int warmUps = 3;
    Results results{"start"};
    service = std::make_unique<FakeService>("stopped");
    for (int round = 1 - warmUps; round <= rounds(usualRounds); ++round) {
        startOnce(results, round, "client", {client});
        startOnce(results, round, "baseline", {baseline});
        startOnce(results, round, "baseline without OpenGL", baselineWithoutOpenGl());
        screen.raiseTray();
        startOnce(results, round, "client with a tray", {client});
        screen.removeTray();
    }
    service.reset();
    for (const char *quantity : {"ms to first painting", "CPU ms to first painting"}) {
        for (const char *name :
             {"client", "client with a tray", "baseline", "baseline without OpenGL"}) {
            results.print(name, quantity);
        }
        results.judgeRatio(quantity, "client", "baseline", startTarget);
    }
}

void Bench::memory()
{
    constexpr int usualRounds = 5;
    const std::string quantity = "KiB of memory (PSS)";
    Results results{"memory"};
    service = std::make_unique<FakeService>("running");
    for (int round = 1; round <= rounds(usualRounds); ++round) {
        for (const auto &[name, command] :
             {std::pair{"client", Command{client}}, std::pair{"baseline", Command{baseline}},
              std::pair{"baseline without OpenGL", baselineWithoutOpenGl()}}) {
            const auto child = show(command);
            pass(quietMs);
            results.add(name, quantity, static_cast<double>(child->proportionalSize()));
        }
    }
    service.reset();
    results.print("client", quantity);
    results.print("baseline", quantity);
    results.print("baseline without OpenGL", quantity);
    results.judgeRatio(quantity, "client", "baseline", memoryTarget);
}

Bench::Cost Bench::costOf(const Child &child, std::int64_t ms)
{
    const std::int64_t timeBefore = child.processorTime();
    std::map<long, long> before = child.switches();
    pass(ms);
    Cost cost{msOf(child.processorTime() - timeBefore), 0.0};
    // The counters of a thread that has ended are gone.
    for (const auto &[thread, switches] : child.switches()) {
        cost.switches += static_cast<double>(switches - before[thread]);
    }
    return cost;
}

void Bench::addCost(Results &results, const std::string &name, const Child &child, std::int64_t ms)
{
    const Cost cost = costOf(child, ms);
    results.add(name, "CPU ms", cost.ms);
    results.add(name, "context switches", cost.switches);
}

void Bench::idle()
{
    constexpr int usualRounds = 3;
    Results results{"idle for 20 s"};
    for (int round = 1; round <= rounds(usualRounds); ++round) {
        service = std::make_unique<FakeService>("running");
        {
            const auto child = show({client});
            pass(quietMs);
            addCost(results, "client, connected", *child, idleMs);
        }
        service.reset();
        {
            const auto child = show({client});
            pass(quietMs);
            addCost(results, "client, service away", *child, idleMs);
        }
        const auto child = show({baseline});
        pass(quietMs);
        addCost(results, "baseline", *child, idleMs);
    }
    for (const char *name : {"client, connected", "client, service away", "baseline"}) {
        results.print(name, "CPU ms");
        results.print(name, "context switches");
    }
    results.judgeLargest("client, connected", "context switches", idleTarget);
}

void Bench::floodOnce(Results &results, const std::string &name, const Command &command)
{
    service = std::make_unique<FakeService>("stopped");
    const auto child = show(command);
    require([this] { return service->isConnected(); }, "the connection");
    pass(quietMs);

    std::string lines;
    for (int i = 0; i < floodLines; ++i) {
        lines += i % 2 == 0 ? "status: running\n" : "status: stopped\n";
    }
    lines += "error: end\n";

    std::int64_t asked = now();
    double slowestAnswer = 0.0;
    const auto watchAnswers = [&] {
        const std::int64_t current = now();
        if (!screen.pong()) {
            slowestAnswer = std::max(slowestAnswer, msOf(current - asked));
        } else {
            slowestAnswer = std::max(slowestAnswer, msOf(*screen.pong() - asked));
            if (current - asked > betweenPingsMs * nsPerMs) {
                asked = current;
                screen.ping();
            }
        }
    };

    const std::int64_t timeBefore = child->processorTime();
    const std::int64_t begin = now();
    asked = begin;
    screen.ping();
    service->write(lines);
    std::size_t seen = 0;
    require(
        [&] {
            watchAnswers();
            const bool drawn = screen.paintings().size() != seen;
            seen = screen.paintings().size();
            return drawn && screen.showsFailure();
        },
        "the last line's effect");
    results.add(name, "ms to the last line's effect", msOf(now() - begin));
    results.add(name, "CPU ms", msOf(child->processorTime() - timeBefore));
    results.add(name, "ms of the slowest answer", slowestAnswer);
    service.reset();
}

void Bench::flood()
{
    constexpr int usualRounds = 5;
    Results results{"flood of 200000 lines"};
    for (int round = 1; round <= rounds(usualRounds); ++round) {
        floodOnce(results, "client", {client});
        floodOnce(results, "baseline", {baseline, "--lines"});
    }
    for (const char *quantity :
         {"ms to the last line's effect", "CPU ms", "ms of the slowest answer"}) {
        results.print("client", quantity);
        results.print("baseline", quantity);
    }
    results.judgeRatio("ms to the last line's effect", "client", "baseline", floodTarget);
    results.judgeLargest("client", "ms of the slowest answer", answerTargetMs);
}

void Bench::delayOnce(Results &results, const std::string &name, const Command &command,
                      const std::array<std::string, 2> &lines)
{
    service = std::make_unique<FakeService>("stopped");
    const auto child = show(command);
    require([this] { return service->isConnected(); }, "the connection");
    for (int i = 0; i < delayLines; ++i) {
        // Longer than the switch's animation, and out of step with its frames.
        pass(2 * settleMs + i % 17);
        screen.forgetPaintings();
        const std::int64_t begin = now();
        service->write(lines[static_cast<std::size_t>(i % 2)]);
        require([this] { return !screen.paintings().empty(); }, "the change");
        results.add(name, "ms to the change", msOf(screen.paintings().front() - begin));
    }
    service.reset();
}

void Bench::delay()
{
    Results results{"delay from a line to its change on the screen"};
    delayOnce(results, "client", {client}, {"status: running\n", "status: stopped\n"});
    delayOnce(results, "baseline", {baseline, "--lines"}, {"error: a\n", "error: b\n"});
    results.print("client", "ms to the change");
    results.print("baseline", "ms to the change");
}

void Bench::pulse()
{
    constexpr int usualRounds = 3;
    Results results{"10 s of the switch"};
    const auto inState = [&](const std::string &name, const std::string &status,
                             const std::function<void()> &hide) {
        service = std::make_unique<FakeService>(status);
        const auto child = show({client});
        pass(quietMs);
        if (hide) {
            hide();
            pass(quietMs);
        }
        addCost(results, name, *child, pulseMs);
        service.reset();
    };
    for (int round = 1; round <= rounds(usualRounds); ++round) {
        inState("client, connecting", "connecting", {});
        {
            const auto child = show({baseline, "--animate"});
            pass(quietMs);
            addCost(results, "baseline, animated", *child, pulseMs);
        }
        inState("client, connecting, minimised", "connecting", [this] { screen.minimise(); });
        screen.raiseTray();
        inState("client, connecting, in tray", "connecting", [this] { screen.close(); });
        screen.removeTray();
        inState("client, on", "running", {});
        inState("client, off", "stopped", {});
    }
    for (const char *name :
         {"client, connecting", "baseline, animated", "client, connecting, minimised",
          "client, connecting, in tray", "client, on", "client, off"}) {
        results.print(name, "CPU ms");
        results.print(name, "context switches");
    }
    results.judgeRatio("CPU ms", "client, connecting", "baseline, animated", pulseTarget);
    results.judgeLargest("client, on", "context switches", idleTarget);
    results.judgeLargest("client, off", "context switches", idleTarget);
}

void Bench::others()
{
    constexpr int usualRounds = 3;
    const std::string memory = "KiB of memory (PSS)";
    Results results{"others"};
    std::vector<std::string> programs{client};
    programs.insert(programs.end(), strangers.begin(), strangers.end());
    const auto nameOf = [](const std::string &path) {
        return path.substr(path.find_last_of('/') + 1);
    };
    service = std::make_unique<FakeService>("running");
    screen.raiseTray();
    for (int round = 1; round <= rounds(usualRounds); ++round) {
        for (const std::string &program : programs) {
            const std::string name = nameOf(program);
            const Child child{{program}};
            pass(othersSettleMs);
            results.add(name, "CPU ms of the first 10 s", msOf(child.processorTime()));
            results.add(name, memory, static_cast<double>(child.proportionalSize()));
            addCost(results, name, child, idleMs);
        }
    }
    screen.removeTray();
    service.reset();
    for (const char *quantity :
         {"CPU ms of the first 10 s", memory.c_str(), "CPU ms", "context switches"}) {
        for (const std::string &program : programs) {
            results.print(nameOf(program), quantity);
        }
    }
}

void run(Bench &bench, const std::string &measurement)
{
    static const std::array<std::pair<const char *, void (Bench::*)()>, 7> all{
        std::pair{"start", &Bench::start},  std::pair{"memory", &Bench::memory},
        std::pair{"idle", &Bench::idle},    std::pair{"flood", &Bench::flood},
        std::pair{"delay", &Bench::delay},  std::pair{"pulse", &Bench::pulse},
        std::pair{"others", &Bench::others}};
    for (const auto &[name, function] : all) {
        if (name == measurement) {
            (bench.*function)();
            return;
        }
    }
    throw std::runtime_error{"no measurement is called " + measurement};
}

} // namespace

int main(int argc, char *argv[])
{
    constexpr int measurement = 3;
    constexpr int firstCommand = 4;
    if (argc <= measurement) {
        std::fputs("run scripts/bench instead\n", stderr);
        return 2;
    }
    try {
        Bench bench{argv[1], std::stoi(argv[2]),
                    std::vector<std::string>(argv + firstCommand, argv + argc)};
        run(bench, argv[measurement]);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "ixovpn-bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
