#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace support {

/// What a file holds; empty, too, if it cannot be read.
inline QByteArray contents(const QString &path)
{
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

} // namespace support
