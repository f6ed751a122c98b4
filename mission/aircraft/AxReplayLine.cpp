#include "mission/aircraft/AxReplayLine.h"
#include "mission/aircraft/AxLineThinning.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/base/AxLongitudes.h"

#include <osgEarth/MapNode>

#include <algorithm>
#include <cmath>

using osgEarth::Annotation::FeatureNode;
using osgEarth::Symbology::LineString;

namespace {
// More cannot be told apart, and take longer to be made into a drawing than a step of the bar may last.
constexpr int mostShown = 4000;

bool IsPlace(const CAxVector3D& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y()) && std::isfinite(point.z()) &&
           std::abs(point.y()) <= 90.0;
}

std::vector<int> ShapeOf(const std::vector<CAxVector3D>& flight)
{
    std::vector<osg::Vec3d> world;
    std::vector<int> indices;
    world.reserve(flight.size());
    indices.reserve(flight.size());
    for (std::size_t i = 0; i < flight.size(); ++i)
        if (IsPlace(flight[i])) {
            world.push_back(AxGlobe::WorldOf({flight[i].x(), flight[i].y(), flight[i].z()}));
            indices.push_back(static_cast<int>(i));
        }
    if (world.empty())
        return {};
    std::vector<int> kept = AxThinLine(world, mostShown);
    for (int& index : kept)
        index = indices[static_cast<std::size_t>(index)];
    return kept;
}
} // namespace

CAxTrailLingCallBack::CAxTrailLingCallBack(std::vector<CAxVector3D> points)
    : flight(std::move(points)), shown(ShapeOf(flight))
{
}

void CAxTrailLingCallBack::fill(osgEarth::Symbology::Geometry& line) const
{
    line.clear();
    const auto end = std::lower_bound(shown.begin(), shown.end(), drawn);
    const auto add = [&](int index) {
        const CAxVector3D& point = flight[static_cast<std::size_t>(index)];
        // Over the antimeridian the shorter way.
        const double longitude =
            line.empty() ? point.x() : AxLongitudes::NearestTo(line.back().x(), point.x());
        line.push_back(osg::Vec3d(longitude, point.y(), point.z()));
    };
    std::for_each(shown.begin(), end, add);
    // The line ends where the aircraft is, whether the shape of the flight needs that point or not.
    if (end != shown.begin() && *std::prev(end) != drawn - 1 &&
        IsPlace(flight[static_cast<std::size_t>(drawn - 1)]))
        add(drawn - 1);
}

void CAxTrailLingCallBack::operator()(osg::Node* node, osg::NodeVisitor* visitor)
{
    current = std::clamp(current, 0, Count());
    auto* line = dynamic_cast<FeatureNode*>(node);
    if (line && current != drawn && line->getFeature() && line->getFeature()->getGeometry()) {
        drawn = current;
        fill(*line->getFeature()->getGeometry());
        line->init();
    }
    traverse(node, visitor);
}

osg::ref_ptr<FeatureNode> AxMakeReplayLine(osgEarth::MapNode* map, const osgEarth::Symbology::Style& style,
                                           CAxTrailLingCallBack* callback)
{
    if (!map)
        return nullptr;
    osg::ref_ptr<osgEarth::Features::Feature> feature =
        new osgEarth::Features::Feature(new LineString, map->getMapSRS()->getGeographicSRS(), style);
    osg::ref_ptr<FeatureNode> line =
        new FeatureNode(map, feature, style, osgEarth::Features::GeometryCompilerOptions());
    line->addUpdateCallback(callback);
    return line;
}
