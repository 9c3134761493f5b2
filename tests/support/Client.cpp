#include "tests/support/Client.h"

namespace support {

QString clientProgram()
{
    return QStringLiteral(IXOVPN_CLIENT);
}

QString clientTitle()
{
    return QStringLiteral("IXOVPN");
}

} // namespace support
