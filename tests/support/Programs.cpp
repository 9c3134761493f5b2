#include "tests/support/Programs.h"

#include <QTest>

#include <algorithm>

namespace support {

namespace {

constexpr int hangMs = 30'000;
constexpr int hangsAgainMs = 2'000;

// After a first timeout others are likely, so they are shorter.
int patienceMs = hangMs;

// Time for the effects of a program that has ended to arrive.
constexpr int lastWordsMs = 500;

QList<QProcess *> &watched()
{
    static QList<QProcess *> all;
    return all;
}

// Reports each ended program once: later waits are about what follows.
QList<QProcess *> takeEnded()
{
    QList<QProcess *> ended;
    for (QProcess *const process : qAsConst(watched())) {
        if (process->state() == QProcess::NotRunning) {
            ended += process;
        }
    }
    for (QProcess *const process : qAsConst(ended)) {
        watched().removeOne(process);
    }
    return ended;
}

} // namespace

bool waitFor(const std::function<bool()> &condition)
{
    QList<QProcess *> ended;
    const auto isOver = [&condition, &ended] {
        if (condition()) {
            takeEnded();
            return true;
        }
        ended = takeEnded();
        return !ended.isEmpty();
    };
    if (!QTest::qWaitFor(isOver, patienceMs)) {
        qWarning("Waited in vain for %d s", patienceMs / 1000);
        patienceMs = hangsAgainMs;
        return false;
    }
    if (ended.isEmpty() || QTest::qWaitFor(condition, lastWordsMs)) {
        return true;
    }
    patienceMs = hangsAgainMs;
    for (QProcess *const process : qAsConst(ended)) {
        qWarning("%s has ended (%s %d) and says: %s", qPrintable(process->program()),
                 process->exitStatus() == QProcess::NormalExit ? "exit code" : "crash",
                 process->exitCode(), process->readAllStandardError().constData());
    }
    return false;
}

bool ownsItsWorld()
{
    return qEnvironmentVariableIsSet("IXOVPN_ISOLATED");
}

Programs::Programs()
    : environment(QProcessEnvironment::systemEnvironment())
{
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    // Tests read the programs' standard error; libgcov must not report there that coverage counters
    // are of an older build.
    environment.insert(QStringLiteral("GCOV_ERROR_FILE"), QStringLiteral("/dev/null"));
}

Programs::~Programs()
{
    stopFrom(0);
}

QProcess *Programs::start(const QString &program, const QStringList &arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->start(program, arguments);
    if (!process->waitForStarted(-1)) {
        qFatal("%s cannot be started: %s", qPrintable(program), qPrintable(process->errorString()));
    }
    watched() += process.get();
    running.push_back(std::move(process));
    return running.back().get();
}

QByteArray Programs::firstLine(QProcess &process)
{
    if (!waitFor([&process] { return process.canReadLine(); })) {
        qFatal("%s says nothing", qPrintable(process.program()));
    }
    return process.readLine().trimmed();
}

void Programs::stop(QProcess *process)
{
    const auto it = std::find_if(running.begin(), running.end(),
                                 [process](const auto &ours) { return ours.get() == process; });
    if (it == running.end()) {
        qFatal("This program was not started here");
    }
    process->terminate();
    if (process->state() != QProcess::NotRunning && !process->waitForFinished(patienceMs)) {
        qWarning("%s has to be killed", qPrintable(process->program()));
        process->kill();
        process->waitForFinished(-1);
    }
    watched().removeOne(process);
    running.erase(it);
}

void Programs::stopFrom(std::size_t first)
{
    while (running.size() > first) {
        stop(running.back().get());
    }
}

Programs::Outcome Programs::run(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(-1)) {
        qFatal("%s cannot be started: %s", qPrintable(program), qPrintable(process.errorString()));
    }
    if (!process.waitForFinished(patienceMs)) {
        qWarning("%s does not end", qPrintable(program));
        patienceMs = hangsAgainMs;
        process.kill();
        process.waitForFinished(-1);
    }
    const bool ended = process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

void Programs::setPace(double pace)
{
    const QString clock = QStringLiteral(IXOVPN_CLOCK);
    if (!clock.isEmpty()) {
        environment.insert(QStringLiteral("LD_PRELOAD"), clock);
        // Converting the time stamps of files would take longer than the program's start.
        environment.insert(QStringLiteral("NO_FAKE_STAT"), QStringLiteral("1"));
        environment.insert(QStringLiteral("FAKETIME"), QStringLiteral("+0 x%1").arg(pace));
    }
}

void Programs::startSessionBus()
{
    QProcess *const bus = start(QStringLiteral("dbus-daemon"),
                                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                 QStringLiteral("--print-address")});
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QString::fromLatin1(firstLine(*bus)));
}

} // namespace support
