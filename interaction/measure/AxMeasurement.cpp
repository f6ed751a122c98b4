#include "interaction/measure/AxMeasurement.h"

#include <AxAlgorthm/AxUnits.h>

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
enum class Unit
{
    Length,  // metres, written in the units of lengths
    Height,  // metres
    Rise,    // metres, with a sign
    Bearing, // degrees
    Slope,   // degrees, with a sign, and percent
    Dip,     // the same without a sign
    Area,    // square metres, written in the units of areas
    Volume,  // cubic metres, written in the units of volumes
    Net,     // the same, with a sign
    Degrees, // of a place
    Plain,   // of any unit
};

struct QuantityRow
{
    AxQuantity quantity;
    Unit unit;
    const char* name;
    const char* key;
};
const QuantityRow quantityRows[] = {
    {AxQuantity::Length, Unit::Length, QT_TRANSLATE_NOOP("AxMeasurement", "Length"), "length_m"},
    {AxQuantity::OverGround, Unit::Length, QT_TRANSLATE_NOOP("AxMeasurement", "Over the ground"),
     "over_ground_m"},
    {AxQuantity::Bearing, Unit::Bearing, QT_TRANSLATE_NOOP("AxMeasurement", "Bearing"), "bearing_deg"},
    {AxQuantity::Rise, Unit::Rise, QT_TRANSLATE_NOOP("AxMeasurement", "Height difference"),
     "height_difference_m"},
    {AxQuantity::Slope, Unit::Slope, QT_TRANSLATE_NOOP("AxMeasurement", "Slope"), "slope_deg"},
    {AxQuantity::Slant, Unit::Length, QT_TRANSLATE_NOOP("AxMeasurement", "Straight line"), "slant_m"},
    {AxQuantity::Ascent, Unit::Height, QT_TRANSLATE_NOOP("AxMeasurement", "Ascent"), "ascent_m"},
    {AxQuantity::Descent, Unit::Height, QT_TRANSLATE_NOOP("AxMeasurement", "Descent"), "descent_m"},
    {AxQuantity::Area, Unit::Area, QT_TRANSLATE_NOOP("AxMeasurement", "Area"), "area_m2"},
    {AxQuantity::AreaOverGround, Unit::Area, QT_TRANSLATE_NOOP("AxMeasurement", "Area over the ground"),
     "area_over_ground_m2"},
    {AxQuantity::Perimeter, Unit::Length, QT_TRANSLATE_NOOP("AxMeasurement", "Perimeter"), "perimeter_m"},
    {AxQuantity::Width, Unit::Length, QT_TRANSLATE_NOOP("AxMeasurement", "Width"), "width_m"},
    {AxQuantity::Depth, Unit::Length, QT_TRANSLATE_NOOP("AxMeasurement", "Depth"), "depth_m"},
    {AxQuantity::AreaOnPlane, Unit::Area, QT_TRANSLATE_NOOP("AxMeasurement", "Area on the plane"),
     "area_on_plane_m2"},
    {AxQuantity::Dip, Unit::Dip, QT_TRANSLATE_NOOP("AxMeasurement", "Slope of the plane"), "plane_slope_deg"},
    {AxQuantity::Aspect, Unit::Bearing, QT_TRANSLATE_NOOP("AxMeasurement", "Falls towards"), "aspect_deg"},
    {AxQuantity::Roughness, Unit::Height, QT_TRANSLATE_NOOP("AxMeasurement", "Roughness"), "roughness_m"},
    {AxQuantity::Longitude, Unit::Degrees, QT_TRANSLATE_NOOP("AxMeasurement", "Longitude"), "longitude_deg"},
    {AxQuantity::Latitude, Unit::Degrees, QT_TRANSLATE_NOOP("AxMeasurement", "Latitude"), "latitude_deg"},
    {AxQuantity::Easting, Unit::Plain, QT_TRANSLATE_NOOP("AxMeasurement", "Easting"), "easting"},
    {AxQuantity::Northing, Unit::Plain, QT_TRANSLATE_NOOP("AxMeasurement", "Northing"), "northing"},
    {AxQuantity::GroundHeight, Unit::Height, QT_TRANSLATE_NOOP("AxMeasurement", "Ground"), "ground_m"},
    {AxQuantity::Cut, Unit::Volume, QT_TRANSLATE_NOOP("AxMeasurement", "Cut"), "cut_m3"},
    {AxQuantity::Fill, Unit::Volume, QT_TRANSLATE_NOOP("AxMeasurement", "Fill"), "fill_m3"},
    {AxQuantity::Net, Unit::Net, QT_TRANSLATE_NOOP("AxMeasurement", "Cut less fill"), "net_m3"},
    {AxQuantity::CellError, Unit::Volume, QT_TRANSLATE_NOOP("AxMeasurement", "Error by cells"),
     "cell_error_m3"},
    {AxQuantity::MeanAbove, Unit::Rise, QT_TRANSLATE_NOOP("AxMeasurement", "Mean above base"),
     "mean_above_m"},
    {AxQuantity::HighestAbove, Unit::Rise, QT_TRANSLATE_NOOP("AxMeasurement", "Highest above base"),
     "highest_above_m"},
    {AxQuantity::LowestAbove, Unit::Rise, QT_TRANSLATE_NOOP("AxMeasurement", "Lowest above base"),
     "lowest_above_m"},
    {AxQuantity::Unknown, Unit::Area, QT_TRANSLATE_NOOP("AxMeasurement", "Area without heights"),
     "unknown_m2"},
};

const QuantityRow& RowOf(AxQuantity quantity)
{
    return *std::find_if(std::begin(quantityRows), std::end(quantityRows),
                         [quantity](const QuantityRow& row) { return row.quantity == quantity; });
}

struct KindRow
{
    EToolType tool;
    const char* name;
};
const KindRow kindRows[] = {
    {ToolMeasureDistance, QT_TRANSLATE_NOOP("AxMeasurement", "Distance")},
    {ToolMeasureAltitude, QT_TRANSLATE_NOOP("AxMeasurement", "Height difference")},
    {ToolMeasureArea, QT_TRANSLATE_NOOP("AxMeasurement", "Area")},
    {ToolMeasurePlane, QT_TRANSLATE_NOOP("AxMeasurement", "Plane")},
    {ToolMeasureVolume, QT_TRANSLATE_NOOP("AxMeasurement", "Volume")},
    {ToolProjCoords, QT_TRANSLATE_NOOP("AxMeasurement", "Place")},
};

QString Tr(const char* text)
{
    return QCoreApplication::translate("AxMeasurement", text);
}

// Without the sign of a value that is rounded to 0.
QString Fixed(double value, int decimals)
{
    const double scale = std::pow(10.0, decimals);
    return QString::number(std::round(value * scale) / scale + 0.0, 'f', decimals);
}

QString Signed(double value, int decimals)
{
    const QString text = Fixed(value, decimals);
    return value > 0.0 ? QLatin1Char('+') + text : text;
}
} // namespace

double AxMeasuredValues::Of(AxQuantity quantity) const
{
    const auto* found = std::find_if(whole.begin(), whole.end(), [quantity](const AxMeasured& measured) {
        return measured.quantity == quantity;
    });
    return found == whole.end() ? std::numeric_limits<double>::quiet_NaN() : found->value;
}

QVector<AxQuantity> AxMeasureText::All()
{
    QVector<AxQuantity> all;
    for (const QuantityRow& row : quantityRows)
        all += row.quantity;
    return all;
}

QString AxMeasureText::Name(AxQuantity quantity)
{
    return Tr(RowOf(quantity).name);
}

QString AxMeasureText::Value(const AxMeasured& measured)
{
    const double value = measured.value;
    if (!std::isfinite(value))
        return QStringLiteral("-");
    switch (RowOf(measured.quantity).unit) {
    case Unit::Length:
        return AxUnits::Length(value);
    case Unit::Height:
        return Tr(QT_TRANSLATE_NOOP("AxMeasurement", "%1 m")).arg(Fixed(value, 1));
    case Unit::Rise:
        return Tr(QT_TRANSLATE_NOOP("AxMeasurement", "%1 m")).arg(Signed(value, 1));
    case Unit::Bearing: {
        const QString text = Fixed(value, 1);
        const bool isFullTurn = text == QLatin1String("360.0");
        return Tr(QT_TRANSLATE_NOOP("AxMeasurement", "%1\302\260"))
            .arg(isFullTurn ? QStringLiteral("0.0") : text);
    }
    case Unit::Area:
        return AxUnits::Area(value);
    case Unit::Volume:
        return AxUnits::Volume(value);
    case Unit::Net:
        return AxUnits::SignedVolume(value);
    case Unit::Degrees:
        return Tr(QT_TRANSLATE_NOOP("AxMeasurement", "%1\302\260")).arg(Fixed(value, 6));
    case Unit::Plain:
        return Fixed(value, 2);
    case Unit::Dip:
    case Unit::Slope: {
        constexpr double percentOfOne = 100.0;
        const double percent = percentOfOne * std::tan(value * std::acos(-1.0) / 180.0);
        constexpr double upright = 89.9; // a percentage says nothing any more
        QString (*const write)(double, int) = RowOf(measured.quantity).unit == Unit::Dip ? Fixed : Signed;
        if (std::abs(value) > upright)
            return Tr(QT_TRANSLATE_NOOP("AxMeasurement", "%1\302\260")).arg(write(value, 1));
        return Tr(QT_TRANSLATE_NOOP("AxMeasurement", "%1\302\260 (%2 %)"))
            .arg(write(value, 1), write(percent, 1));
    }
    }
    return {};
}

QString AxMeasureText::Lines(const QVector<AxMeasured>& values)
{
    QStringList lines;
    for (const AxMeasured& measured : values)
        if (std::isfinite(measured.value))
            lines += Tr(QT_TRANSLATE_NOOP("AxMeasurement", "%1: %2"))
                         .arg(Name(measured.quantity), Value(measured));
    return lines.join(QLatin1Char('\n'));
}

QString AxMeasureText::Key(AxQuantity quantity)
{
    return QLatin1String(RowOf(quantity).key);
}

QString AxMeasureText::Number(const AxMeasured& measured)
{
    return std::isfinite(measured.value) ? QString::number(measured.value, 'g', 15) : QString();
}

QString AxMeasureText::Kind(EToolType tool)
{
    for (const KindRow& row : kindRows)
        if (row.tool == tool)
            return Tr(row.name);
    return {};
}
