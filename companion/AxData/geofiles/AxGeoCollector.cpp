#include <AxData/geofiles/AxGeoCollector.h>
#include <AxData/geofiles/AxGeoSimplify.h>
#include <AxData/geofiles/AxGeoText.h>

#include <ogr_geometry.h>

#include <algorithm>
#include <cmath>

namespace {
constexpr int mostNotes = 100;
constexpr int deepest = 32;
/// Beyond it nobody draws a strip or a circle.
constexpr double mostMetres = 100000.0;

double AltitudeOf(const OGRLineString& line)
{
    if (!line.Is3D() || line.getNumPoints() == 0)
        return std::numeric_limits<double>::quiet_NaN();
    const double first = line.getZ(0);
    for (int i = 1; i < line.getNumPoints(); ++i)
        if (line.getZ(i) != first)
            return std::numeric_limits<double>::infinity();
    return std::isfinite(first) ? first : std::numeric_limits<double>::quiet_NaN();
}

/// Takes a width or radius out of the fields; NaN without one. False for one that is none.
bool TakeMetres(QMap<QString, QString>& attributes, const char* key, double& metres)
{
    metres = std::numeric_limits<double>::quiet_NaN();
    const QString text = attributes.take(QLatin1String(key)).trimmed();
    if (text.isEmpty())
        return true;
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !(value >= 0.0 && value <= mostMetres))
        return false;
    metres = value;
    return true;
}

bool IsClosed(const OGRLineString& line)
{
    return line.getNumPoints() > 3 && line.get_IsClosed();
}
} // namespace

bool AxGeoCollector::Add(const OGRGeometry* geometry, const AxGeoSystem& system, const AxGeoFeature& feature)
{
    if (!geometry || geometry->IsEmpty()) {
        ++empty;
        return true;
    }
    std::unique_ptr<OGRGeometry> straight;
    if (geometry->hasCurveGeometry()) {
        ++curved;
        straight.reset(geometry->getLinearGeometry());
        if (!straight) {
            leaveOut(feature, AX_GEO_TEXT("its curves cannot be made lines"));
            return true;
        }
        geometry = straight.get();
    }
    measured += geometry->IsMeasured() ? 1 : 0;
    std::vector<Part> parts;
    split(*geometry, 0, parts);
    if (parts.empty())
        ++empty;
    bool isCut = false;
    const QString name = AxGeoOneLine(feature.name, isCut);
    cutNames += isCut ? 1 : 0;
    if (parts.size() > 1)
        note(AX_GEO_TEXT("%1 has %2 parts; each is a shape of its own.")
                 .arg(feature.where, QString::number(parts.size())));
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (feature.isClosedLineArea && parts[i].line && IsClosed(*parts[i].line))
            parts[i].kind = AxGeoShape::Area;
        const QString numbered = parts.size() > 1 ? name + QLatin1Char(' ') + QString::number(i + 1) : name;
        if (!add(parts[i], numbered, system, feature))
            return false;
    }
    return true;
}

void AxGeoCollector::split(const OGRGeometry& geometry, int depth, std::vector<Part>& parts)
{
    if (depth > deepest) {
        ++nested;
        return;
    }
    if (geometry.IsEmpty())
        return;
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint: {
        const OGRPoint* point = geometry.toPoint();
        parts.push_back({AxGeoShape::Point, nullptr, nullptr, QPointF(point->getX(), point->getY()),
                         point->Is3D() ? point->getZ() : std::numeric_limits<double>::quiet_NaN()});
        return;
    }
    case wkbLineString:
        parts.push_back(
            {AxGeoShape::Line, geometry.toLineString(), nullptr, {}, AltitudeOf(*geometry.toLineString())});
        return;
    case wkbPolygon:
    case wkbTriangle:
        parts.push_back({AxGeoShape::Area,
                         geometry.toPolygon()->getExteriorRing(),
                         geometry.toPolygon(),
                         {},
                         AltitudeOf(*geometry.toPolygon()->getExteriorRing())});
        return;
    case wkbPolyhedralSurface:
    case wkbTIN:
        for (const auto* face : geometry.toPolyhedralSurface())
            split(*face, depth + 1, parts);
        return;
    default:
        break;
    }
    if (OGR_GT_IsSubClassOf(wkbFlatten(geometry.getGeometryType()), wkbGeometryCollection))
        for (const auto* member : geometry.toGeometryCollection())
            split(*member, depth + 1, parts);
}

bool AxGeoCollector::add(const Part& part, const QString& name, const AxGeoSystem& system,
                         const AxGeoFeature& feature)
{
    if (!goesOn())
        return end({});
    AxGeoShape shape;
    shape.kind = part.kind;
    shape.name = name;
    shape.layer = feature.layer;
    shape.attributes = feature.attributes;
    if (std::isinf(part.altitude))
        ++uneven;
    else if (feature.heights == AxGeoFeature::Heights::OverGround)
        overGround += std::isfinite(part.altitude) && part.altitude != 0.0 ? 1 : 0;
    else if (feature.heights != AxGeoFeature::Heights::Unused &&
             (feature.heights != AxGeoFeature::Heights::UnlessZero || part.altitude != 0.0))
        shape.altitude = part.altitude;
    if (part.kind == AxGeoShape::Point && std::isnan(shape.altitude))
        shape.altitude = feature.altitude;
    if (!TakeMetres(shape.attributes, "left_m", shape.leftWidth) ||
        !TakeMetres(shape.attributes, "right_m", shape.rightWidth) ||
        !TakeMetres(shape.attributes, "radius_m", shape.radius))
        note(AX_GEO_TEXT("%1: its width or radius is no length and is not taken over.").arg(feature.where));
    if (part.point) {
        const auto place = onGlobe({part.point->x()}, {part.point->y()}, system, feature);
        if (!place)
            return !isOver;
        shape.points = {place->front()};
    } else {
        const auto line = places(*part.line, part.kind == AxGeoShape::Area, system, feature);
        if (!line)
            return !isOver;
        shape.points = *line;
    }
    const int holes = part.polygon ? part.polygon->getNumInteriorRings() : 0;
    for (int i = 0; i < holes; ++i) {
        AxGeoFeature inside; // the area itself is there
        inside.where = AX_GEO_TEXT("Hole %1 of %2").arg(QString::number(i + 1), feature.where);
        const auto hole = places(*part.polygon->getInteriorRing(i), true, system, inside);
        if (isOver)
            return false;
        if (hole)
            shape.holes += *hole;
    }
    holed += shape.holes.isEmpty() ? 0 : 1;
    content.shapes += shape;
    if (content.shapes.size() > options.mostShapes)
        return end((options.arePointsWanted ? AX_GEO_TEXT("The file has more than %1 points.")
                                            : AX_GEO_TEXT("The file has more than %1 shapes."))
                       .arg(options.mostShapes));
    return true;
}

std::optional<QList<QPointF>> AxGeoCollector::places(const OGRLineString& line, bool isRing,
                                                     const AxGeoSystem& system, const AxGeoFeature& feature)
{
    const auto count = std::size_t(line.getNumPoints());
    points += int(count);
    if (points > options.mostPointsOfAll) {
        end(AX_GEO_TEXT("The file has more than %1 points.").arg(options.mostPointsOfAll));
        return {};
    }
    std::vector<double> x(count);
    std::vector<double> y(count);
    line.getPoints(x.data(), sizeof(double), y.data(), sizeof(double));
    auto found = onGlobe(std::move(x), std::move(y), system, feature);
    if (!found)
        return {};
    std::vector<QPointF>& kept = *found;
    const auto isSame = [](const QPointF& a, const QPointF& b) { return a.x() == b.x() && a.y() == b.y(); };
    kept.erase(std::unique(kept.begin(), kept.end(), isSame), kept.end());
    while (isRing && kept.size() > 1 && isSame(kept.front(), kept.back()))
        kept.pop_back();
    if (kept.size() > std::size_t(options.mostPoints)) {
        // Around the globe if need be, so that no step is half of it.
        for (std::size_t i = 1; i < kept.size(); ++i)
            kept[i].rx() = kept[i - 1].x() + std::remainder(kept[i].x() - kept[i - 1].x(), 360.0);
        double tolerance = std::max(options.tolerance, 0.001);
        const std::size_t before = kept.size();
        kept = AxGeoSimplified(kept, isRing, std::max(options.mostPoints, 4), tolerance, goesOn);
        if (kept.empty()) {
            end({});
            return {};
        }
        for (QPointF& place : kept)
            place.setX(std::remainder(place.x(), 360.0));
        note(AX_GEO_TEXT("%1: simplified from %2 to %3 points; what was left out lies within %4 m of it.")
                 .arg(feature.where, QString::number(before), QString::number(kept.size()),
                      QString::number(tolerance)));
    }
    const std::size_t fewest = isRing ? 3 : 2;
    if (kept.size() < fewest) {
        leaveOut(feature, isRing ? AX_GEO_TEXT("a ring has fewer than three different points")
                                 : AX_GEO_TEXT("a line has fewer than two different points"));
        return {};
    }
    QList<QPointF> list;
    list.reserve(int(kept.size()));
    for (const QPointF& place : kept)
        list += place;
    return list;
}

std::optional<std::vector<QPointF>> AxGeoCollector::onGlobe(std::vector<double> x, std::vector<double> y,
                                                            const AxGeoSystem& system,
                                                            const AxGeoFeature& feature)
{
    for (std::size_t i = 0; i < x.size(); ++i)
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) {
            leaveOut(feature, AX_GEO_TEXT("a coordinate of point %1 is no number").arg(i + 1));
            return {};
        }
    system.ToDegrees(x, y);
    std::vector<QPointF> places;
    places.reserve(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (!(std::abs(y[i]) <= 90.0 && std::abs(x[i]) <= 360.0)) {
            if (system.IsGuessed()) {
                content.isSystemMissing = true;
                end(AX_GEO_TEXT("The file does not say which coordinate system it uses, and its coordinates "
                                "are no degrees. Choose the system."));
            } else {
                leaveOut(feature, AX_GEO_TEXT("point %1 is not on the globe: longitude %2, latitude %3")
                                      .arg(i + 1)
                                      .arg(x[i])
                                      .arg(y[i]));
            }
            return {};
        }
        places.emplace_back(std::abs(x[i]) > 180.0 ? std::remainder(x[i], 360.0) : x[i], y[i]);
    }
    return places;
}

void AxGeoCollector::Finish()
{
    const struct
    {
        int count;
        QString text;
    } counted[] = {
        {holed, AX_GEO_TEXT("Areas with holes: %1.")},
        {empty, AX_GEO_TEXT("Features without a geometry, which are left out: %1.")},
        {curved, AX_GEO_TEXT("Features whose curves are now lines: %1.")},
        {measured, AX_GEO_TEXT("Features whose measures (M) are not taken over: %1.")},
        {uneven, AX_GEO_TEXT("Shapes whose heights differ from point to point and are not taken over: %1.")},
        {overGround, AX_GEO_TEXT("Heights above the ground that are not taken over: %1.")},
        {nested, AX_GEO_TEXT("Collections that lie too deep in others and are left out: %1.")},
        {cutNames, AX_GEO_TEXT("Names that are cut to 200 characters: %1.")},
        {notesLeftOut, AX_GEO_TEXT("Further notes of this kind: %1.")},
    };
    for (const auto& one : counted)
        if (one.count > 0)
            content.notes += one.text.arg(one.count);
}

void AxGeoCollector::leaveOut(const AxGeoFeature& feature, const QString& why)
{
    note(AX_GEO_TEXT("%1 is left out: %2.").arg(feature.where, why));
}

void AxGeoCollector::note(const QString& text)
{
    if (content.notes.size() < mostNotes)
        content.notes += text;
    else
        ++notesLeftOut;
}

bool AxGeoCollector::end(const QString& fault)
{
    isOver = true;
    if (content.fault.isEmpty())
        content.fault = fault;
    return false;
}
