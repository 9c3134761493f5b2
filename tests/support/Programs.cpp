#include "tests/support/Programs.h"

#include <QTest>

#include <algorithm>

namespace support {

namespace {

constexpr int hangMs = 120'000;

} // namespace

bool waitFor(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, hangMs);
}

Programs::Programs()
    : environment(QProcessEnvironment::systemEnvironment())
{
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    // What a program says is nobody's business but its own; coverage counters that an older build
    // left behind must not speak up in it.
    environment.insert(QStringLiteral("GCOV_ERROR_FILE"), QStringLiteral("/dev/null"));
}

Programs::~Programs()
{
    while (!running.empty()) {
        stop(running.back().get());
    }
}

QProcess *Programs::start(const QString &program, const QStringList &arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->start(program, arguments);
    if (!process->waitForStarted(-1)) {
        qFatal("%s cannot be started: %s", qPrintable(program), qPrintable(process->errorString()));
    }
    running.push_back(std::move(process));
    return running.back().get();
}

QByteArray Programs::firstLine(QProcess &process)
{
    if (!waitFor([&process] { return process.canReadLine(); })) {
        qFatal("%s says nothing: %s", qPrintable(process.program()),
               process.readAllStandardError().constData());
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
    if (process->state() != QProcess::NotRunning && !process->waitForFinished(hangMs)) {
        qWarning("%s has to be killed", qPrintable(process->program()));
        process->kill();
        process->waitForFinished(-1);
    }
    running.erase(it);
}

Programs::Outcome Programs::run(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(-1)) {
        qFatal("%s cannot be started: %s", qPrintable(program), qPrintable(process.errorString()));
    }
    process.waitForFinished(-1);
    const bool ended = process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
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
