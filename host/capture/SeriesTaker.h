#pragma once
#include "viewer/AxPictureCapture.h"

#include <AxData/geofiles/AxGeoMapPicture.h>

#include <QStringList>

#include <future>
#include <memory>
#include <vector>

/// Writes each picture into a file of its own: "Flight.png" makes "Flight_0001.png" and so on. A file is
/// there as a whole or not at all. It is written on a thread of its own while the next picture is taken, so
/// what is wrong with it is told with the next one.
class SeriesTaker : public AxImageTaker
{
public:
    /// `written` counts the files; it is right once the taker is gone.
    SeriesTaker(const QString& file, const std::vector<AxShot>& shots, std::shared_ptr<int> written);
    /// Waits for the file that is being written.
    ~SeriesTaker() override;

    /// How many of the files are there already.
    int CountThere() const;

private:
    class Writer;

    SeriesTaker(const QStringList& files, const std::vector<AxShot>& shots,
                const std::shared_ptr<Writer>& writer);

    const QStringList files;
    const std::shared_ptr<Writer> writer;
};

/// Writes a picture from straight above as a GeoTIFF, each part on a thread of its own while the next one is
/// taken, so what is wrong with it is told with the next one.
class MapPictureTaker : public AxPictureTaker
{
public:
    MapPictureTaker(const QString& file, const AxShotGround& ground, const QSize& size);

    /// Whether the file can be written, before anything is taken: what is wrong, or an empty text.
    QString Begin();
    QString Take(int picture, const QPoint& at, const QImage& part) override;
    QString Finish(int picture) override;

private:
    QString EndPart();

    AxGeoMapPicture writer;
    std::future<QString> now; ///< the part that is written; it goes first, and is waited for
};
