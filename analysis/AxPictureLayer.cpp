#include "analysis/AxPictureLayer.h"

#include <osgEarthDrivers/gdal/GDALOptions>

#include <algorithm>
#include <utility>

namespace {
class PictureLayer : public osgEarth::ImageLayer
{
public:
    PictureLayer(const osgEarth::ImageLayerOptions& options, std::shared_ptr<const AxGeoPicture> drawn)
        : osgEarth::ImageLayer(options), picture(std::move(drawn))
    {
    }

private:
    // Threads that make tiles keep the layer, and so what they read.
    const std::shared_ptr<const AxGeoPicture> picture;
};
} // namespace

osg::ref_ptr<osgEarth::ImageLayer> AxPictureLayer(const std::shared_ptr<const AxGeoPicture>& picture,
                                                  const QString& name, float opacity)
{
    if (!picture || picture->Name().isEmpty())
        return nullptr;
    osgEarth::Drivers::GDALOptions driver;
    driver.connection() = picture->Name().toStdString();
    osgEarth::ImageLayerOptions options(name.toStdString(), driver);
    options.opacity() = opacity;
    return new PictureLayer(options, picture);
}

int AxPixelsOfCell(int columns, int rows)
{
    constexpr int mostPixels = 3000;
    constexpr int mostOfCell = 4;
    return std::clamp(mostPixels / std::max({1, columns, rows}), 1, mostOfCell);
}
