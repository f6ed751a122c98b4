#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxCoordinate.h>

#include <osg/Vec3d>

#include <optional>
#include <vector>

/// The geometry of a strip: places are longitude and latitude in degrees, altitude in metres; widths and
/// lengths metres.
namespace AxStripShape {

/// The outline of the band that lies `width1` to the left and `width2` to the right of its centre line, as
/// CreateStripPolygon() makes it in the UTM zone of the first vertex, at the altitudes of the vertices beside
/// it. Empty when there is no such band, or a side of it is wider than 100 km.
AXEARTHVIEWER_EXPORT std::vector<osg::Vec3d> Band(const std::vector<osg::Vec3d>& centreLine, double width1,
                                                  double width2);

/// The same for whoever asks often: what has not changed since the last time is not computed again.
class AXEARTHVIEWER_EXPORT KeptBand
{
public:
    /// As Band(); good until the next call.
    const std::vector<osg::Vec3d>& Of(const std::vector<osg::Vec3d>& centreLine, double width1,
                                      double width2);

private:
    using Points = std::vector<CAxPoint2D>;
    bool toPlane(const Points& lngLat);
    bool toLngLat(const Points& metres);

    std::vector<osg::Vec3d> line;
    double left = -1.0;
    double right = -1.0;
    std::vector<osg::Vec3d> band;
    std::optional<AxUtmPlane> plane;
    Points lineDegrees;
    Points lineMetres;
    Points bandMetres;
    Points bandDegrees;
};

/// Of a leg that is drawn or edited, and of a part that is cut off; metres.
constexpr double leastLeg = 50.0;
/// Along a great circle of a sphere of 6378137 m.
AXEARTHVIEWER_EXPORT double LegLength(const osg::Vec3d& from, const osg::Vec3d& to);
/// Of all legs.
AXEARTHVIEWER_EXPORT double Length(const std::vector<osg::Vec3d>& centreLine);
/// Whether a leg at the vertex is shorter than that; false where there is no such vertex.
AXEARTHVIEWER_EXPORT bool HasShortLegAt(const std::vector<osg::Vec3d>& centreLine, int vertex,
                                        double minDistance);

/// A pair of widths, in the order in which Band() takes them.
struct Widths
{
    double left = 0.0;  ///< metres
    double right = 0.0; ///< metres
};
/// Why a pair of widths is none.
enum class WidthFault
{
    None,      ///< it is one
    Negative,  ///< one is less than 0
    TooNarrow, ///< less than 3 m together
};
/// 0 for one of them is a width, and so is 3 for both.
AXEARTHVIEWER_EXPORT WidthFault FaultOf(const Widths& widths);

} // namespace AxStripShape
