#pragma once

#include <AxData/AxDataExport.h>

#include <QList>
#include <QPointF>
#include <QString>

#include <functional>
#include <optional>
#include <vector>

/// Where a lens looks.
struct AXDATA_EXPORT AxPlanView
{
    double turn = 0.0; ///< degrees clockwise from where the aircraft flies
    double tilt = 0.0; ///< degrees from straight down
};

/// What a camera is, as its maker states it.
struct AXDATA_EXPORT AxPlanCamera
{
    QString name;                  ///< as the pilot knows it
    double sensorWidth = 35.9;     ///< mm, across the flight
    double sensorHeight = 24.0;    ///< mm, along the flight
    double focalLength = 35.0;     ///< mm
    int imageWidth = 7952;         ///< pixels, across the flight
    int imageHeight = 5304;        ///< pixels, along the flight
    double shortestInterval = 1.0; ///< seconds between two photos
    QString fault = {};            ///< for people: why nothing can be planned with it; empty when it can
    std::vector<AxPlanView> views =
        {};                  ///< of its lenses, which take each photo together; none: straight down
    bool isSwinging = false; ///< one lens instead, which takes each photo in the next of the views

    /// Metres of ground that a pixel shows from so many metres above it.
    double SampleFrom(double height) const { return height * sensorWidth / (focalLength * imageWidth); }
    /// The height above the ground from which a pixel shows so many metres of it.
    double HeightFor(double sample) const { return sample * focalLength * imageWidth / sensorWidth; }
    /// Metres of ground that a photo shows, across and along the flight.
    double WidthFrom(double height) const { return height * sensorWidth / focalLength; }
    double LengthFrom(double height) const { return height * sensorHeight / focalLength; }
};

/// What an aircraft can fly.
struct AXDATA_EXPORT AxPlanAircraft
{
    double speed = 15.0;     ///< m/s through the air
    double turnRadius = 0.0; ///< metres; 0 turns on the spot
    double leadIn = 0.0;  ///< metres of straight flight before the first photo of a pass and after its last
    double climb = 0.2;   ///< steepest way up, rise over run
    double descent = 0.2; ///< steepest way down, rise over run
    double endurance = 1500.0; ///< seconds in the air that may be planned for a flight
};

/// Heights of the ground, metres above the ellipsoid, at a longitude and latitude in degrees; nothing where
/// none is known. Asked on the thread that plans.
using AxPlanGround = std::function<std::optional<double>(double longitude, double latitude)>;

/// An area that nobody may fly into, at any height.
struct AXDATA_EXPORT AxPlanZone
{
    QString name;        ///< by which people know it: zone files give ids
    QList<QPointF> ring; ///< (longitude, latitude) in degrees; encloses what the even-odd rule says
};

/// The no-fly zones that come within so many metres of a place in degrees, and perhaps some others. Asked on
/// the thread that plans.
using AxPlanZones = std::function<std::vector<AxPlanZone>(double longitude, double latitude, double metres)>;

/// What is to be flown. Places are (longitude, latitude) in degrees, heights metres above the ellipsoid
/// unless they say otherwise.
struct AXDATA_EXPORT AxPlanRequest
{
    /// What is flown over.
    enum class Kind
    {
        Area,  ///< parallel passes over the ring `outline`
        Strip, ///< passes beside the line `outline`, from leftWidth to rightWidth metres beside it
        Orbit  ///< a circle of `radius` metres around the first point of `outline`
    };
    /// Which height the passes keep.
    enum class Heights
    {
        Constant,    ///< one for all: that of the mean ground and `height`
        KeepOverlap, ///< of each pass: that of the highest ground below it and `height`
        Terrain      ///< follows the ground within the aircraft's limits, never below `height` over it
    };

    Kind kind = Kind::Area; ///< of what is flown over
    QList<QPointF> outline; ///< as the kind says
    /// Rings in the area where no photo is wanted. Those too short to turn at are flown across, and the
    /// camera pauses there, unless the next photo comes behind them anyway.
    QList<QList<QPointF>> holes;
    double leftWidth = 0.0;  ///< of a strip, metres
    double rightWidth = 0.0; ///< of a strip, metres
    double radius = 0.0;     ///< of a circle, metres

    AxPlanCamera camera;     ///< that takes the photos
    AxPlanAircraft aircraft; ///< that carries it
    /// Metres above the ground; when it is 0 it follows from `sample`, metres of ground a pixel.
    double height = 0.0;
    double sample = 0.0;
    double sideOverlap = 0.7;    ///< share of a photo, 0 up to but not including 1
    double forwardOverlap = 0.8; ///< the same
    /// Of the passes, degrees clockwise from north; the shortest flight decides when there is none.
    std::optional<double> heading;
    bool isCrossed = false;         ///< a second set of passes at right angles
    bool isThreeDirections = false; ///< three sets, 60 degrees apart, of equally many points
    int passes = 0;                 ///< so many whatever the overlap; 0 leaves it to the overlap
    int entry = 0;                  ///< which of the four entry points the flight begins at

    Heights heights = Heights::Constant; ///< of the passes
    double meanGround = 0.0;             ///< metres above the ellipsoid, of the area
    double clearance = 0.0;              ///< least metres above the ground anywhere on the route
    AxPlanGround ground;                 ///< may be empty for constant heights: the route then warns of that

    double windSpeed = 0.0;      ///< m/s
    double windFrom = 0.0;       ///< degrees clockwise from north
    std::optional<QPointF> home; ///< where flights begin and end
    double homeAltitude = 0.0;   ///< its own, metres above the ellipsoid

    AxPlanZones zones; ///< may be empty: then none is known, and none is warned of
    /// The legs from and to home go the shortest way round the zones, but not those of three directions.
    bool goesRoundZones = false;
    double zoneMargin = 50.0; ///< metres that such a way keeps from zones, less where it ends near one
};
