#include "tools/service-sim/FaultPlan.h"

#include <array>

namespace servicesim {

namespace {

QRandomGenerator seeded(quint32 seed, quint32 connectionNumber)
{
    const std::array<quint32, 2> both{seed, connectionNumber};
    return QRandomGenerator{both.data(), static_cast<qsizetype>(both.size())};
}

} // namespace

FaultPlan::FaultPlan(const FaultSettings &settings, quint32 connectionNumber)
    : kinds(settings.kinds)
    , probability(settings.probability)
    , generator(seeded(settings.seed, connectionNumber))
{}

FaultPlan::Decision FaultPlan::next()
{
    if (kinds.isEmpty() || generator.generateDouble() >= probability) {
        return {};
    }
    const Fault fault = kinds.at(generator.bounded(kinds.size()));
    return {fault, generator.generateDouble()};
}

} // namespace servicesim
