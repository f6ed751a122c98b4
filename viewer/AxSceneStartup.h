#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Group>
#include <osg/ref_ptr>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/Viewpoint>
#include <osgEarthUtil/GeodeticGraticule>
#include <osgEarthUtil/Sky>
#include <osgViewer/Viewer>

#include <QString>

/**
 * The pieces that start-up adds to an empty scene, one function each, in the
 * order in which CAxEarthViewer::InitEarthViewer uses them. GUI thread.
 */
namespace AxSceneStartup {
/// The map of a file, or null with a logged line, and why there is none, for a person.
osg::ref_ptr<osgEarth::MapNode> ReadMap(const QString& path, QString& reason);

/// Null, with a logged line, where the map engine has none.
osg::ref_ptr<osgEarth::Util::SkyNode> CreateSky(osgEarth::MapNode* mapNode);

/// The whole globe, seen from above Beijing.
osgEarth::Viewpoint HomeViewpoint(const osgEarth::Map& map);

/// How many tiles stay in memory, and near and far planes chosen for each frame.
void PrepareView(osgViewer::Viewer& viewer, osgEarth::MapNode* mapNode);

osg::ref_ptr<osgEarth::Util::GeodeticGraticule> CreateGraticule(osgEarth::MapNode* mapNode);

/// Lights the view from the sky and hangs the map under the sky and the sky under root; without a sky the map
/// hangs under root itself.
AXEARTHVIEWER_EXPORT void AttachSky(osgEarth::Util::SkyNode* sky, osgEarth::MapNode* mapNode,
                                    osgViewer::Viewer& viewer, osg::Group* root);

/// An invisible disc draped over the whole globe.
osg::ref_ptr<osg::Node> CreateDrapedDisc(osgEarth::MapNode* mapNode);

/// Adds the boundaries of a vector file to the map as lines of the layer "world", in the place of the one
/// that was there. Not part of start-up: for hosts that want it.
void AddBoundaries(osgEarth::Map* map, const QString& file);
/// Where national boundaries lie on the machines that carry them.
QString BoundariesFile();
} // namespace AxSceneStartup
