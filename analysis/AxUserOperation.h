#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <OpenThreads/Condition>
#include <OpenThreads/Mutex>
#include <osg/Group>
#include <osg/OperationThread>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarthSymbology/Geometry>

#include <QString>
#include <QVariant>

class AxViewerParts;
class CAxEarthViewer;

namespace osgEarth {
class SpatialReference;
}

/// What an AxUserOperation does to the scene; other values do nothing.
enum User_Operation : int
{
    LoadModel = 1,
    RemoveModel = 2,
    AddNoFlyZone = 3,
    RemoveNoFlyZone = 4,
    DrawGeometry = 6,
    ApplyLighting = 7,
    RemoveLighting = 8,
};

/**
 * A change of the scene, made elsewhere and run once on the update traversal:
 * construct it, fill it, hand it to osgViewer::Viewer::addUpdateOperation() and
 * let go of it. Its fields are not touched once it is queued.
 *
 * Reference counted. Made on any thread; operator() runs on the one that
 * updates the scene; block() is for every other.
 */
class AXEARTHVIEWER_EXPORT AxUserOperation : public osg::Operation
{
public:
    /// Nothing happens before it is handed over and run.
    explicit AxUserOperation(User_Operation kind);

    /// Whose map the places are on; not owned.
    void setEarthViewer(CAxEarthViewer* earthViewer);
    /// The node to make, find or remove.
    void setUserName(const QString& userName) { name = userName; }
    /// Longitude, latitude in degrees, height in metres.
    void setUserPos(const osg::Vec3d& userPos) { position = userPos; }
    /// Copied; longitude, latitude in degrees.
    void setUserPolygon(const osgEarth::Symbology::Polygon& userPolygon);
    void setUserMultiGeometry(const osgEarth::Symbology::MultiGeometry& userGeometry);
    /// A file path, or a list of points by longitude, latitude in degrees: a
    /// QPolygonF or a list of QPointF, QVector3D or lists of two or three numbers.
    void setUserValue(const QVariant& userValue) { value = userValue; }

    /// Makes the node of AddNoFlyZone on the thread that queues the operation, so
    /// that the update traversal has only to hang it into the scene. Call it last
    /// and once, with the viewer set; without the call the operation makes the node itself.
    void Prepare();

    /// Waits until the operation has run. For ever, if it was queued on anything but a viewer.
    void block();
    /// Wakes all who wait in block().
    void release() override;
    /// `object` is the view that runs it; with any other the operation does nothing at all.
    void operator()(osg::Object* object) override;

private:
    ~AxUserOperation() override;

    void Act(osg::Group& scene);
    void LoadModelFile(osg::Group& scene) const;
    void AddZone(osg::Group& scene);
    void DrawShape(osg::Group& scene) const;
    void Light(osg::Group& scene) const;
    const osgEarth::SpatialReference* MapSRS(osg::Group* scene) const;

    User_Operation kind;
    AxViewerParts* viewer = nullptr;
    QString name;
    osg::Vec3d position;
    osg::ref_ptr<osgEarth::Symbology::Polygon> polygon;
    osg::ref_ptr<osgEarth::Symbology::MultiGeometry> multiGeometry;
    QVariant value;
    osg::ref_ptr<osg::Node> prepared;
    OpenThreads::Mutex gate;
    OpenThreads::Condition opened;
    bool released = false;
};
