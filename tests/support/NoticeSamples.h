#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace support {

/// A notice that tries to have something loaded, or to do other harm.
struct NoticeSample
{
    QByteArray name;
    QString text;
};

QList<NoticeSample> hostileNotices();

} // namespace support
