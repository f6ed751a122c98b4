#include "host/volume/VolumeFile.h"
#include "analysis/AxVolumeText.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>

#include <new>

namespace {
class VolumeFileTr
{
    Q_DECLARE_TR_FUNCTIONS(VolumeFile)
};

QString Faulty(const QString& file, const QString& reason)
{
    return VolumeFileTr::tr("\"%1\": %2").arg(QDir::toNativeSeparators(file), reason);
}

QString WriteTable(const QString& file, const AxVolume& volume, const std::atomic<bool>& isOff)
{
    QSaveFile table(file);
    if (table.open(QIODevice::WriteOnly) && AxWriteVolumeTable(table, volume, isOff) && table.commit())
        return {};
    return Faulty(file, isOff ? VolumeFileTr::tr("Called off.") : table.errorString());
}
} // namespace

QString WriteVolumeFile(const QString& file, const AxVolume& volume, bool isTable,
                        const std::atomic<bool>& isOff)
{
    // It is written beside the GUI thread, where nobody else would catch it.
    try {
        return isTable ? WriteTable(file, volume, isOff)
                       : AxWriteGeoField(file, AxVolumeField(volume), &isOff);
    } catch (const std::bad_alloc&) {
        return Faulty(file, VolumeFileTr::tr("The memory does not suffice."));
    }
}
