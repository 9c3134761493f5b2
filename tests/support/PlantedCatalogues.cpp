#include "tests/support/PlantedCatalogues.h"

#include "ui/Catalogue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace support {

PlantedCatalogues::PlantedCatalogues()
    : formerDirectory(QDir::currentPath())
{
    const QStringList places{
        QStringLiteral("x.qm"),
        QStringLiteral("ixovpn_x.qm"),
        QStringLiteral("planted/x.qm"),
        QStringLiteral("planted/x"),
        QStringLiteral("planted/.qm"),
        QStringLiteral("planted/ixovpn_x.qm"),
        QStringLiteral("planted/i18n/x.qm"),
        QStringLiteral("planted/i18n/ixovpn_x.qm"),
        QStringLiteral("planted/:/x.qm"),
        QStringLiteral("planted/:/i18n/x.qm"),
        QStringLiteral("planted/:/i18n/ixovpn_x.qm"),
        QStringLiteral("planted/:/i18n/ixovpn_/x.qm"),
        QStringLiteral("planted/:/i18n/ixovpn_../x.qm"),
    };
    for (const QString &path : places) {
        const QString file = place.filePath(path);
        const bool possible = QDir{}.mkpath(QFileInfo{file}.path()) &&
                              QFile::copy(ui::catalogue::path(QStringLiteral("ru")), file);
        // Not every system has colons in names.
        if (!possible && !path.contains(QLatin1Char{':'})) {
            qFatal("Cannot plant %s", qPrintable(file));
        }
    }
    QDir::setCurrent(place.filePath(QStringLiteral("planted")));
}

PlantedCatalogues::~PlantedCatalogues()
{
    QDir::setCurrent(formerDirectory);
}

QStringList PlantedCatalogues::tags() const
{
    const QString absolute = place.filePath(QStringLiteral("x"));
    const QString up = QStringLiteral("../").repeated(20);
    return {
        QStringLiteral("x"),
        QStringLiteral("x.qm"),
        QStringLiteral("../x"),
        QStringLiteral("/../x"),
        QStringLiteral("/x"),
        QStringLiteral("./x"),
        QStringLiteral("../../x"),
        QStringLiteral("../../../planted/x"),
        QStringLiteral("\\..\\..\\x"),
        QStringLiteral(":/x"),
        QStringLiteral("/:/i18n/ixovpn_x"),
        QStringLiteral("qrc:/x"),
        absolute,
        absolute + QStringLiteral(".qm"),
        up + absolute.mid(1),
        QLatin1Char{'/'} + up + absolute.mid(1),
        QUrl::fromLocalFile(absolute).toString(),
        QStringLiteral("x.qm") + QChar{QChar::Null},
        QStringLiteral("%1"),
        QStringLiteral("*"),
    };
}

} // namespace support
