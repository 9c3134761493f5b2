#pragma once

namespace app {

/// As long as this object lives, a fatal message of the toolkit, for example that there is no
/// display, ends the program with exit code 1. Left alone, the toolkit would crash on purpose.
/// What the message says and where it goes stays the same. For the making of the application object
/// only: whatever breaks later is to leave a core.
class OrderlyFailure
{
public:
    OrderlyFailure();
    ~OrderlyFailure();
    OrderlyFailure(const OrderlyFailure &) = delete;
    OrderlyFailure &operator=(const OrderlyFailure &) = delete;
};

} // namespace app
