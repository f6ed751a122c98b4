#include "viewer/AxSceneStartup.h"
#include "scene/base/AxViewerLog.h"

#include <osgDB/DatabasePager>
#include <osgDB/Registry>
#include <osgEarth/GeoData>
#include <osgEarth/ModelLayer>
#include <osgEarth/SpatialReference>
#include <osgEarthAnnotation/CircleNode>
#include <osgEarthDrivers/feature_ogr/OGRFeatureOptions>
#include <osgEarthDrivers/model_feature_geom/FeatureGeomModelOptions>
#include <osgEarthSymbology/AltitudeSymbol>
#include <osgEarthSymbology/LineSymbol>
#include <osgEarthSymbology/PolygonSymbol>
#include <osgEarthSymbology/Style>
#include <osgEarthSymbology/StyleSheet>
#include <osgEarthUtil/AutoClipPlaneHandler>
#include <osgEarthUtil/Ephemeris>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

using namespace osgEarth;
using namespace osgEarth::Symbology;

namespace {
constexpr double homeLongitude = 116.3;
constexpr double homeLatitude = 39.9;
constexpr double homeRangeInRadii = 4.0;
// Each tile costs video memory; this many cover a window with some to spare.
constexpr unsigned pagedTilesTarget = 100;
// Any of them may wait for a tile service while the others go on with local files.
constexpr unsigned pagerThreads = 3;
constexpr double discLongitude = 116.5;
constexpr double discLatitude = 40.0;
constexpr double discAltitude = 1000.0;
constexpr const char* boundariesFile = "D:\\AxOsgEarth\\AxEarthApp\\Data\\shp\\chinashp.shp";
} // namespace

osg::ref_ptr<MapNode> AxSceneStartup::ReadMap(const QString& path, QString& reason)
{
    osgDB::Registry* const files = osgDB::Registry::instance();
    osgDB::ReaderWriter::ReadResult read =
        files->readNode(path.toLocal8Bit().toStdString(), files->getOptions());
    MapNode* const mapNode = read.validNode() ? MapNode::findMapNode(read.getNode()) : nullptr;
    if (mapNode)
        return mapNode;
    const QString told = QString::fromLocal8Bit(read.message().c_str());
    if (!QFileInfo(path).isFile())
        reason = QCoreApplication::translate("CAxEarthViewer", "There is no such file.");
    else if (!QFileInfo(path).isReadable())
        reason = QCoreApplication::translate("CAxEarthViewer", "The file may not be read.");
    else if (!told.isEmpty())
        reason = QString(told).remove(QRegularExpression(QStringLiteral("^\\[\\w+\\]\\*? *")));
    else
        reason = QCoreApplication::translate("CAxEarthViewer", "The file holds no map.");
    if (!told.isEmpty())
        qCWarning(axViewerLog).noquote() << told;
    qCWarning(axViewerLog).noquote() << "cannot read the map file" << path;
    return nullptr;
}

osg::ref_ptr<Util::SkyNode> AxSceneStartup::CreateSky(MapNode* mapNode)
{
    osg::ref_ptr<Util::SkyNode> sky = Util::SkyNode::create(mapNode);
    if (sky)
        sky->setName("SkyNode");
    else
        qCWarning(axViewerLog) << "the map engine offers no sky";
    return sky;
}

Viewpoint AxSceneStartup::HomeViewpoint(const Map& map)
{
    return Viewpoint("Beijing", homeLongitude, homeLatitude, 0.0, 0.0, -90.0,
                     homeRangeInRadii * map.getSRS()->getEllipsoid()->getRadiusEquator());
}

void AxSceneStartup::PrepareView(osgViewer::Viewer& viewer, MapNode* mapNode)
{
    viewer.getDatabasePager()->setUpThreads(pagerThreads, 0);
    viewer.getDatabasePager()->setTargetMaximumNumberOfPageLOD(pagedTilesTarget);
    viewer.getCamera()->addCullCallback(new Util::AutoClipPlaneCullCallback(mapNode));
}

osg::ref_ptr<Util::GeodeticGraticule> AxSceneStartup::CreateGraticule(MapNode* mapNode)
{
    osg::ref_ptr<Util::GeodeticGraticule> graticule = new Util::GeodeticGraticule(mapNode);
    graticule->setName("GeodeticGraticule");
    // An osgEarth that keeps its graticules in a table of its own destroys them after all that
    // they need for it. They then stay until the process is gone.
    if (graticule->referenceCount() > 1)
        graticule->ref();
    return graticule;
}

void AxSceneStartup::AttachSky(Util::SkyNode* sky, MapNode* mapNode, osgViewer::Viewer& viewer,
                               osg::Group* root)
{
    if (!sky) {
        root->addChild(mapNode);
        return;
    }
    sky->setEphemeris(new Util::Ephemeris);
    sky->attach(&viewer, 0);
    sky->setSunVisible(false);
    sky->setLighting(osg::StateAttribute::OFF);
    sky->addChild(mapNode);
    root->addChild(sky);
}

osg::ref_ptr<osg::Node> AxSceneStartup::CreateDrapedDisc(MapNode* mapNode)
{
    const SpatialReference* srs = mapNode->getMapSRS();
    Style style;
    style.getOrCreate<PolygonSymbol>()->fill()->color() = Color(Color::Cyan, 0.0f);
    style.getOrCreate<AltitudeSymbol>()->clamping() = AltitudeSymbol::CLAMP_TO_TERRAIN;
    style.getOrCreate<AltitudeSymbol>()->technique() = AltitudeSymbol::TECHNIQUE_DRAPE;
    return new Annotation::CircleNode(mapNode, GeoPoint(srs, discLongitude, discLatitude, discAltitude),
                                      Distance(srs->getEllipsoid()->getRadiusEquator(), Units::METERS), style,
                                      Angle(0.0, Units::DEGREES), Angle(360.0, Units::DEGREES), true);
}

void AxSceneStartup::AddBoundaries(Map* map, const QString& file)
{
    Drivers::OGRFeatureOptions features;
    features.url() = file.toStdString(); // GDAL takes UTF-8, whatever the system's own is
    // Without a style nothing is drawn.
    Style line("boundaries");
    line.getOrCreate<LineSymbol>()->stroke()->color() = Color(1.0f, 0.85f, 0.3f, 0.9f);
    line.getOrCreate<LineSymbol>()->stroke()->width() = 1.5f;
    line.getOrCreate<AltitudeSymbol>()->clamping() = AltitudeSymbol::CLAMP_TO_TERRAIN;
    line.getOrCreate<AltitudeSymbol>()->technique() = AltitudeSymbol::TECHNIQUE_DRAPE;
    const osg::ref_ptr<StyleSheet> styles = new StyleSheet;
    styles->addStyle(line);
    Drivers::FeatureGeomModelOptions model;
    model.featureOptions() = features;
    model.styles() = styles;
    const osg::ref_ptr<ModelLayer> former = map->getModelLayerByName("world");
    if (former)
        map->removeModelLayer(former);
    map->addModelLayer(new ModelLayer("world", model));
}

QString AxSceneStartup::BoundariesFile()
{
    return QString::fromLatin1(boundariesFile);
}
