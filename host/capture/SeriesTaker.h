#pragma once
#include "viewer/AxPictureCapture.h"

#include <AxData/geofiles/AxGeoMapPicture.h>

#include <QStringList>

#include <memory>
#include <vector>

/// Writes each picture into a file of its own: "Flight.png" makes "Flight_0001.png" and so on. A file is
/// there as a whole or not at all.
class SeriesTaker : public AxImageTaker
{
public:
    /// `written` counts the files.
    SeriesTaker(const QString& file, const std::vector<AxShot>& shots, std::shared_ptr<int> written);

    /// How many of the files are there already.
    int CountThere() const;

private:
    SeriesTaker(const QStringList& files, const std::vector<AxShot>& shots,
                const std::shared_ptr<int>& written);

    const QStringList files;
};

/// Writes a picture from straight above as a GeoTIFF.
class MapPictureTaker : public AxPictureTaker
{
public:
    MapPictureTaker(const QString& file, const AxShotGround& ground, const QSize& size);

    QString Take(int picture, const QPoint& at, const QImage& part) override;
    QString Finish(int picture) override;

private:
    AxGeoMapPicture writer;
};
