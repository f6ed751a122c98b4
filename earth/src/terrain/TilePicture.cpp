#include "terrain/TilePicture.h"

#include "sources/RasterSource.h"
#include "terrain/ReliefShade.h"
#include "terrain/TileContent.h"

#include <osg/Texture2D>
#include <osgEarth/ImageLayer>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

namespace osgEarth {
namespace {
using Pixel = std::array<std::uint8_t, 4>;

/// Where no layer has anything: a muted sea blue, so that a globe without pictures still shows relief.
constexpr std::array<float, 3> kGround{52.0f, 74.0f, 98.0f};

/// Half a texel wider than the tile on each side, which puts the outermost
/// texels' centres on its border.
GeoExtent pictureExtent(const TileKey& key, const TileBounds& bounds)
{
    const double x = 0.5 * bounds.width() / (kTilePictureSize - 1);
    const double y = 0.5 * bounds.height() / (kTilePictureSize - 1);
    return {key.getExtent().getSRS(), bounds.west - x, std::max(-90.0, bounds.south - y), bounds.east + x,
            std::min(90.0, bounds.north + y)};
}

struct LayerPicture
{
    osg::ref_ptr<osg::Image> picture;
    float opacity = 1.0f;
};

bool isUsable(const osg::Image& picture)
{
    return picture.s() == kTilePictureSize && picture.t() == kTilePictureSize &&
           picture.getPixelFormat() == GL_RGBA && picture.getDataType() == GL_UNSIGNED_BYTE;
}

bool isOpaque(const LayerPicture& layer)
{
    if (layer.opacity < 1.0f)
        return false;
    const unsigned char* end = layer.picture->data() + layer.picture->getTotalSizeInBytes();
    for (const unsigned char* pixel = layer.picture->data(); pixel != end; pixel += 4)
        if (pixel[3] != 255)
            return false;
    return true;
}

void blendRow(const std::uint8_t* in, float opacity, std::vector<float>& rgb)
{
    float* out = rgb.data();
    for (int column = 0; column < kTilePictureSize; ++column, in += 4, out += 3) {
        const float alpha = opacity * static_cast<float>(in[3]) / 255.0f;
        for (int band = 0; band < 3; ++band)
            out[band] += (static_cast<float>(in[band]) - out[band]) * alpha;
    }
}

// A row at a time, so that everything but the layers' pictures stays in the processor's cache.
void blendAndShade(const std::vector<LayerPicture>& layers, const ReliefShade& shade, std::uint8_t* out)
{
    std::vector<float> rgb(std::size_t{3} * kTilePictureSize);
    std::vector<float> factors(kTilePictureSize, 1.0f);
    for (int row = 0; row < kTilePictureSize; ++row) {
        for (std::size_t i = 0; i < rgb.size(); ++i)
            rgb[i] = kGround[i % 3];
        for (const LayerPicture& layer : layers)
            blendRow(layer.picture->data(0, static_cast<unsigned>(row)), layer.opacity, rgb);
        if (!shade.isLevel())
            shade.factorsAlong(static_cast<float>(row) / (kTilePictureSize - 1), factors);
        const float* in = rgb.data();
        for (const float factor : factors) {
            for (int band = 0; band < 3; ++band)
                out[band] = static_cast<std::uint8_t>(std::min(255.0f, in[band] * factor + 0.5f));
            out[3] = 255;
            in += 3;
            out += 4;
        }
    }
}

void halve(const std::uint8_t* in, int size, std::uint8_t* out)
{
    const int half = size / 2;
    for (int row = 0; row < half; ++row)
        for (int column = 0; column < half; ++column) {
            const std::uint8_t* p = in + std::ptrdiff_t{4} * (2 * row * size + 2 * column);
            for (int band = 0; band < 4; ++band)
                *out++ = static_cast<std::uint8_t>(
                    (p[band] + p[4 + band] + p[4 * size + band] + p[4 * size + 4 + band] + 2) / 4);
        }
}
/// Lets its picture go once the graphics context has it. OSG's own switch for
/// this waits for every context that the process might ever open.
class PictureTexture : public osg::Texture2D
{
public:
    explicit PictureTexture(osg::Image* picture) : osg::Texture2D(picture) {}

    void apply(osg::State& state) const override
    {
        osg::Texture2D::apply(state);
        if (_image.valid() && getTextureObject(state.getContextID()))
            const_cast<PictureTexture*>(this)->_image = nullptr;
    }
};
} // namespace

osg::ref_ptr<osg::Image> composeTilePicture(const TileKey& key, const TileBounds& bounds,
                                            const TileSources& sources, const ReliefShade& shade)
{
    constexpr std::size_t texels = static_cast<std::size_t>(kTilePictureSize) * kTilePictureSize;
    const GeoExtent extent = pictureExtent(key, bounds);
    // From the top, as nobody sees what an opaque picture covers.
    std::vector<LayerPicture> layers;
    for (auto layer = sources.images.rbegin(); layer != sources.images.rend(); ++layer) {
        const std::shared_ptr<RasterSource> source = (*layer)->getSource();
        osg::ref_ptr<osg::Image> picture;
        if (!source || !(*layer)->mayHaveData(key) ||
            source->readImage(extent, kTilePictureSize, picture, nullptr) != RasterSource::Answer::Data ||
            !isUsable(*picture))
            continue;
        layers.push_back({picture, (*layer)->getOpacity()});
        if (isOpaque(layers.back()))
            break;
    }
    std::reverse(layers.begin(), layers.end());

    osg::Image::MipmapDataType offsets;
    std::size_t bytes = 4 * texels;
    for (std::size_t size = kTilePictureSize / 2; size >= 1; size /= 2) {
        offsets.push_back(static_cast<unsigned>(bytes));
        bytes += 4 * size * size;
    }
    auto data = std::make_unique<unsigned char[]>(bytes);
    blendAndShade(layers, shade, data.get());
    std::size_t from = 0;
    int size = kTilePictureSize;
    for (const unsigned offset : offsets) {
        halve(data.get() + from, size, data.get() + offset);
        from = offset;
        size /= 2;
    }

    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->setImage(kTilePictureSize, kTilePictureSize, 1, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE,
                    data.release(), osg::Image::USE_NEW_DELETE);
    image->setMipmapLevels(offsets);
    return image;
}

osg::ref_ptr<osg::StateSet> makeTileStateSet(osg::Image* picture)
{
    osg::ref_ptr<osg::Texture2D> texture = new PictureTexture(picture);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    state->setTextureAttribute(0, texture);
    return state;
}
} // namespace osgEarth
