#include "host/volume/VolumeFile.h"
#include "analysis/AxVolumeText.h"

#include <QSaveFile>

QString WriteVolumeFile(const QString& file, const AxVolume& volume, bool isTable,
                        const std::atomic<bool>& isOff)
{
    if (!isTable)
        return AxWriteGeoField(file, AxVolumeField(volume), &isOff);
    QSaveFile table(file);
    if (table.open(QIODevice::WriteOnly) && AxWriteVolumeTable(table, volume, isOff) && table.commit())
        return {};
    return QStringLiteral("%1: %2").arg(file, table.errorString());
}
