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

/// Waits, with the event loop running, until another process fulfils the condition. False, with a
/// warning, as soon as a program of Programs ends first, or if all of them seem to hang.
bool waitFor(const std::function<bool()> &condition);

/// Whether this process runs in a sandbox: with file systems, a process table and a network of its
/// own, which it can change. Without namespaces scripts/isolated only sets an environment.
bool ownsItsWorld();

/// The programs of one desktop, and their environment. A program that cannot be started ends the
/// test run with a message.
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

    /// With the test's own environment, without QT_QPA_PLATFORM.
    Programs();
    /// Stops all programs, in reverse order.
    ~Programs();
    Programs(const Programs &) = delete;
    Programs &operator=(const Programs &) = delete;

    /// Starts a program that stays. Its output and errors can be read from the result.
    QProcess *start(const QString &program, const QStringList &arguments = {});
    /// Waits for its first line of output.
    static QByteArray firstLine(QProcess &process);
    /// Asks a started program to end and waits until it has.
    void stop(QProcess *process);
    /// Stops all programs except the first `first` ones, in reverse order.
    void stopFrom(std::size_t first);
    std::size_t count() const { return running.size(); }
    /// Runs a program to its end.
    Outcome run(const QString &program, const QStringList &arguments = {}) const;

    /// Programs that are started from now on have a session bus of their own.
    void startSessionBus();

    /// Makes the clock of programs that are started from now on this many times as fast. Does
    /// nothing with the sanitisers, which refuse to run with libfaketime.
    void setPace(double pace);

    /// For programs that are started from now on.
    QProcessEnvironment environment;

private:
    std::vector<std::unique_ptr<QProcess>> running;
};

} // namespace support
