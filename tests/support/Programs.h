#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace support {

/// Waits, with the event loop running, for something that another process does. Only a run that
/// hangs gets to its end, and then returns false.
bool waitFor(const std::function<bool()> &condition);

/// The programs of one desktop, with what they find in their environment. What cannot be started
/// ends the test run with a message.
class Programs
{
public:
    struct Outcome
    {
        /// -1 if it crashed.
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
