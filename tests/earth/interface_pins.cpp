// What osgEarth 2.8 declares differently from what one would write today, and a host relies on.
#include <gtest/gtest.h>
#include <osgEarth/GeoTransform>
#include <osgEarth/Map>
#include <osgEarth/MapCallback>
#include <osgEarth/MapNode>
#include <osgEarth/MapNodeObserver>
#include <osgEarth/Registry>
#include <osgEarth/TerrainEngineNode>
#include <osgEarthAnnotation/AnnotationNode>
#include <osgEarthFeatures/FilterContext>
#include <osgEarthFeatures/GeometryCompiler>
#include <osgEarthUtil/EarthManipulator>
#include <osgEarthUtil/GeodeticGraticule>
#include <osgEarthUtil/Sky>

#include <type_traits>

using namespace osgEarth;
using namespace osgEarth::Annotation;
using namespace osgEarth::Features;
using namespace osgEarth::Symbology;
using namespace osgEarth::Util;

namespace {
/// Compiles only where one of a function's forms is exactly this.
template <typename Form> constexpr bool is(Form)
{
    return true;
}
template <typename Base, typename... Classes>
constexpr bool areAll = (std::is_base_of_v<Base, Classes> && ...);

using Count = unsigned int;
static_assert(
    is<bool (GeoHeightField::*)(const SpatialReference*, double, double, ElevationInterpolation,
                                const SpatialReference*, float&) const>(&GeoHeightField::getElevation));
static_assert(is<osg::ref_ptr<Terrain> (GeoTransform::*)() const>(&GeoTransform::getTerrain));
static_assert(is<GeoExtent (Profile::*)(Count, Count, Count)>(&Profile::calculateExtent));
static_assert(is<const Profile* (*)(const std::string&, const std::string&, Count, Count)>(&Profile::create));
static_assert(is<const Profile* (*)(const SpatialReference*, double, double, double, double, double, double,
                                    double, double, Count, Count)>(&Profile::create));
static_assert(is<Revision (Map::*)(ElevationLayerVector&) const>(&Map::getElevationLayers));
static_assert(std::is_class_v<ElevationLayerVector> &&
              areAll<osg::MixinVector<osg::ref_ptr<ElevationLayer>>, ElevationLayerVector>);
static_assert(is<const MapModelChange::ActionType& (MapModelChange::*)() const>(&MapModelChange::getAction));
static_assert(is<int (MapModelChange::*)() const>(&MapModelChange::getSecondIndex));
static_assert(MapModelChange::ADD_IMAGE_LAYER == 2 && MapModelChange::MOVE_MODEL_LAYER == 11 &&
              MapModelChange::UNSPECIFIED == 14);
static_assert(MapOptions::CSTYPE_PROJECTED == 2);
static_assert(is<const Status::Code& (Status::*)() const>(&Status::code));
static_assert(is<Status (*)(const Status::Code&, const std::string&, const std::string&)>(&Status::Error));
static_assert(is<void (Terrain::*)(const TileKey&, osg::Node*)>(&Terrain::fireTileAdded));
static_assert(is<const Map* (TerrainEngineNode::*)() const>(&TerrainEngineNode::getMap));
static_assert(areAll<osg::CoordinateSystemNode, TerrainEngineNode> &&
              !std::is_constructible_v<TerrainEngineNode, Map*>);
static_assert(areAll<Revisioned, ModelSource, FeatureSource, EarthManipulator::Settings> &&
              areAll<osg::Object, ModelSource, FeatureSource>);
static_assert(areAll<MapNodeObserver, AnnotationNode, GeodeticGraticule>);
static_assert(is<const MapNode* (AnnotationNode::*)() const>(&AnnotationNode::getMapNode));
static_assert(is<osg::Node* (GeometryCompiler::*)(FeatureList&, const Style&, const FilterContext&)>(
    &GeometryCompiler::compile));
static_assert(is<osg::Node* (GeometryCompiler::*)(Geometry*, const Style&)>(&GeometryCompiler::compile));
static_assert(areAll<InstanceSymbol, IconSymbol>);
static_assert(!std::is_constructible_v<StyleSelector, std::string, std::string, Query>);
static_assert(is<void (EarthManipulator::*)()>(&EarthManipulator::computeHomePosition));
static_assert(is<osg::Node* (EarthManipulator::*)()>(&EarthManipulator::getNode));
static_assert(is<osg::Light* (SkyNode::*)()>(&SkyNode::getSunLight) && std::is_abstract_v<SkyNode>);
static_assert(is<void (ShaderGeneratorProxy::*)(osg::Node*)>(&ShaderGeneratorProxy::run));
static_assert(is<ShaderGeneratorProxy (*)()>(&Registry::shaderGenerator));

/// A host's sky, which a protected constructor without arguments lets it write.
struct HostSky : public SkyNode
{
    osg::Light* getSunLight() override { return light.get(); }
    osg::ref_ptr<osg::Light> light = new osg::Light;
};
} // namespace

TEST(Interface, ABaseTellsWhatADerivedClassNeeds)
{
    const osg::ref_ptr<MapNode> globe = new MapNode;
    const osg::ref_ptr<osg::Node> ground = globe->getTerrainEngine();
    const auto* frame = dynamic_cast<const osg::CoordinateSystemNode*>(ground.get());
    ASSERT_TRUE(frame && frame->getEllipsoidModel());
    EXPECT_EQ(frame->getEllipsoidModel()->getRadiusEquator(), osg::WGS_84_RADIUS_EQUATOR);

    const osg::ref_ptr<EarthManipulator> manipulator = new EarthManipulator;
    Revision seen;
    manipulator->getSettings()->sync(seen);
    manipulator->getSettings()->setMinMaxDistance(10.0, 1e6);
    EXPECT_TRUE(manipulator->getSettings()->outOfSyncWith(seen));

    const osg::ref_ptr<SkyNode> sky = new HostSky;
    EXPECT_EQ(sky->getLighting(), osg::StateAttribute::ON);
}

TEST(Interface, AHeightFieldInterpolatesAsItIsAsked)
{
    const osg::ref_ptr<osg::HeightField> field = new osg::HeightField;
    field->allocate(2, 2);
    field->setHeight(0, 0, 0.0f); // south-west
    field->setHeight(1, 0, 100.0f);
    field->setHeight(0, 1, 200.0f);
    field->setHeight(1, 1, 700.0f);
    const SpatialReference* wgs84 = SpatialReference::get("wgs84");
    const GeoHeightField heights(field.get(), GeoExtent(wgs84, 10.0, 40.0, 11.0, 41.0));
    const struct
    {
        ElevationInterpolation interpolation;
        float height;
    } rows[] = {{INTERP_BILINEAR, 200.0f},
                {INTERP_AVERAGE, 200.0f},
                {INTERP_NEAREST, 100.0f},
                {INTERP_TRIANGULATE, 225.0f}};
    for (const auto& row : rows) {
        float height = -1.0f;
        ASSERT_TRUE(heights.getElevation(wgs84, 10.75, 40.25, row.interpolation, wgs84, height));
        EXPECT_FLOAT_EQ(height, row.height) << row.interpolation;
    }
}
