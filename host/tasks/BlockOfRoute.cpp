#include "host/tasks/BlockOfRoute.h"
#include "scene/base/AxLongitudes.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxMath.h>
#include <AxAlgorthm/AxUniqueID.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {
// Degrees of latitude around the route, some 25 m: a straight one has no area by itself.
constexpr double leastMargin = 25.0 / 111320.0;
constexpr double farthestNorth = 89.9; // degrees: nearer to a pole a block is no area any more
// Homes that differ by less are the same one.
constexpr double sameHome = 1.0; // metres

// Degrees; longitudes are continuous and may lie beyond 180.
struct Box
{
    double west = 0.0, east = 0.0, south = 0.0, north = 0.0;

    void Expand(double longitude, double latitude)
    {
        longitude = AxLongitudes::NearestTo(west, longitude);
        west = std::min(west, longitude);
        east = std::max(east, longitude);
        south = std::min(south, latitude);
        north = std::max(north, latitude);
    }
    bool Meets(const Box& other) const
    {
        const double shift = AxLongitudes::NearestTo(west, other.west) - other.west;
        const auto overlaps = [](double from, double to, double otherFrom, double otherTo) {
            return from <= otherTo && otherFrom <= to;
        };
        return overlaps(south, north, other.south, other.north) &&
               overlaps(west, east, other.west + shift, other.east + shift);
    }
};

Box BoxOf(const std::vector<AxPlanPoint>& points)
{
    const AxPlanPoint& first = points.front();
    Box box{first.longitude, first.longitude, first.latitude, first.latitude};
    for (const AxPlanPoint& point : points)
        box.Expand(point.longitude, point.latitude);
    return box;
}

std::optional<Box> BoxOf(const QList<QPointF>& ring)
{
    if (ring.isEmpty())
        return {};
    const QPointF first = ring.constFirst();
    Box box{first.x(), first.x(), first.y(), first.y()};
    for (const QPointF& point : ring)
        box.Expand(point.x(), point.y());
    return box;
}

// Longitude, latitude, altitude; null where the file leaves home open.
CAxVector3D HomeOf(const AxMissionHome& home)
{
    if (!AxIsOnGlobe(home.latitude, home.longitude) || (home.latitude == 0.0 && home.longitude == 0.0))
        return {};
    double altitude = home.altitude;
    if (std::isnan(altitude)) {
        const AxPlanGround ground = CAxControl::GetInstance()->GetGround();
        altitude = (ground ? ground(home.longitude, home.latitude) : std::nullopt).value_or(0.0);
    }
    return {home.longitude, home.latitude, altitude};
}

bool IsSameHome(const CAxVector3D& one, const CAxVector3D& other)
{
    return std::hypot(DistanceBetweenTwoLatLng({one.x(), one.y(), 0.0}, {other.x(), other.y(), 0.0}),
                      one.z() - other.z()) < sameHome;
}

bool Suits(CAxBlock& block, const Box& route, const CAxVector3D& home)
{
    const std::optional<Box> box = BoxOf(block.GetAnchor());
    return box && box->Meets(route) && !block.GetTaskPara()->HasThreeDirections() &&
           (home.isNull() || IsSameHome(home, block.GetHomePosition()));
}
} // namespace

CAxBlock* BlockOfRoute(CAxEarthViewer& viewer, CAxBlock* block, const TaskFiles::Read& route)
{
    Box box = BoxOf(route.points);
    const CAxVector3D home = HomeOf(route.mission.home);
    if (block && Suits(*block, box, home))
        return block;
    box.north = std::min(box.north + leastMargin, farthestNorth);
    box.south = std::max(box.south - leastMargin, -farthestNorth);
    const double wide =
        leastMargin / std::cos(DegreeToRadians(std::max(std::fabs(box.north), std::fabs(box.south))));
    CAxBlockManager& records = CAxBlockManager::instance();
    const QString id = CreateUniqueID();
    CAxBlock* made = records.AddBlock(id, CAxBlock::PolygonBlock);
    if (!made)
        return nullptr;
    if (!records._exist(route.name))
        made->SetBlockName(route.name);
    QList<QPointF> ring;
    for (const auto& [longitude, latitude] : {std::pair{box.west - wide, box.south},
                                              {box.east + wide, box.south},
                                              {box.east + wide, box.north},
                                              {box.west - wide, box.north}})
        ring += QPointF(AxLongitudes::Normalized(longitude), latitude);
    made->SetAnchor(ring);
    if (!viewer.ImportShapeNode(id)) {
        records.DeleteBlock(id);
        return nullptr;
    }
    if (!home.isNull())
        made->SetHomePosition(home, true);
    return made;
}
