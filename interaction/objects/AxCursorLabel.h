#pragma once
#include <osg/Group>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthSymbology/Style>

#include <QString>

#include <vector>

class AxScene;
struct AxKeptPlane;

namespace osgEarth {
class SpatialReference;
}

/**
 * A text beside the mouse while an object is drawn, within the map. It hangs below the group of objects only
 * while it is shown. GUI thread.
 */
class AxCursorLabel
{
public:
    /// Beside a place (degrees, degrees, metres), in the style of the object's texts.
    void Show(const AxScene& scene, const osgEarth::Symbology::Style& style, const osg::Vec3d& lngLatPos,
              const QString& text);
    void Hide();
    /// As it was shown last; empty while it is hidden.
    QString Text() const;

private:
    osg::ref_ptr<osgEarth::Annotation::LabelNode> label;
    osg::ref_ptr<osg::Group> parent;
};

/// Along the ground between two places in degrees, metres.
double AxGroundDistance(const osg::Vec3d& a, const osg::Vec3d& b);
/// In the units of AxUnits.
QString AxLengthText(double metres);
QString AxAreaText(double squareKilometres);
/// Area and perimeter of a ring of three vertices or more; of one that crosses itself the perimeter alone.
QString AxRingSizeText(const std::vector<osg::Vec3d>& ring, const osgEarth::SpatialReference& srs);
/// Area of the band of a strip, whose whole width is given in metres.
QString AxBandSizeText(const std::vector<osg::Vec3d>& band, double width,
                       const osgEarth::SpatialReference& srs, AxKeptPlane* kept = nullptr);
/// While a vertex is dragged: the lengths of the edges that end in it, and the size of the ring or the length
/// of the line. An index behind the last vertex stands for none.
QString AxVertexText(const std::vector<osg::Vec3d>& vertices, std::size_t index, bool closed,
                     const osgEarth::SpatialReference& srs);
/// The length of the leg from the last vertex to a place and, from two vertices on, of all legs with it.
QString AxRunningLengthText(const std::vector<osg::Vec3d>& vertices, const osg::Vec3d& lngLatPos);
