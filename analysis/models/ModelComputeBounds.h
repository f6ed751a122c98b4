#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarth/SpatialReference>

#include <QPointF>
#include <QRectF>

#include <vector>

/**
 * How far a model reaches on the globe: the convex outline of its vertices as seen from above, the box around
 * it, and its lowest and highest place. A plain value after Compute(). Any thread.
 */
class AXEARTHVIEWER_EXPORT ModelComputeBounds
{
public:
    /// The vertices' system.
    explicit ModelComputeBounds(const osgEarth::SpatialReference* world);

    /// Takes the vertices of a model in world coordinates (ModelVertexVisitor) and widens their outline by
    /// `margin` metres. Those that are no places on the globe are passed over. A model that is a line or a
    /// point from above gets an outline of half a metre around it. False, with nothing known, where no place
    /// is left, and around a pole.
    bool Compute(const std::vector<osg::Vec3d>& vertices, double margin = 0.0);

    /// Drops vertices that Compute() finds nothing from, be there further ones or not: so that those of a
    /// large model need not be kept.
    void Reduce(std::vector<osg::Vec3d>& vertices) const;

    /// Longitude, latitude, degrees, counter-clockwise, the first not repeated; longitudes go on beyond 180
    /// degrees. Convex in longitude and latitude; empty while nothing is known.
    const std::vector<QPointF>& GetHull() const { return hull; }
    /// Around the outline: west, south, width and height, degrees.
    QRectF GetBox() const;
    /// Of the vertices, metres as the world's system has them.
    double GetLowest() const { return lowest; }
    double GetHighest() const { return highest; }

private:
    osg::ref_ptr<const osgEarth::SpatialReference> srs;
    std::vector<QPointF> hull;
    double lowest = 0.0;
    double highest = 0.0;
};
