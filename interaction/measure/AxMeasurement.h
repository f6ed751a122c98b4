#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxPathMeasure.h>
#include <AxBaseUI/EToolType.h>

#include <osg/Vec3d>

#include <QString>
#include <QVector>

#include <functional>
#include <vector>

/// What is measured. How it is written, named and exported is one row of a table (AxMeasurement.cpp).
enum class AxQuantity
{
    Length,         ///< along the ellipsoid, metres
    OverGround,     ///< along the ground, metres
    Bearing,        ///< degrees clockwise from true north
    Rise,           ///< how much higher the end is, metres
    Slope,          ///< degrees against the horizontal, up is positive
    Slant,          ///< straight through the air, metres
    Ascent,         ///< all ways up, metres
    Descent,        ///< all ways down, metres
    Area,           ///< on the ellipsoid, square metres
    AreaOverGround, ///< of the ground, square metres
    Perimeter,      ///< along the ellipsoid, metres
    Width,          ///< of a rectangle, metres
    Depth,          ///< its other side, metres
    AreaOnPlane,    ///< of the plane that fits the ground, square metres
    Dip,            ///< of that plane against the horizontal, degrees
    Aspect,         ///< where it falls to, degrees clockwise from true north
    Roughness,      ///< of the ground against it, metres
    Longitude,      ///< degrees
    Latitude,       ///< degrees
    Easting,        ///< in the units of a coordinate system
    Northing,
    GroundHeight, ///< metres as the map has them
    Cut,          ///< ground above a base, cubic metres
    Fill,         ///< room below it, cubic metres
    Net,          ///< cut less fill, cubic metres
    CellError,    ///< of cut and fill, by the size of cells, cubic metres
    MeanAbove,    ///< of the ground above the base, metres; negative below
    HighestAbove, ///< likewise
    LowestAbove,
    Unknown, ///< where no height is known, square metres
};

/// One value. Not a number where it is not known, or not yet.
struct AxMeasured
{
    AxQuantity quantity; ///< what it is a value of
    double value = 0.0;  ///< in the unit of the quantity
};

/// What measuring gives: the values of the whole, and of its parts, as the legs of a path.
struct AxMeasuredValues
{
    QVector<AxMeasured> whole;          ///< in the order in which they are told
    QVector<QVector<AxMeasured>> parts; ///< likewise, from one point to the next
    /// Metres between looks at the ground; 0: it was not looked at.
    double step = 0.0;
    bool isCrossed = false; ///< a ring's edges cross: it has no area
    QString system;         ///< in which easting and northing are, for people; empty without
    QString note;           ///< what is to be known of the values besides, for people

    /// Of the whole; not a number where there is none.
    AXEARTHVIEWER_EXPORT double Of(AxQuantity quantity) const;
};

/// A finished measurement, as the map, lists and files have it. A plain value.
struct AxMeasurement
{
    QString id;                ///< unique among measurements and blocks
    EToolType tool = ToolNone; ///< that it was made with
    QString name;              ///< for people, in their language: "Distance 3"
    /// Degrees, degrees, metres as the map has them.
    std::vector<osg::Vec3d> points;
    bool isClosed = false;   ///< the last point leads back to the first
    AxMeasuredValues values; ///< what is known by now
    /// The finest heights of the ground are still being read: values that hang on them are to come.
    bool isPending = false;
};

/// Measures points: a pure function of them and of the ground, for any thread. Without a ground it gives what
/// can be said without. It ends early once its last argument is true; the result then means nothing.
using AxMeasureWork = std::function<AxMeasuredValues(
    const std::vector<osg::Vec3d>& points, const AxPathGround& ground, const std::atomic<bool>& isOff)>;

/// The texts of what is measured. GUI thread.
namespace AxMeasureText {
/// All quantities, in the order in which lists and files have them.
AXEARTHVIEWER_EXPORT QVector<AxQuantity> All();
/// The name of a quantity: "Length".
AXEARTHVIEWER_EXPORT QString Name(AxQuantity quantity);
/// A value with its unit: lengths in those of AxUnits, heights in metres. Not known: "-".
AXEARTHVIEWER_EXPORT QString Value(const AxMeasured& measured);
/// "Length: 1.234 km", line by line, of all values that are known.
AXEARTHVIEWER_EXPORT QString Lines(const QVector<AxMeasured>& values);
/// In files for programs: the column, with its unit ("length_m"), and the number, in the C locale with all
/// its digits; empty where it is not known.
AXEARTHVIEWER_EXPORT QString Key(AxQuantity quantity);
AXEARTHVIEWER_EXPORT QString Number(const AxMeasured& measured);
/// What a measurement with a tool is called, without a number: "Distance". Empty for a tool that measures
/// nothing.
AXEARTHVIEWER_EXPORT QString Kind(EToolType tool);
} // namespace AxMeasureText
