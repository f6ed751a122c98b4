#include "analysis/sight/AxSightDrawing.h"
#include "analysis/sight/AxSightText.h"
#include "scene/AxScene.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxStateOverGround.h"
#include "scene/shape/AxWorldGeometry.h"

#include <osg/Geode>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthDrivers/gdal/GDALOptions>
#include <osgEarthSymbology/TextSymbol>

#include <algorithm>
#include <cmath>

namespace {
// Over routes and their areas, below what is laid out on the screen.
constexpr int rimBin = 15;
constexpr int lineBin = 16;
constexpr float rimWidth = 6.0f; // pixels
constexpr float lineWidth = 3.0f;
constexpr float mastWidth = 2.0f;
const osg::Vec4f rimColor(0.05f, 0.05f, 0.05f, 0.8f);
const osg::Vec4f visibleColor(0.3f, 1.0f, 0.35f, 1.0f);
const osg::Vec4f hiddenColor(1.0f, 0.25f, 0.25f, 1.0f);
const osg::Vec4f unknownColor(0.8f, 0.8f, 0.8f, 1.0f);
const osg::Vec4f mastColor(1.0f, 1.0f, 1.0f, 1.0f);

constexpr float viewshedOpacity = 0.5f;
// Of a picture: between pixels the map blends, so cells are made of several as long as that is not too much.
constexpr int mostPixels = 3000;
constexpr int mostTimes = 4;

osg::ref_ptr<osg::Geode> GeodeIn(int bin)
{
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    osg::ref_ptr<osg::StateSet> state = AxStateOverGround();
    state->setRenderBinDetails(bin, "RenderBin");
    geode->setStateSet(state);
    return geode;
}

void AddLine(osg::Geode& geode, const std::vector<osg::Vec3d>& points, const osg::Vec4f& color, float width)
{
    osg::ref_ptr<AxWorldGeometry> line = new AxWorldGeometry;
    line->SetPoints(points);
    line->SetLineWidth(width);
    osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
    colors->push_back(color);
    line->setColorArray(colors, osg::Array::BIND_OVERALL);
    osg::ref_ptr<osg::DrawElementsUInt> strip = new osg::DrawElementsUInt(GL_LINE_STRIP);
    for (unsigned i = 0; i < points.size(); ++i)
        strip->push_back(i);
    line->addPrimitiveSet(strip);
    geode.addDrawable(line);
}

osg::Vec3d WorldAbove(const QPointF& place, double ground, double above)
{
    return AxGlobe::WorldOf({place.x(), place.y(), (std::isfinite(ground) ? ground : 0.0) + above});
}

osgEarth::Annotation::LabelNode* MakeLabel(const AxScene& scene, const osgEarth::GeoPoint& place,
                                           const std::string& text)
{
    using osgEarth::Symbology::Color;
    using osgEarth::Symbology::TextSymbol;
    constexpr float pixels = 16.0f;
    osgEarth::Symbology::Style style;
    auto* symbol = style.getOrCreate<TextSymbol>();
    symbol->alignment() = TextSymbol::ALIGN_LEFT_BOTTOM;
    symbol->pixelOffset() = osg::Vec2s(14, 10);
    symbol->fill()->color() = Color::White;
    symbol->halo()->color() = Color::Black;
    symbol->font() = "msyh.ttc";
    symbol->encoding() = TextSymbol::ENCODING_UTF8;
    symbol->size() = pixels;
    symbol->declutter() = false;
    auto* label = new osgEarth::Annotation::LabelNode(scene.MapNode(), place, text, style);
    label->setDynamic(true);
    return label;
}

class ViewshedLayer : public osgEarth::ImageLayer
{
public:
    ViewshedLayer(const osgEarth::ImageLayerOptions& options, std::shared_ptr<const AxGeoPicture> drawn)
        : osgEarth::ImageLayer(options), picture(std::move(drawn))
    {
    }

private:
    // Threads that make tiles keep the layer, and so what they read.
    const std::shared_ptr<const AxGeoPicture> picture;
};
} // namespace

void AxDrawSightLine(osg::Group& node, const AxScene& scene, const AxSightLine& line)
{
    const osg::Vec3d from = WorldAbove(line.from.place, line.fromGround, line.from.aboveGround);
    const osg::Vec3d to = WorldAbove(line.to.place, line.toGround, line.to.aboveGround);
    const osg::ref_ptr<osg::Geode> rims = GeodeIn(rimBin);
    const osg::ref_ptr<osg::Geode> lines = GeodeIn(lineBin);
    AddLine(*rims, {from, to}, rimColor, rimWidth);
    if (line.seen == AxSeen::Hidden) {
        const osg::Vec3d block = from + (to - from) * (line.blockedAt->distance / line.distance);
        AddLine(*lines, {from, block}, visibleColor, lineWidth);
        AddLine(*lines, {block, to}, hiddenColor, lineWidth);
    } else
        AddLine(*lines, {from, to}, line.seen == AxSeen::Visible ? visibleColor : unknownColor, lineWidth);
    const auto addMast = [&](const AxSightEnd& end, double ground) {
        const std::vector<osg::Vec3d> mast = {WorldAbove(end.place, ground, 0.0),
                                              WorldAbove(end.place, ground, end.aboveGround)};
        AddLine(*rims, mast, rimColor, rimWidth);
        AddLine(*lines, mast, mastColor, mastWidth);
    };
    addMast(line.from, line.fromGround);
    addMast(line.to, line.toGround);

    osgEarth::GeoPoint labelAt;
    labelAt.fromWorld(scene.MapSRS()->getGeographicSRS(), to);
    const std::string text = AxSightLabel(line).toStdString();
    osg::ref_ptr<osgEarth::Annotation::LabelNode> label =
        node.getNumChildren() > 0 ? dynamic_cast<osgEarth::Annotation::LabelNode*>(node.getChild(0))
                                  : nullptr;
    // One that is there already stays: a new one would fade in.
    if (label) {
        label->setPosition(labelAt);
        label->setText(text);
    } else
        label = MakeLabel(scene, labelAt, text);
    node.removeChildren(0, node.getNumChildren());
    node.addChild(label);
    node.addChild(rims);
    node.addChild(lines);
}

std::shared_ptr<const AxGeoPicture> AxViewshedPicture(const AxViewshed& viewshed)
{
    const int times = std::clamp(mostPixels / std::max(1, viewshed.Side()), 1, mostTimes);
    return std::make_shared<const AxGeoPicture>(AxSightRaster(viewshed), times);
}

osg::ref_ptr<osgEarth::ImageLayer> AxViewshedLayer(const std::shared_ptr<const AxGeoPicture>& picture,
                                                   const QString& name)
{
    if (!picture || picture->Name().isEmpty())
        return nullptr;
    osgEarth::Drivers::GDALOptions driver;
    driver.connection() = picture->Name().toStdString();
    osgEarth::ImageLayerOptions options(name.toStdString(), driver);
    options.opacity() = viewshedOpacity;
    return new ViewshedLayer(options, picture);
}
