#pragma once

#include <AxData/AxDataExport.h>

#include <QList>
#include <QPointF>
#include <QString>

#include <array>
#include <vector>

/// A place on a route.
struct AXDATA_EXPORT AxPlanPoint
{
    /// What it is for.
    enum class Role
    {
        LeadIn,    ///< where the straight flight towards a pass begins
        PassStart, ///< the first photo of a pass, or of its next stretch behind a hole
        PassEnd,   ///< the last one
        OnPass,    ///< in between, where the height changes
        Turn,      ///< on the way from one pass to the next
        HomeLeg    ///< on the way from or to home, where it goes round a no-fly zone
    };
    double longitude = 0.0; ///< degrees
    double latitude = 0.0;  ///< degrees
    double altitude = 0.0;  ///< metres above the ellipsoid
    Role role = Role::Turn; ///< of the point
    int pass = -1;          ///< in the order in which passes are flown; -1 between them and above holes
};

/// A photo.
struct AXDATA_EXPORT AxPlanPhoto
{
    double longitude = 0.0; ///< degrees, of the camera
    double latitude = 0.0;  ///< degrees
    double altitude = 0.0;  ///< metres above the ellipsoid
    double heading = 0.0;   ///< degrees clockwise from north
    int pass = -1;          ///< on which it is taken
};

/// What a route amounts to.
struct AXDATA_EXPORT AxPlanFigures
{
    double length = 0.0;        ///< metres flown, with turns and with the way from and to home
    double seconds = 0.0;       ///< in the wind given
    int photos = 0;             ///< of all sets
    int passes = 0;             ///< of all sets; one that flies straight across a hole counts as two
    int turns = 0;              ///< from one pass to the next
    double area = 0.0;          ///< square metres of what is asked for: the area, the strip, the disc
    double interval = 0.0;      ///< least seconds between two photos
    double height = 0.0;        ///< metres above the mean ground
    double sample = 0.0;        ///< metres of ground a pixel, from that height
    double spacing = 0.0;       ///< metres between passes
    double photoDistance = 0.0; ///< metres between photos
    /// Above the ground, where it is known along the route and the way from and to home; both 0 where it is
    /// not.
    double leastHeight = 0.0;
    double meanHeight = 0.0;
    /// Metres of ground a pixel below the passes, where the ground is known; both 0 where it is not.
    double sampleLeast = 0.0;
    double sampleMean = 0.0;
};

/// Something the pilot ought to know, with its place.
struct AXDATA_EXPORT AxPlanWarning
{
    /// Of what.
    enum class Kind
    {
        Clearance,     ///< the ground comes nearer than asked
        UnknownGround, ///< no height is known below the route
        Interval,      ///< photos follow faster than the camera takes them
        Overlap,       ///< fewer passes than the overlap needs
        Zone,          ///< the route is in a no-fly zone from here on; the value is for how many metres
        Bend,          ///< the route bends tighter than the aircraft turns: radii in metres, 0 at a corner
        NoWayRound,    ///< the leg between home and here goes round no zone, because no way was found
        UnknownZones   ///< home legs are to go round no-fly zones, but nobody has given any
    };
    Kind kind = Kind::Clearance; ///< of what is warned
    QPointF place;               ///< longitude, latitude
    double value = 0.0;          ///< what is there: metres, seconds, or the share of overlap
    double asked = 0.0;          ///< by the request, in the same unit
    QString zone = {};           ///< its name, where it is one
};

/// A planned route. Where there is a home, it is flown to level with the route's first point, and from it
/// with its last one; climbs and falls are over home. Three directions are three flights: of entry points 0
/// and 1 in their order, of 2 and 3 the third direction comes first. Without points where the request allows
/// none: `fault` says why.
struct AXDATA_EXPORT AxPlanResult
{
    QString fault;                   ///< for people; empty when there is a route
    std::vector<AxPlanPoint> points; ///< in their order
    std::vector<AxPlanPhoto> photos; ///< in their order
    /// Where the flight may begin; `entry` of the request chooses.
    std::array<AxPlanPoint, 4> entries;
    /// Of three directions the same for each of them, in their order; else empty.
    std::vector<std::array<AxPlanPoint, 4>> entriesOfDirections;
    double heading = 0.0; ///< of the first direction or set of passes, degrees clockwise from north
    AxPlanFigures figures;
    std::vector<AxPlanWarning> warnings;

    /// Whether there is a route.
    bool IsPlanned() const { return fault.isEmpty() && !points.empty(); }
};
