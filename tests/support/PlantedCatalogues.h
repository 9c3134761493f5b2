#pragma once

#include <QString>
#include <QTemporaryDir>

namespace support {

/// Russian catalogues on the disk, in every place to which a malformed language tag might lead. The
/// first of these places becomes the working directory for as long as this lives.
class PlantedCatalogues
{
public:
    PlantedCatalogues();
    ~PlantedCatalogues();

    /// Tags that would find one of them if a tag could lead out of the compiled-in catalogues.
    QStringList tags() const;

private:
    QTemporaryDir place;
    QString formerDirectory;
};

} // namespace support
