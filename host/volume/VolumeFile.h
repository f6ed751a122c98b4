#pragma once
#include <QString>

#include <atomic>

struct AxVolume;

/// Writes the cells of a volume as a table (CSV) or as a GeoTIFF. What is wrong; empty when it was written.
/// What was there before stays until the new file is whole; once `isOff` it is left alone. Any thread.
QString WriteVolumeFile(const QString& file, const AxVolume& volume, bool isTable,
                        const std::atomic<bool>& isOff);
