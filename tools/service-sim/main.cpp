#include "tools/service-sim/InputLines.h"
#include "tools/service-sim/Options.h"
#include "tools/service-sim/Simulator.h"
#include "tools/service-sim/TerminationSignals.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

constexpr int portTaken = 1;
constexpr int badOptions = 2;

void print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toUtf8().constData(), stream);
    // A pipe would hold lines back until the buffer is full.
    std::fflush(stream);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application{argc, argv};
    QCoreApplication::setApplicationName(QStringLiteral("ixovpn-service-sim"));

    const servicesim::ParsedOptions parsed =
        servicesim::parseOptions(QCoreApplication::arguments());
    if (!parsed.help.isEmpty()) {
        print(stdout, parsed.help);
        return 0;
    }
    if (!parsed.options) {
        print(stderr, QStringLiteral("ixovpn-service-sim: %1 (try --help)\n").arg(parsed.fault));
        return badOptions;
    }

    servicesim::TerminationSignals termination;
    QObject::connect(&termination, &servicesim::TerminationSignals::received, &application,
                     &QCoreApplication::quit);

    servicesim::Simulator simulator{*parsed.options};
    const QString host{ipc::protocol::serviceHost};
    if (!simulator.listen()) {
        print(stderr, QStringLiteral("ixovpn-service-sim: cannot listen on %1:%2: %3\n")
                          .arg(host)
                          .arg(parsed.options->port)
                          .arg(simulator.errorString()));
        return portTaken;
    }
    if (!parsed.options->quiet) {
        QObject::connect(&simulator, &servicesim::Simulator::noted, &application,
                         [](const QString &entry) { print(stdout, entry + QLatin1Char{'\n'}); });
    }
    servicesim::InputLines input;
    QObject::connect(&input, &servicesim::InputLines::lineRead, &simulator,
                     &servicesim::Simulator::sendAsItStands);

    print(stdout, QStringLiteral("listening on %1:%2\n").arg(host).arg(simulator.port()));
    return QCoreApplication::exec();
}
