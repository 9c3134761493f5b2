#include "tools/service-sim/Options.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <limits>

namespace servicesim {

namespace {

namespace protocol = ipc::protocol;

constexpr int longestDelayMs = 3'600'000;

template <typename Value> struct Named
{
    QLatin1String name;
    Value value;
};

// "stopped" is the end of every walk: nothing is left to go wrong there.
constexpr std::array stepNames{
    Named<Step>{protocol::word("fetching"), Step::Fetching},
    Named<Step>{protocol::word("config"), Step::Config},
    Named<Step>{protocol::word("starting"), Step::Starting},
    Named<Step>{protocol::word("connecting"), Step::Connecting},
    Named<Step>{protocol::word("running"), Step::Running},
    Named<Step>{protocol::word("stopping"), Step::Stopping},
};

constexpr std::array formNames{
    Named<Failure::Form>{protocol::word("status"), Failure::Form::Status},
    Named<Failure::Form>{protocol::word("error"), Failure::Form::Error},
};

template <typename Table> QString namesIn(const Table &table)
{
    QStringList names;
    for (const auto &row : table) {
        names.append(row.name);
    }
    return names.join(QLatin1String{", "});
}

/// Reads the options one after the other and keeps the first complaint.
class Reader
{
public:
    explicit Reader(const QCommandLineParser &parser_)
        : parser(parser_)
    {}

    const QString &complaint() const { return firstComplaint; }

    void complain(const QString &text)
    {
        if (firstComplaint.isEmpty()) {
            firstComplaint = text;
        }
    }

    bool isSet(const QCommandLineOption &option) const { return parser.isSet(option); }

    template <typename Number>
    void readNumber(const QCommandLineOption &option, quint64 most, Number &number)
    {
        if (!isSet(option)) {
            return;
        }
        bool ok = false;
        const quint64 value = parser.value(option).toULongLong(&ok);
        if (!ok || value > most) {
            complain(QStringLiteral("--%1 takes a whole number up to %2")
                         .arg(option.names().constFirst())
                         .arg(most));
            return;
        }
        number = static_cast<Number>(value);
    }

    void readDelay(const QCommandLineOption &option, std::chrono::milliseconds &delay)
    {
        std::chrono::milliseconds::rep count = delay.count();
        readNumber(option, longestDelayMs, count);
        delay = std::chrono::milliseconds{count};
    }

    void readLine(const QCommandLineOption &option, QString &line)
    {
        if (isSet(option)) {
            line = checkedLine(option, parser.value(option));
        }
    }

    QString checkedLine(const QCommandLineOption &option, const QString &line)
    {
        if (line.isEmpty() || line.contains(QLatin1Char{'\n'}) ||
            line.contains(QLatin1Char{'\r'})) {
            complain(
                QStringLiteral("--%1 takes a text of one line").arg(option.names().constFirst()));
        }
        return line;
    }

    template <typename Table, typename Value>
    void readName(const QCommandLineOption &option, const Table &table, Value &value)
    {
        if (!isSet(option)) {
            return;
        }
        const QString name = parser.value(option);
        const auto row = std::find_if(table.begin(), table.end(),
                                      [&name](const auto &r) { return name == r.name; });
        if (row == table.end()) {
            complain(QStringLiteral("--%1 takes one of: %2")
                         .arg(option.names().constFirst(), namesIn(table)));
            return;
        }
        value = row->value;
    }

private:
    const QCommandLineParser &parser;
    QString firstComplaint;
};

QCommandLineOption makeOption(const char *name, const QString &description, const char *value)
{
    return QCommandLineOption{QString{QLatin1String{name}}, description,
                              QString{QLatin1String{value}}};
}

} // namespace

ParsedOptions parseOptions(const QStringList &arguments)
{
    const QCommandLineOption helpOption{QStringList{QStringLiteral("h"), QStringLiteral("help")},
                                        QStringLiteral("Print this and end.")};
    const QCommandLineOption portOption =
        makeOption("port",
                   QStringLiteral("Listen on this port of 127.0.0.1 (default %1; 0: any free one).")
                       .arg(protocol::servicePort),
                   "number");
    const QCommandLineOption quietOption{
        QStringLiteral("quiet"), QStringLiteral("Print nothing but where the simulator listens.")};
    const QCommandLineOption stateOption = makeOption(
        "state",
        QStringLiteral("Begin in this state (default stopped): a word as the service says it, "
                       "for example running, connecting or \"failed: no route\"."),
        "word");
    const QCommandLineOption delayOption =
        makeOption("delay", QStringLiteral("Take so long for each step (default 400)."), "ms");
    const QCommandLineOption configOption = makeOption(
        "config-bytes", QStringLiteral("Size of the configuration that is fetched (default 4096)."),
        "number");
    const QCommandLineOption failAtOption = makeOption(
        "fail-at",
        QStringLiteral("Fail one delay after reaching this step: %1.").arg(namesIn(stepNames)),
        "step");
    const QCommandLineOption failTextOption = makeOption(
        "fail-text", QStringLiteral("Reason of the failure (default \"simulated failure\")."),
        "text");
    const QCommandLineOption failAsOption = makeOption(
        "fail-as",
        QStringLiteral("Report the failure as \"status: failed: <text>\" (status, the default) "
                       "or as \"error: <text>\" (error)."),
        "form");
    const QCommandLineOption expiredOption{
        QStringLiteral("expired"),
        QStringLiteral("Let every connect end with an expired subscription.")};
    const QCommandLineOption noticeOption = makeOption(
        "notice",
        QStringLiteral("Send this notice to each client that connects; \"@500 <text>\" sends it "
                       "500 ms later. May be repeated."),
        "text");
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Stands in for the background service: walks through its states without a tunnel. Lines "
        "on standard input go to all clients as they stand."));
    parser.addOptions({helpOption, portOption, quietOption, stateOption, delayOption, configOption,
                       failAtOption, failTextOption, failAsOption, expiredOption, noticeOption});

    if (!parser.parse(arguments)) {
        return {std::nullopt, {}, parser.errorText()};
    }
    if (parser.isSet(helpOption)) {
        return {std::nullopt, parser.helpText(), {}};
    }

    Reader reader{parser};
    Options options;
    if (!parser.positionalArguments().isEmpty()) {
        reader.complain(QStringLiteral("\"%1\" is not an option")
                            .arg(parser.positionalArguments().constFirst()));
    }

    reader.readNumber(portOption, std::numeric_limits<quint16>::max(), options.port);
    options.quiet = reader.isSet(quietOption);

    TunnelSettings &tunnel = options.tunnel;
    reader.readLine(stateOption, tunnel.startState);
    if (protocol::parseState(tunnel.startState) == protocol::ServiceState::Unknown) {
        reader.complain(QStringLiteral("no state is called \"%1\"").arg(tunnel.startState));
    }
    reader.readDelay(delayOption, tunnel.stepDelay);
    reader.readNumber(configOption, std::numeric_limits<quint64>::max(), tunnel.configBytes);

    tunnel.expired = reader.isSet(expiredOption);
    if (reader.isSet(failAtOption)) {
        Failure failure{Step::Fetching, QStringLiteral("simulated failure"), Failure::Form::Status};
        reader.readName(failAtOption, stepNames, failure.after);
        reader.readLine(failTextOption, failure.text);
        reader.readName(failAsOption, formNames, failure.form);
        tunnel.failure = failure;
        if (tunnel.expired) {
            reader.complain(QStringLiteral("--expired and --fail-at exclude each other"));
        }
    } else if (reader.isSet(failTextOption) || reader.isSet(failAsOption)) {
        reader.complain(QStringLiteral("--fail-text and --fail-as need --fail-at"));
    }

    static const QRegularExpression delayed{QStringLiteral("\\A@([0-9]{1,9}) (.*)\\z"),
                                            QRegularExpression::DotMatchesEverythingOption};
    const QStringList notices = parser.values(noticeOption);
    for (const QString &notice : notices) {
        const QRegularExpressionMatch match = delayed.match(notice);
        const int delay = match.hasMatch() ? match.captured(1).toInt() : 0;
        if (delay > longestDelayMs) {
            reader.complain(QStringLiteral("--notice takes a delay up to %1").arg(longestDelayMs));
        }
        const QString text = match.hasMatch() ? match.captured(2) : notice;
        options.notices.append(
            {std::chrono::milliseconds{delay}, reader.checkedLine(noticeOption, text)});
    }

    if (!reader.complaint().isEmpty()) {
        return {std::nullopt, {}, reader.complaint()};
    }
    return {options, {}, {}};
}

} // namespace servicesim
