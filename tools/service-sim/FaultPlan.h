#pragma once

#include <QRandomGenerator>
#include <QVector>

namespace servicesim {

/// What can go wrong with one line on its way to one client.
enum class Fault {
    None,
    /// The connection ends in the orderly way; the line is lost.
    Close,
    /// The connection is reset; the line is lost.
    Reset,
    /// This line and some after it are lost, the connection stands.
    Silence,
    /// The line arrives in two pieces.
    Split,
    /// The line ends in a carriage return and a line feed.
    Crlf
};

struct FaultSettings
{
    /// Without None and without repetitions.
    QVector<Fault> kinds;
    /// Of a fault in any one line, 0 to 1.
    double probability = 0.1;
    /// How many lines a silence swallows.
    int silentLines = 5;
    quint32 seed = 1;
};

/// The faults that one connection meets, one decision for each line.
///
/// The decisions follow from the settings and the connection's number alone: neither time nor
/// other connections change them.
class FaultPlan
{
public:
    struct Decision
    {
        Fault fault = Fault::None;
        /// Where a line is split, as a share of its length, 0 up to but not including 1.
        double position = 0.0;
    };

    FaultPlan(const FaultSettings &settings, quint32 connectionNumber);

    Decision next();

private:
    QVector<Fault> kinds;
    double probability;
    QRandomGenerator generator;
};

} // namespace servicesim
