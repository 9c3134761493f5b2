#include "tools/service-sim/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <sys/eventfd.h>
#include <unistd.h>

namespace servicesim {

namespace {

constexpr std::array handledSignals{SIGINT, SIGTERM};

// A signal handler has nothing but globals.
int counter = -1;

void onSignal(int /*number*/)
{
    const quint64 one = 1;
    // There is nobody to tell of a failure in here.
    [[maybe_unused]] const ssize_t written = write(counter, &one, sizeof one);
}

} // namespace

TerminationSignals::TerminationSignals()
{
    counter = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    notifier = std::make_unique<QSocketNotifier>(counter, QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this, [this] {
        notifier->setEnabled(false);
        Q_EMIT received();
    });

    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
    for (const int number : handledSignals) {
        sigaction(number, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals()
{
    for (const int number : handledSignals) {
        std::signal(number, SIG_DFL);
    }
    notifier.reset();
    close(counter);
}

} // namespace servicesim
