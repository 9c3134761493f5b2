#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <optional>

namespace servicesim {

/// The steps of the way up and of the way down, in order.
enum class Step { Fetching, Config, Starting, Connecting, Running, Stopping, Stopped };

/// How and where a walk breaks off: after this step the failure comes instead of the next step.
struct Failure
{
    enum class Form { Status, Error };

    Step after;
    QString text;
    Form form;
};

struct TunnelSettings
{
    QString startState = QStringLiteral("stopped");
    std::chrono::milliseconds stepDelay{400};
    quint64 configBytes = 4096;
    std::optional<Failure> failure;
    /// Every way up ends after fetching with the report of the expired subscription.
    bool expired = false;
};

/// A simulated tunnel: it walks up and down, one step after each delay, and reports each step as a
/// line for the clients.
///
/// A start state in the middle of a walk stays until a command comes.
class Tunnel : public QObject
{
    Q_OBJECT

public:
    explicit Tunnel(const TunnelSettings &settings);

    /// Begins the way up; during the way down, remembers the request and begins after its end.
    /// False if this reports no line now.
    bool requestUp();
    /// Begins the way down, from whichever step the way up has reached; forgets a remembered
    /// requestUp(). False if this reports no line now.
    bool requestDown();

    /// The line that reports the current state.
    QString stateLine() const;

Q_SIGNALS:
    void said(const QString &line);

private:
    void advance();
    void enter(Step reached);
    void fail();
    void sayState(const QString &word);

    TunnelSettings settings;
    QTimer timer;
    QString state;
    /// The last step reached; meaningless while the timer is stopped.
    Step step = Step::Stopped;
    bool upAgain = false;
};

} // namespace servicesim
