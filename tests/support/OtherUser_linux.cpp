#include "tests/support/OtherUser.h"

#include <QFile>

#include <unistd.h>

namespace support {

bool otheruser::isPossible()
{
    QFile users{QStringLiteral("/proc/self/uid_map")};
    if (!users.open(QIODevice::ReadOnly)) {
        qFatal("No map of users");
    }
    // First number inside, first number outside, how many.
    bool exists = false;
    for (const QByteArray &line : users.readAll().split('\n')) {
        const QList<QByteArray> range = line.simplified().split(' ');
        const qint64 first = range.value(0).toLongLong();
        exists = exists || (first <= id && id < first + range.value(2).toLongLong());
    }
    return geteuid() == 0 && exists;
}

} // namespace support
