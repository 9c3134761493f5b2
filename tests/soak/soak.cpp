// Injects faults into the real program. scripts/soak runs it.

#include "tests/soak/Soak.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRandomGenerator>

#include <cstdlib>
#include <exception>
#include <limits>

namespace {

constexpr int wrongUse = 2;

/// Ends the program if the option's value is anything but a whole number of this range.
qint64 numberOf(const QCommandLineParser &parser, const QCommandLineOption &option, qint64 least,
                qint64 most)
{
    const QString text = parser.value(option);
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    if (!isNumber || number < least || number > most) {
        qCritical("--%s: a whole number from %lld to %lld, not \"%s\"",
                  qPrintable(option.names().constFirst()), least, most, qPrintable(text));
        std::exit(wrongUse);
    }
    return number;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application{argc, argv};
    QCoreApplication::setApplicationName(QStringLiteral("ixovpn-soak"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Injects faults into the real program: lost connections, bursts of states, languages,\n"
        "notices, pages, suspensions, clock jumps, silence, floods, in an order that a seed\n"
        "decides. At every step the program must show and send what a plain model says, and at\n"
        "the end hold no more than at the start."));
    parser.addHelpOption();
    const QCommandLineOption seconds{
        QStringLiteral("seconds"),
        QStringLiteral("Inject faults for so many seconds (60); the rest takes another minute."),
        QStringLiteral("number"), QStringLiteral("60")};
    const QCommandLineOption full{
        QStringLiteral("full"),
        QStringLiteral("Go on until 10,000 lost connections, 100,000 state changes, 1,000 "
                       "languages and 1,000 notices have been reached: hours.")};
    const QCommandLineOption seed{
        QStringLiteral("seed"), QStringLiteral("Seed of the order; random by default."),
        QStringLiteral("number"), QString::number(QRandomGenerator::system()->generate())};
    const QCommandLineOption rate{
        QStringLiteral("rate"),
        QStringLiteral("Let the program's clock run so many times as fast, up to 50, so that it "
                       "waits less before it comes back; then without clock jumps."),
        QStringLiteral("times"), QStringLiteral("1")};
    const QCommandLineOption client{
        QStringLiteral("client"),
        QStringLiteral("Test this build of the program; the release by default."),
        QStringLiteral("path"), QStringLiteral("build/release/bin/ixovpn-client")};
    parser.addOptions({seconds, full, seed, rate, client});
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        parser.showHelp(wrongUse);
    }

    const auto number =
        static_cast<quint32>(numberOf(parser, seed, 0, std::numeric_limits<quint32>::max()));
    const int times = static_cast<int>(numberOf(parser, rate, 1, soak::Soak::fastestRate));
    const int length =
        static_cast<int>(numberOf(parser, seconds, 1, std::numeric_limits<int>::max()));
    qInfo("seed %u", number);
    try {
        soak::Soak soak{parser.value(client), number, times};
        const auto report = [&soak] {
            const soak::Counts &done = soak.done();
            qInfo("lost connections %d, state changes %d, languages %d, notices %d, pages %d, "
                  "clicks %d, suspensions %d, clock jumps %d, silences %d, floods %d",
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
                soak.runFor(length);
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
