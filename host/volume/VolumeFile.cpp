#include "host/volume/VolumeFile.h"
#include "analysis/AxVolumeText.h"

#include <QSaveFile>

QString WriteVolumeFile(const QString& file, const AxVolume& volume, bool isTable)
{
    if (!isTable)
        return AxWriteGeoField(file, AxVolumeField(volume));
    QSaveFile table(file);
    if (table.open(QIODevice::WriteOnly) && AxWriteVolumeTable(table, volume) && table.commit())
        return {};
    return QStringLiteral("%1: %2").arg(file, table.errorString());
}
