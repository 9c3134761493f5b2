#include "tests/support/StoredSettings.h"
#include "tests/support/Contents.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace support {

StoredSettings StoredSettings::ofClient(const QString &home)
{
    return StoredSettings{home + QStringLiteral("/.config/IXOVPN/IxoClient.conf")};
}

StoredSettings StoredSettings::ofService()
{
    // Where scripts/isolated puts the machine's settings.
    return StoredSettings{qEnvironmentVariable("XDG_CONFIG_DIRS") +
                          QStringLiteral("/IXOVPN/IxoService.conf")};
}

void StoredSettings::fill(const QByteArray &lines) const
{
    QDir::root().mkpath(QFileInfo{path}.path());
    const QByteArray whole = "[General]\n" + lines;
    QFile file{path};
    if (!file.open(QIODevice::WriteOnly) || file.write(whole) != whole.size()) {
        qFatal("%s cannot be written", qPrintable(path));
    }
}

void StoredSettings::forget() const
{
    QFile::remove(path);
}

QByteArray StoredSettings::text() const
{
    return contents(path);
}

QString StoredSettings::value(const char *key) const
{
    return QSettings{path, QSettings::IniFormat}.value(QLatin1String{key}).toString();
}

} // namespace support
