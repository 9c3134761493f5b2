#pragma once

#include <QByteArray>

namespace app {

/// As long as this object lives, a variable of the environment that nobody has set has a value.
/// A value that the user has given it stands. Programs that are started after this object's end
/// do not inherit it.
///
/// To be made and ended while no other thread uses the environment.
class EnvironmentDefault
{
public:
    /// `variable` lives at least as long as this object.
    EnvironmentDefault(const char *variable, const QByteArray &value);
    ~EnvironmentDefault();
    EnvironmentDefault(const EnvironmentDefault &) = delete;
    EnvironmentDefault &operator=(const EnvironmentDefault &) = delete;

private:
    const char *const variable;
    const bool ours;
};

} // namespace app
