#pragma once

#include <QByteArray>
#include <QDir>
#include <QString>

namespace support {

/// A settings file as it is on the disk, whatever the process that writes it holds in memory. Only
/// for the sandbox of scripts/isolated.
class StoredSettings
{
public:
    /// The client's own, of the user with this home.
    static StoredSettings ofClient(const QString &home = QDir::homePath());
    /// What the service leaves for every user of the machine.
    static StoredSettings ofService();

    /// Replaces the whole file; the lines need no heading. Ends the test run if that fails.
    void fill(const QByteArray &lines) const;
    void forget() const;

    /// Empty if there is no file.
    QByteArray text() const;
    /// Empty if there is no such key.
    QString value(const char *key) const;

private:
    explicit StoredSettings(const QString &file)
        : path(file)
    {}

    QString path;
};

} // namespace support
