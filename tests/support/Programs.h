#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace support {

/// Waits, with the event loop running, for something that another process does. False, with a
/// warning, as soon as a program of Programs ends without it, or if all of them seem to hang.
bool waitFor(const std::function<bool()> &condition);

/// Whether this process has file systems, a process table and a network of its own, which it can
/// change as it likes. Without them scripts/isolated gives it no more than an environment.
bool ownsItsWorld();

/// The programs of one desktop, with what they find in their environment. What cannot be started
/// ends the test run with a message.
class Programs
{
public:
    struct Outcome
    {
        /// -1 if it crashed, or did not end.
        int exitCode = -1;
        QByteArray output;
        QByteArray errors;
    };

    /// The test's own environment, without a choice of the toolkit's platform.
    Programs();
    /// Ends what was started, in reverse order.
    ~Programs();
    Programs(const Programs &) = delete;
    Programs &operator=(const Programs &) = delete;

    /// Starts a program that stays. Its output and errors can be read from the result.
    QProcess *start(const QString &program, const QStringList &arguments = {});
    /// Waits for its first line of output.
    static QByteArray firstLine(QProcess &process);
    /// Asks a started program to end and waits until it has.
    void stop(QProcess *process);
    /// All but the first so many, in reverse order.
    void stopFrom(std::size_t first);
    std::size_t count() const { return running.size(); }
    /// Runs a program to its end.
    Outcome run(const QString &program, const QStringList &arguments = {}) const;

    /// What is started from now on finds a session bus of its own.
    void startSessionBus();

    /// For what is started from now on.
    QProcessEnvironment environment;

private:
    std::vector<std::unique_ptr<QProcess>> running;
};

} // namespace support
