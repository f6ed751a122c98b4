// The numbers of a route's points.
#include "mission/routes/AxTaskPolygonState.h"
#include "mission/routes/CAxTaskPolygon.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <osg/Geometry>
#include <osg/Group>
#include <osg/Math>
#include <osgEarth/MapNode>
#include <osgEarth/Registry>
#include <osgEarth/ScreenSpaceLayout>
#include <osgEarth/SpatialReference>
#include <osgEarthAnnotation/GeoPositionNode>
#include <osgEarthSymbology/BBoxSymbol>
#include <osgEarthSymbology/Color>
#include <osgEarthSymbology/TextSymbol>

#include <cfloat>
#include <cmath>
#include <string>

using osgEarth::Annotation::GeoPositionNode;
using osgEarth::Annotation::LabelNode;
using osgEarth::Symbology::BBoxSymbol;
using osgEarth::Symbology::Color;
using osgEarth::Symbology::Style;
using osgEarth::Symbology::TextSymbol;

namespace {
constexpr float numberPixels = 12.0f;
constexpr short numberOffset = 8; // pixels, clear of the dot
constexpr float plateAlpha = 0.55f;
constexpr float plateMargin = 1.0f; // pixels
constexpr float dotRadius = 3.0f;
constexpr float dotRim = 1.0f;
constexpr int dotCorners = 16;

/// Is never in the way of a number, nor of the mouse.
class DotGeometry : public osg::Geometry
{
public:
    osg::BoundingBox computeBoundingBox() const override { return {0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f}; }
};
} // namespace

void CAxTaskPolygon::UpdatePointTxt(const osgEarth::Symbology::Geometry& points)
{
    if (!parts || !parts->Scene().MapNode())
        return;
    CreateTxts(&points == airLine.get() ? d->places : worldOf(points));
    lookAgain();
    applyVisible();
    addToScene(d->numbers.Node());
}

void CAxTaskPolygon::UpdatePointColor(int first, int last, const osg::Vec4f& text, const osg::Vec4f& rim)
{
    d->numbers.SetColors(first, last, {text, rim});
    lookAgain();
}

void CAxTaskPolygon::GetPointColor(int index, osg::Vec4f& text, osg::Vec4f& rim) const
{
    if (index < 0 || index >= d->numbers.Count())
        return;
    const AxRouteNumbers::Colors colors = d->numbers.ColorsOf(index);
    text = colors.text;
    rim = colors.rim;
}

void CAxTaskPolygon::CreateTxts(const std::vector<osg::Vec3d>& points)
{
    d->numbers.SetPlaces(points);
}

osg::ref_ptr<osg::Node> CAxTaskPolygon::AddPointTxt(int index) const
{
    const AxScene& scene = parts->Scene();
    const AxRouteNumbers::Colors colors = d->numbers.ColorsOf(index);
    osgEarth::GeoPoint place;
    if (!place.fromWorld(scene.MapSRS()->getGeographicSRS(), d->numbers.PlaceOf(index)))
        return nullptr;
    // Those of the usual colours share one dot.
    osg::ref_ptr<osg::Geode> dot = colors.IsUsual() ? d->usualDot : nullptr;
    if (!dot) {
        const osg::ref_ptr<osg::Geometry> round = new DotGeometry;
        round->setUseDisplayList(false);
        round->setUseVertexBufferObjects(true);
        round->setVertexArray(new osg::Vec3Array);
        round->setColorArray(new osg::Vec4Array, osg::Array::BIND_PER_VERTEX);
        RenderCircleFan(*round, dotRadius + dotRim, colors.rim);
        RenderCircleFan(*round, dotRadius, colors.text);
        round->setCullingActive(false);
        round->setDataVariance(osg::Object::STATIC); // nothing of it changes once it is made
        osgEarth::ScreenSpaceLayoutData::getOrCreate(round)->setPriority(FLT_MAX);
        dot = new osg::Geode;
        dot->addDrawable(round);
        dot->setCullingActive(false);
        osgEarth::ScreenSpaceLayout::activate(dot->getOrCreateStateSet());
        osgEarth::Registry::shaderGenerator().run(dot);
        if (colors.IsUsual())
            d->usualDot = dot;
    }
    const osg::ref_ptr<GeoPositionNode> hung = new GeoPositionNode(scene.MapNode(), place);
    hung->getPositionAttitudeTransform()->addChild(dot);
    osg::ref_ptr<osg::Group> number = new osg::Group;
    number->addChild(CreateNameTxt(std::to_string(index + 1), place, colors.text, colors.rim));
    number->addChild(hung);
    return number;
}

osg::ref_ptr<LabelNode> CAxTaskPolygon::CreateNameTxt(const std::string& text,
                                                      const osgEarth::GeoPoint& place, const osg::Vec4f& fill,
                                                      const osg::Vec4f& rim) const
{
    Style style;
    auto* symbol = style.getOrCreate<TextSymbol>();
    symbol->font() = "msyh.ttc";
    symbol->size() = numberPixels;
    symbol->alignment() = TextSymbol::ALIGN_LEFT_BOTTOM;
    symbol->pixelOffset() = osg::Vec2s(numberOffset, numberOffset);
    symbol->fill()->color() = Color(fill);
    symbol->halo()->color() = Color(rim);
    CreateBgGeom(style, {rim.r(), rim.g(), rim.b(), plateAlpha * rim.a()});
    return new LabelNode(parts->Scene().MapNode(), place, text, style);
}

void CAxTaskPolygon::CreateBgGeom(Style& style, const osg::Vec4f& color)
{
    auto* plate = style.getOrCreate<BBoxSymbol>();
    plate->fill()->color() = Color(color);
    plate->margin() = plateMargin;
}

void CAxTaskPolygon::RenderCircleFan(osg::Geometry& geometry, float radius, const osg::Vec4f& color)
{
    auto& points = static_cast<osg::Vec3Array&>(*geometry.getVertexArray());
    auto& colors = static_cast<osg::Vec4Array&>(*geometry.getColorArray());
    const int first = static_cast<int>(points.size());
    points.push_back(osg::Vec3f());
    for (int i = 0; i <= dotCorners; ++i) {
        const float angle = 2.0f * osg::PIf * static_cast<float>(i % dotCorners) / dotCorners;
        points.push_back({radius * std::cos(angle), radius * std::sin(angle), 0.0f});
    }
    colors.insert(colors.end(), points.size() - colors.size(), color);
    geometry.addPrimitiveSet(
        new osg::DrawArrays(GL_TRIANGLE_FAN, first, static_cast<int>(points.size()) - first));
}
