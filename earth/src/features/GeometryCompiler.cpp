#include "features/ShapeDrawables.h"
#include "layers/TerrainHeights.h"
#include <cmath>
#include <osg/Group>
#include <osg/MatrixTransform>
#include <osgEarth/DrapeableNode>
#include <osgEarth/Map>
#include <osgEarthFeatures/FilterContext>
#include <osgEarthFeatures/GeometryCompiler>

namespace osgEarth::Features {
namespace {
/// Cuts the segments of a part so that none is longer than `longest` degrees.
Vec3dVector densified(const Geometry& part, bool closed, double longest)
{
    Vec3dVector points;
    for (size_t i = 0; i < part.size(); ++i) {
        points.push_back(part[i]);
        if (i + 1 == part.size() && !closed)
            break;
        osg::Vec3d next = part[(i + 1) % part.size()];
        // An edge over the date line goes the short way, not round the globe.
        if (std::abs(next.x() - part[i].x()) > 180.0)
            next.x() += next.x() < part[i].x() ? 360.0 : -360.0;
        const int pieces =
            static_cast<int>(std::ceil(std::hypot(next.x() - part[i].x(), next.y() - part[i].y()) / longest));
        for (int k = 1; k < pieces && pieces < 100000; ++k)
            points.push_back(part[i] + (next - part[i]) * (static_cast<double>(k) / pieces));
    }
    return points;
}

/// The feature's shape in world coordinates.
osg::ref_ptr<Geometry> toWorld(const Feature& feature, const Style& style, double granularity, const Map* map)
{
    osg::ref_ptr<Feature> copy = new Feature(feature);
    copy->transform(SpatialReference::get("wgs84"));
    osg::ref_ptr<Geometry> shape = copy->getGeometry();
    if (!shape || !copy->getSRS())
        return {};

    const AltitudeSymbol* altitude = style.get<AltitudeSymbol>();
    const auto clamping = altitude ? altitude->clamping().value() : AltitudeSymbol::CLAMP_NONE;
    NumericExpression offset = altitude ? altitude->verticalOffset().value() : NumericExpression(0.0);
    NumericExpression scale = altitude && altitude->verticalScale().isSet()
                                  ? altitude->verticalScale().value()
                                  : NumericExpression(1.0);
    const double up = copy->eval(offset), factor = copy->eval(scale);
    const bool clamp =
        clamping == AltitudeSymbol::CLAMP_TO_TERRAIN || clamping == AltitudeSymbol::CLAMP_RELATIVE_TO_TERRAIN;
    const Bounds box = shape->getBounds();
    TerrainHeights heights;
    if (clamp && map && altitude->technique().value() != AltitudeSymbol::TECHNIQUE_DRAPE)
        heights = TerrainHeights(*map, box, altitude->clampingResolution().value());

    for (GeometryIterator it(shape.get()); it.hasMore();) {
        Geometry* part = it.next();
        if (part->getType() != Geometry::TYPE_POINTSET)
            part->asVector() = densified(*part, dynamic_cast<Ring*>(part) != nullptr, granularity);
        for (osg::Vec3d& p : *part) {
            const double own = clamping == AltitudeSymbol::CLAMP_TO_TERRAIN ? 0.0 : p.z();
            osg::Vec3d world;
            p.z() = own * factor + up + heights.at(p.x(), p.y());
            if (copy->getSRS()->transformToWorld(p, world))
                p = world;
        }
    }
    return shape;
}
} // namespace

FilterContext::FilterContext(Session* session, const FeatureProfile* profile, const GeoExtent& workingExtent,
                             FeatureIndexBuilder* index)
    : _session(session), _profile(profile), _index(index)
{
    if (workingExtent.isValid())
        _extent = workingExtent;
}

osg::Node* GeometryCompiler::compile(FeatureList& features, const Style& style, const FilterContext& context)
{
    const Map* map = context.getSession() ? context.getSession()->getMap() : nullptr;
    osg::ref_ptr<osg::Group> group = new osg::Group();
    const double granularity = std::max(1e-6, _options.maxGranularity().value());
    for (const auto& feature : features) {
        const Style& own = feature->style().isSet() ? feature->style().value() : style;
        osg::ref_ptr<Geometry> world = toWorld(*feature, own, granularity, map);
        if (!world)
            continue;
        osg::BoundingBoxd box;
        for (ConstGeometryIterator it(world.get()); it.hasMore();)
            for (const osg::Vec3d& p : *it.next())
                box.expandBy(p);
        if (!box.valid())
            continue;
        world->delocalize(-box.center());
        osg::ref_ptr<osg::Node> drawn = makeShape(*world, own);
        if (!drawn)
            continue;
        osg::ref_ptr<osg::MatrixTransform> place =
            new osg::MatrixTransform(osg::Matrixd::translate(box.center()));
        place->addChild(drawn);
        place->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        const AltitudeSymbol* altitude = own.get<AltitudeSymbol>();
        if (altitude && altitude->technique().isSetTo(AltitudeSymbol::TECHNIQUE_DRAPE)) {
            osg::ref_ptr<DrapeableNode> drape = new DrapeableNode();
            drape->addChild(place);
            group->addChild(drape);
        } else
            group->addChild(place);
    }
    return group.release();
}

osg::Node* GeometryCompiler::compile(FeatureCursor* input, const Style& style, const FilterContext& context)
{
    FeatureList features;
    if (input)
        input->fill(features);
    return compile(features, style, context);
}

osg::Node* GeometryCompiler::compile(Feature* input, const Style& style, const FilterContext& context)
{
    FeatureList features;
    if (input)
        features.push_back(input);
    return compile(features, style, context);
}

osg::Node* GeometryCompiler::compile(Feature* input, const FilterContext& context)
{
    return compile(input, Style(), context);
}

osg::Node* GeometryCompiler::compile(Geometry* geom, const Style& style, const FilterContext& context)
{
    const SpatialReference* srs =
        context.profile() ? context.profile()->getSRS() : SpatialReference::get("wgs84");
    const osg::ref_ptr<Feature> feature = geom ? new Feature(geom, srs) : nullptr;
    return compile(feature.get(), style, context);
}

osg::Node* GeometryCompiler::compile(Geometry* geom, const Style& style)
{
    return compile(geom, style, FilterContext());
}

osg::Node* GeometryCompiler::compile(Geometry* geom, const FilterContext& context)
{
    return compile(geom, Style(), context);
}
} // namespace osgEarth::Features
