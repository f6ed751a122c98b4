#pragma once
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarthAnnotation/PlaceNode>

#include <QMap>
#include <QObject>
#include <QVariant>

#include <map>

class AxScene;

/**
 * Places of known coordinates, as surveyed targets on the ground are: drawn as crosses with their names. Part
 * of the viewer. GUI thread.
 */
class AxControlPoints : public QObject
{
    Q_OBJECT
public:
    explicit AxControlPoints(AxScene& drawn) : scene(drawn) {}
    ~AxControlPoints() override;

    /// As CAxEarthViewer::AddControlPoint(), and so on.
    bool Add(const QString& name, const osg::Vec3d& lngLatAlt);
    bool Remove(const QString& name);
    QMap<QString, osg::Vec3d> All() const;

signals:
    /// Its value: longitude, latitude, altitude; degrees, degrees, metres.
    void added(QString name, QVariant value);

private:
    AxScene& scene;
    std::map<QString, osg::Vec3d> points;
    std::map<QString, osg::ref_ptr<osgEarth::Annotation::PlaceNode>> nodes;
};
