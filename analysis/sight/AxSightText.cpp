#include "analysis/sight/AxSightText.h"

#include <AxAlgorthm/AxUnits.h>

#include <QCoreApplication>

#include <cmath>

namespace {
class Tr
{
    Q_DECLARE_TR_FUNCTIONS(AxSightText)
};

// Heights are metric in every system of units.
QString HeightText(double metres)
{
    return std::isfinite(metres) ? Tr::tr("%1 m").arg(QString::number(metres, 'f', 1)) : Tr::tr("not known");
}

QString PlaceText(const QPointF& place)
{
    return Tr::tr("longitude %1°, latitude %2°")
        .arg(QString::number(place.x(), 'f', 6), QString::number(place.y(), 'f', 6));
}

QString EndText(const QString& what, const AxSightEnd& end, double ground)
{
    return Tr::tr("%1: %2, %3 above the ground (ground %4)")
        .arg(what, PlaceText(end.place), HeightText(end.aboveGround), HeightText(ground));
}

QString NeededText(const AxSightLine& line)
{
    if (std::isnan(line.neededAboveGround))
        return Tr::tr("From which height on the target is seen is not known.");
    if (std::isinf(line.neededAboveGround))
        return Tr::tr("No height of the target would do.");
    return Tr::tr("The target is seen from %1 above its ground on.").arg(HeightText(line.neededAboveGround));
}

QString RefractionText(double refraction)
{
    return Tr::tr("With the Earth's curve and a refraction of %1.").arg(QString::number(refraction, 'f', 2));
}

double PercentOf(int cells, const AxViewshed& viewshed)
{
    return viewshed.Cells() > 0 ? 100.0 * cells / viewshed.Cells() : 0.0;
}

QString PercentText(int cells, const AxViewshed& viewshed)
{
    return QString::number(PercentOf(cells, viewshed), 'f', 1);
}

QString Number(double value)
{
    return std::isfinite(value) ? QString::number(value, 'f', 2) : QString();
}

const char* const seenFields[] = {"visible", "hidden", "unknown"};
} // namespace

QString AxSightText(const AxSightLine& line)
{
    if (line.seen == AxSeen::Hidden)
        return Tr::tr("Hidden from %1 on: the ground stands up to %2 in the way")
            .arg(AxUnits::Length(line.blockedAt->distance), HeightText(-line.tightest->clearance));
    if (line.seen == AxSeen::Unknown)
        return Tr::tr("Not known: ground on the way has no known height");
    return line.tightest ? Tr::tr("Visible: at least %1 above the ground on the way")
                               .arg(HeightText(line.tightest->clearance))
                         : Tr::tr("Visible");
}

QString AxSightLabel(const AxSightLine& line)
{
    if (line.seen == AxSeen::Hidden)
        return Tr::tr("hidden from %1 on\n%2 in the way")
            .arg(AxUnits::Length(line.blockedAt->distance), HeightText(-line.tightest->clearance));
    if (line.seen == AxSeen::Unknown)
        return Tr::tr("not known");
    return line.tightest ? Tr::tr("visible\n%1 clear").arg(HeightText(line.tightest->clearance))
                         : Tr::tr("visible");
}

QString AxSightText(const AxViewshed& viewshed)
{
    const QString text =
        Tr::tr("%1 % within %2 is visible, %3 % hidden")
            .arg(PercentText(viewshed.visible, viewshed), AxUnits::Length(viewshed.question.radius),
                 PercentText(viewshed.hidden, viewshed));
    return viewshed.unknown > 0
               ? Tr::tr("%1, %2 % not known").arg(text, PercentText(viewshed.unknown, viewshed))
               : text;
}

QString AxSightReport(const AxSightLine& line)
{
    QStringList lines{AxSightText(line), EndText(Tr::tr("Observer"), line.from, line.fromGround),
                      EndText(Tr::tr("Target"), line.to, line.toGround),
                      Tr::tr("Distance along the ellipsoid: %1").arg(AxUnits::Length(line.distance))};
    if (line.blockedAt)
        lines += Tr::tr("First ground in the way: %1, after %2")
                     .arg(PlaceText(line.blockedAt->place), AxUnits::Length(line.blockedAt->distance));
    if (line.tightest)
        lines += Tr::tr("Lowest above the ground: %1, after %2, at %3")
                     .arg(HeightText(line.tightest->clearance), AxUnits::Length(line.tightest->distance),
                          PlaceText(line.tightest->place));
    lines += NeededText(line);
    lines += RefractionText(line.refraction);
    return lines.join(QLatin1Char('\n'));
}

QString AxSightReport(const AxViewshed& viewshed)
{
    const AxViewshedQuestion& asked = viewshed.question;
    const double area = asked.cell * asked.cell;
    const QStringList lines{
        AxSightText(viewshed),
        EndText(Tr::tr("Observer"), {asked.observer, asked.aboveGround}, viewshed.observerGround),
        Tr::tr("What is looked for stands %1 above the ground.").arg(HeightText(asked.targetAboveGround)),
        viewshed.unknown > 0
            ? Tr::tr("Visible: %1, hidden: %2, not known: %3")
                  .arg(AxUnits::Area(area * viewshed.visible), AxUnits::Area(area * viewshed.hidden),
                       AxUnits::Area(area * viewshed.unknown))
            : Tr::tr("Visible: %1, hidden: %2")
                  .arg(AxUnits::Area(area * viewshed.visible), AxUnits::Area(area * viewshed.hidden)),
        Tr::tr("Cells of %1").arg(AxUnits::Length(asked.cell)),
        RefractionText(asked.refraction)};
    return lines.join(QLatin1Char('\n'));
}

QString AxSightFaultText(AxViewshedFault fault)
{
    switch (fault) {
    case AxViewshedFault::NoPlace:
        return Tr::tr("The observer's place or height is none.");
    case AxViewshedFault::WrongSize:
        return Tr::tr("The radius may be up to %1, and a cell up to the radius.")
            .arg(AxUnits::Length(axWidestViewshed));
    case AxViewshedFault::TooFine:
        return Tr::tr("The cells are too small for this radius: it may have %1 of them.")
            .arg(axMostViewshedCells);
    case AxViewshedFault::NoGround:
        return Tr::tr("The height of the ground below the observer is not known.");
    case AxViewshedFault::Interrupted:
        return Tr::tr("Called off.");
    case AxViewshedFault::None:
        break;
    }
    return {};
}

QVector<AxGeoShape> AxSightShapes(const AxSightLine& line, const QString& name)
{
    AxGeoShape way;
    way.kind = AxGeoShape::Line;
    way.name = name;
    way.points = {line.from.place, line.to.place};
    way.attributes = {
        {QStringLiteral("seen"), QLatin1String(seenFields[static_cast<int>(line.seen)])},
        {QStringLiteral("from_up_m"), Number(line.from.aboveGround)},
        {QStringLiteral("to_up_m"), Number(line.to.aboveGround)},
        {QStringLiteral("from_gnd_m"), Number(line.fromGround)},
        {QStringLiteral("to_gnd_m"), Number(line.toGround)},
        {QStringLiteral("distance_m"), Number(line.distance)},
        {QStringLiteral("needed_m"), Number(line.neededAboveGround)},
        {QStringLiteral("refraction"), Number(line.refraction)},
    };
    if (line.tightest) {
        way.attributes[QStringLiteral("clear_m")] = Number(line.tightest->clearance);
        way.attributes[QStringLiteral("clear_at_m")] = Number(line.tightest->distance);
    }
    if (!line.blockedAt)
        return {way};
    way.attributes[QStringLiteral("blocked_m")] = Number(line.blockedAt->distance);
    AxGeoShape block;
    block.kind = AxGeoShape::Point;
    block.name = Tr::tr("%1: hidden from here on").arg(name);
    block.points = {line.blockedAt->place};
    block.altitude = line.blockedAt->ground;
    return {way, block};
}

AxGeoRaster AxSightRaster(const AxViewshed& viewshed)
{
    const AxViewshedQuestion& asked = viewshed.question;
    AxGeoRaster raster;
    raster.middle = asked.observer;
    raster.columns = raster.rows = viewshed.Side();
    raster.cell = asked.cell;
    raster.values = viewshed.cells;
    // Light and dark as well, for people who cannot tell green from red.
    raster.classes = {{Tr::tr("visible"), {90, 230, 90}},
                      {Tr::tr("hidden"), {170, 30, 40}},
                      {Tr::tr("not known"), {150, 150, 150}}};
    const auto fact = [&raster](const char* key, double value) {
        raster.facts[QLatin1String(key)] = QString::number(value, 'g', 12);
    };
    fact("OBSERVER_LONGITUDE", asked.observer.x());
    fact("OBSERVER_LATITUDE", asked.observer.y());
    fact("OBSERVER_GROUND_M", viewshed.observerGround);
    fact("OBSERVER_ABOVE_GROUND_M", asked.aboveGround);
    fact("TARGET_ABOVE_GROUND_M", asked.targetAboveGround);
    fact("RADIUS_M", asked.radius);
    fact("REFRACTION", asked.refraction);
    return raster;
}
