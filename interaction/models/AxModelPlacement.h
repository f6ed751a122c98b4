#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxCoordinateSystem.h>

#include <osg/Matrixd>
#include <osg/Vec3d>

#include <QString>

#include <optional>

/// What the heights of a model are counted from.
enum class AxModelHeights
{
    OfSystem,  ///< of a system with heights the sea, of any other the ellipsoid
    Ellipsoid, ///< of WGS 84
    SeaLevel   ///< the geoid
};

/// Where the coordinates of a model are on the globe. A value that is cheap to copy; any thread.
class AXEARTHVIEWER_EXPORT AxModelPlacement
{
public:
    /// By a system as AxModelSource::coordinateSystem has it, and the origin in it. Nothing, with the reason
    /// for people in `why`, for what is unknown, and for an origin that lies outside of the system.
    static std::optional<AxModelPlacement> Of(const QString& system, const osg::Vec3d& origin,
                                              QString* why = nullptr);

    /// Takes a model's coordinates to geocentric metres, its heights counted from the ellipsoid. Exact at
    /// one point of the model: a system's plane is bent onto the globe, so 1 km from there it is 8 cm too
    /// high. The whole of an "ENU" model has one matrix. Of a system in feet the heights are in feet, too.
    /// Nothing for points outside of the system.
    std::optional<osg::Matrixd> At(const osg::Vec3d& point) const;

    /// Whether heights are counted from the sea, as far as the system tells.
    bool IsAboveSea() const { return isAboveSea; }

private:
    std::optional<osg::Vec3d> worldOf(double x, double y, double altitude) const;

    osg::Vec3d origin;
    AxCoordinateSystem system;
    std::optional<osg::Matrixd> plane; ///< of a system that is a plane upon a place
    bool isAboveSea = false;
};
