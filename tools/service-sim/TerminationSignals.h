#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace servicesim {

/// Turns the first SIGINT or SIGTERM into a signal of the event loop; the next one ends the
/// process as usual. One object at a time.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    TerminationSignals();
    ~TerminationSignals() override;

Q_SIGNALS:
    void received();

private:
    std::unique_ptr<QSocketNotifier> notifier;
};

} // namespace servicesim
