#pragma once

#include <QDir>
#include <QStringList>

namespace support {

/// The tags of all languages that the program has a catalogue for.
inline QStringList languageTags()
{
    QStringList tags;
    const QStringList catalogues = QDir{QStringLiteral(":/i18n")}.entryList();
    for (const QString &name : catalogues) {
        tags += name.section(QLatin1Char{'_'}, 1).section(QLatin1Char{'.'}, 0, 0);
    }
    return tags;
}

} // namespace support
