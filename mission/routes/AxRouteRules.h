#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxAlgorthm/CAxVector3D.h>

#include <osg/BoundingSphere>
#include <osg/Matrixd>
#include <osg/Vec3d>
#include <osg/Vec4f>

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

#include <vector>

// What is drawn of a route, and how, worked out without a scene. Any thread.
namespace AxRouteRules {
/// Of aircraft that has flown a segment, or is not to fly it.
const osg::Vec4f flownColor(132.0f / 255.0f, 159.0f / 255.0f, 164.0f / 255.0f, 1.0f);

/// A part of a list.
struct Range
{
    int first = 0;
    int count = 0;
};
/// Which of the three sub-routes, one behind the other in `size` points, is shown. Seen from entry points 2
/// and 3 the first and the last direction are swapped. Without an entry point of the block, or for a
/// direction that there is not, it is the first one.
AXEARTHVIEWER_EXPORT Range ThirdShown(int size, int entryPoint, int direction);

/// The altitude at which a point is drawn: a point without one is flown at `flightHeight`, unless every point
/// of the task has its own.
AXEARTHVIEWER_EXPORT double DrawnAltitude(double altitude, double flightHeight, ETaskType type);

/// Whether all components are 0, by a millionth: no place.
AXEARTHVIEWER_EXPORT bool IsNoPlace(const osg::Vec3d& place);

/// Pairs of geocentric points and, pair by pair, their colours. There may be fewer colours than points.
struct Segments
{
    std::vector<osg::Vec3d> points;
    std::vector<osg::Vec4f> colors;
};
/// Adds the segment that leads to point i and moves on to there. Between the two indices it has the line's
/// colour, outside flownColor; before somebody has set them it has none.
AXEARTHVIEWER_EXPORT void AddSegmentByIndices(int i, osg::Vec3d& previous, const osg::Vec3d& current,
                                              int startIndex, int endIndex, const osg::Vec4f& lineColor,
                                              Segments& segments);
/// The same for a flight that goes on: segments that lead to a point before `stoppedIn` have been flown.
AXEARTHVIEWER_EXPORT void AddSegmentByPlace(int i, osg::Vec3d& previous, const osg::Vec3d& current,
                                            int stoppedIn, const osg::Vec4f& lineColor, Segments& segments);
/// Index of the point to which the segment leads that passes closest by a place; 0 for less than two points.
/// All are longitude, latitude and altitude; the altitude does not count.
AXEARTHVIEWER_EXPORT int SegmentNearest(const std::vector<osg::Vec3d>& route, const osg::Vec3d& place);
/// Adds the legs from the two ends of the route to above home, each unless the end is no place, and the one
/// down to home.
AXEARTHVIEWER_EXPORT void AddHomeLegs(const osg::Vec3d& first, const osg::Vec3d& last,
                                      const osg::Vec3d& aboveHome, const osg::Vec3d& home,
                                      const osg::Vec4f& lineColor, Segments& segments);

/// Of the marker at a place of the list of markers; empty beyond the fourth.
AXEARTHVIEWER_EXPORT QString MarkerIcon(int index, int entryPoint);
/// Of home, by how the aircraft comes down.
AXEARTHVIEWER_EXPORT QString HomeIcon(bool landsDownhill);

/// Degrees by which the label beside a route is turned, for a route in that geocentric direction; 0 for a
/// direction without a horizontal part.
AXEARTHVIEWER_EXPORT double LabelHeading(const osg::Vec3d& direction);

/// Where that label stands, of a route whose first points are these two; all are geocentric metres. It is a
/// tenth of their distance away from the first, in the plane of the horizon there.
AXEARTHVIEWER_EXPORT osg::Vec3d LabelPlace(const osg::Vec3d& first, const osg::Vec3d& second);

/// Which of the geocentric points are numbered in a view of that many pixels, by index and in order: as many
/// as the part of the screen that they take up has room for, the first and the last point and in between
/// those of round numbers. None of a route that is small on the screen, and none out of view.
AXEARTHVIEWER_EXPORT std::vector<int> NumbersShown(const std::vector<osg::Vec3d>& points,
                                                   const osg::Matrixd& toClip, int width, int height);

/// Whether the markers of entry points would cover their route, seen by a camera that sees so many metres in
/// a pixel from a distance of 1 m.
AXEARTHVIEWER_EXPORT bool AreMarkersInTheWay(const osg::BoundingSphered& route, const osg::Vec3d& eye,
                                             double pixel);

/// The points of a route of (longitude, latitude, altitude), and behind them those markers that stand between
/// two points, or beside it, at the altitude of the route nearby.
AXEARTHVIEWER_EXPORT QList<CAxVector3D> WithMarkers(const std::vector<osg::Vec3d>& route,
                                                    const QList<QPair<int, CAxVector3D>>& markers);

/// Which points of the route are markers: by the marker's place in its list.
AXEARTHVIEWER_EXPORT QMap<int, CAxVector3D> MatchingMarkers(const QList<CAxVector3D>& points,
                                                            const QList<QPair<int, CAxVector3D>>& markers);
} // namespace AxRouteRules
