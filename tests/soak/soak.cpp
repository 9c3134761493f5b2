// A long life of the real program among faults. scripts/soak says how to run it.

#include "tests/soak/Soak.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRandomGenerator>

#include <exception>

int main(int argc, char *argv[])
{
    const QCoreApplication application{argc, argv};
    QCoreApplication::setApplicationName(QStringLiteral("ixovpn-soak"));

    QCommandLineParser parser;
    const QCommandLineOption client{QStringLiteral("client"), {}, QStringLiteral("program")};
    const QCommandLineOption clock{QStringLiteral("clock"), {}, QStringLiteral("library")};
    const QCommandLineOption seed{QStringLiteral("seed"), {}, QStringLiteral("number")};
    const QCommandLineOption rate{
        QStringLiteral("rate"), {}, QStringLiteral("times"), QStringLiteral("1")};
    const QCommandLineOption seconds{
        QStringLiteral("seconds"), {}, QStringLiteral("number"), QStringLiteral("60")};
    const QCommandLineOption full{QStringLiteral("full")};
    parser.addOptions({client, clock, seed, rate, seconds, full});
    parser.process(application);

    const quint32 number =
        parser.isSet(seed) ? parser.value(seed).toUInt() : QRandomGenerator::system()->generate();
    qInfo("seed %u", number);
    try {
        soak::Soak soak{parser.value(client), parser.value(clock), number,
                        parser.value(rate).toInt()};
        const auto report = [&soak] {
            const soak::Counts &done = soak.done();
            qInfo("lost links %d, state changes %d, languages %d, notices %d, pages %d, clicks %d, "
                  "suspensions %d, clock jumps %d, silences %d, floods %d",
                  done.losses, done.changes, done.languages, done.notices, done.pages, done.clicks,
                  done.stops, done.clockJumps, done.silences, done.floods);
        };
        try {
            if (parser.isSet(full)) {
                soak::Goals goals;
                goals.losses = 10'000;
                goals.changes = 100'000;
                goals.languages = 1'000;
                goals.notices = 1'000;
                soak.runUntil(goals);
            } else {
                soak.runFor(parser.value(seconds).toInt());
            }
            report();
        } catch (const std::exception &) {
            report();
            qInfo("The last actions:\n  %s",
                  qPrintable(soak.history().join(QStringLiteral("\n  "))));
            throw;
        }
    } catch (const std::exception &error) {
        qCritical("FAILED with seed %u: %s", number, error.what());
        return 1;
    }
    return 0;
}
