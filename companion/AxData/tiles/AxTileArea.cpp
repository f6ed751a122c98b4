#include <AxData/tiles/AxTileArea.h>

#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {
constexpr double pi = 3.14159265358979323846;
constexpr double turn = 360.0;

// Web Mercator on the unit square, row 0 in the north (EPSG guidance note 7-2, method 1024).
QPointF OnSquare(const QPointF& place)
{
    const double latitude = std::clamp(place.y(), -axMostTileLatitude, axMostTileLatitude) * pi / 180.0;
    return {place.x() / turn + 0.5, 0.5 - std::asinh(std::tan(latitude)) / (2.0 * pi)};
}

double LatitudeOf(double y)
{
    return std::atan(std::sinh((0.5 - y) * 2.0 * pi)) * 180.0 / pi;
}

bool IsPlace(const QPointF& place)
{
    return std::isfinite(place.x()) && std::isfinite(place.y()) && std::abs(place.x()) <= turn &&
           std::abs(place.y()) <= 90.0;
}

struct Rows
{
    int first;
    int last;
};

// What touches a border is not beyond it, so that what lies in one has no rows: the last is before the first.
Rows RowsOf(double low, double high, int count)
{
    return {std::clamp(static_cast<int>(std::floor(low)), 0, count - 1),
            std::clamp(static_cast<int>(std::ceil(high)) - 1, 0, count - 1)};
}

// Rows below each column: those that an edge touches, and those inside, which the line through the middle of
// the column tells.
void FillRing(const QVector<QPointF>& ring, int firstColumn, std::vector<std::vector<Rows>>& columns,
              int count)
{
    std::vector<std::vector<double>> crossings(columns.size());
    const auto last = static_cast<int>(columns.size()) - 1;
    for (int i = 0; i < ring.size(); ++i) {
        QPointF from = ring[i] * count;
        QPointF to = ring[(i + 1) % ring.size()] * count;
        if (from.x() > to.x())
            std::swap(from, to);
        const bool isUpright = to.x() <= from.x();
        if (isUpright && from.x() == std::floor(from.x()))
            continue;
        const double slope = isUpright ? 0.0 : (to.y() - from.y()) / (to.x() - from.x());
        const auto at = [&](double x) { return from.y() + (x - from.x()) * slope; };
        const int begin = std::clamp(static_cast<int>(std::floor(from.x())) - firstColumn, 0, last);
        const int end = std::clamp(static_cast<int>(std::ceil(to.x())) - 1 - firstColumn, begin, last);
        for (int column = begin; column <= end; ++column) {
            const double west = column + firstColumn;
            const double one = from.x() > west ? from.y() : at(west);
            const double other = to.x() < west + 1.0 ? to.y() : at(west + 1.0);
            const Rows rows = RowsOf(std::min(one, other), std::max(one, other), count);
            if (rows.first <= rows.last)
                columns[static_cast<std::size_t>(column)].push_back(rows);
            const double middle = west + 0.5;
            if (from.x() <= middle && to.x() > middle)
                crossings[static_cast<std::size_t>(column)].push_back(at(middle));
        }
    }
    for (std::size_t column = 0; column < columns.size(); ++column) {
        std::vector<double>& rows = crossings[column];
        std::sort(rows.begin(), rows.end());
        for (std::size_t i = 0; i + 1 < rows.size(); i += 2)
            if (const Rows inside = RowsOf(rows[i], rows[i + 1], count); inside.first <= inside.last)
                columns[column].push_back(inside);
    }
}

double Least(const QVector<QPointF>& ring, double (*of)(const QPointF&))
{
    return of(*std::min_element(ring.begin(), ring.end(),
                                [of](const QPointF& a, const QPointF& b) { return of(a) < of(b); }));
}

struct Box
{
    double west, east, top, bottom;
};

Box BoxOf(const QVector<QPointF>& ring)
{
    return {Least(ring, [](const QPointF& p) { return p.x(); }),
            -Least(ring, [](const QPointF& p) { return -p.x(); }),
            Least(ring, [](const QPointF& p) { return p.y(); }),
            -Least(ring, [](const QPointF& p) { return -p.y(); })};
}

// Steps that FillRing() takes; of a narrow corridor far fewer than the tiles of the box around it.
double StepsOf(const QVector<QPointF>& ring, int count)
{
    double steps = 0.0;
    for (int i = 0; i < ring.size(); ++i)
        steps += std::abs(ring[(i + 1) % ring.size()].x() - ring[i].x()) * count + 1.0;
    return steps;
}

struct Columns
{
    int first;
    int count; ///< no more than there are, and the first one once more where the last ones lie in it
};

Columns ColumnsOf(const Box& box, int count)
{
    const int first = static_cast<int>(std::floor(box.west * count));
    const int last = std::max(first, static_cast<int>(std::ceil(box.east * count)) - 1);
    return {first, std::min(last - first + 1, count + 1)};
}
} // namespace

std::optional<AxTileArea> AxTileArea::OfRectangle(const AxTileBounds& bounds)
{
    if (!IsPlace({bounds.west, bounds.south}) || !IsPlace({bounds.east, bounds.north}) ||
        bounds.south >= bounds.north)
        return {};
    const double width =
        bounds.east > bounds.west ? bounds.east - bounds.west : bounds.east + turn - bounds.west;
    if (width <= 0.0 || width > turn || bounds.east == bounds.west || bounds.south >= axMostTileLatitude ||
        bounds.north <= -axMostTileLatitude)
        return {};
    const double east = bounds.west + width;
    AxTileArea area;
    area.rings += Ring{OnSquare({bounds.west, bounds.south}), OnSquare({east, bounds.south}),
                       OnSquare({east, bounds.north}), OnSquare({bounds.west, bounds.north})};
    return area;
}

std::optional<AxTileArea> AxTileArea::OfRings(const QList<QList<QPointF>>& given)
{
    AxTileArea area;
    for (const QList<QPointF>& points : given) {
        if (points.size() < 3 || !std::all_of(points.begin(), points.end(), &IsPlace))
            return {};
        Ring ring;
        double former = points.constFirst().x();
        for (const QPointF& point : points) {
            former += std::remainder(point.x() - former, turn);
            ring += OnSquare({former, point.y()});
        }
        const double first = points.constFirst().x();
        const double around = former + std::remainder(first - former, turn) - first;
        if (std::abs(around) > turn / 2.0) {
            // Around a pole, the one of its hemisphere: down the pyramid's end and back, a turn long.
            const double pole = std::copysign(
                90.0, std::accumulate(points.begin(), points.end(), 0.0,
                                      [](double sum, const QPointF& p) { return sum + p.y(); }));
            const double last = first + std::copysign(turn, around);
            ring +=
                {OnSquare({last, points.constFirst().y()}), OnSquare({last, pole}), OnSquare({first, pole})};
        }
        area.rings += ring;
    }
    if (area.rings.isEmpty())
        return {};
    return area;
}

std::optional<AxTileArea> AxTileArea::OfText(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    double numbers[4] = {};
    bool isNumber = parts.size() == 4;
    for (int i = 0; isNumber && i < 4; ++i)
        numbers[i] = QLocale::c().toDouble(parts[i].trimmed(), &isNumber);
    if (!isNumber)
        return {};
    return OfRectangle({numbers[0], numbers[1], numbers[2], numbers[3]});
}

AxTileBounds AxTileArea::Bounds() const
{
    if (rings.isEmpty())
        return {};
    Box all = BoxOf(rings.constFirst());
    for (const Ring& ring : rings) {
        Box box = BoxOf(ring);
        // On the turn on which it is nearest to the first.
        const double shift = std::round((all.west + all.east - box.west - box.east) / 2.0);
        all = {std::min(all.west, box.west + shift), std::max(all.east, box.east + shift),
               std::min(all.top, box.top), std::max(all.bottom, box.bottom)};
    }
    AxTileBounds bounds{-180.0, LatitudeOf(all.bottom), 180.0, LatitudeOf(all.top)};
    constexpr double rounding = 1e-9;
    if (all.east - all.west < 1.0 - rounding) {
        const auto longitude = [](double x) { return (x - std::floor(x)) * turn - 180.0; };
        bounds.west = longitude(all.west);
        bounds.east = longitude(all.east);
        if (bounds.east <= -180.0)
            bounds.east = 180.0;
    }
    return bounds;
}

QVector<AxTileRun> AxTileArea::Runs(int level) const
{
    const int count = 1 << level;
    QVector<AxTileRun> runs;
    for (const Ring& ring : rings) {
        const Columns wanted = ColumnsOf(BoxOf(ring), count);
        std::vector<std::vector<Rows>> columns(static_cast<std::size_t>(wanted.count));
        FillRing(ring, wanted.first, columns, count);
        for (int i = 0; i < wanted.count; ++i) {
            const int column = (((wanted.first + i) % count) + count) % count;
            for (const Rows& rows : columns[static_cast<std::size_t>(i)])
                runs += AxTileRun{column, rows.first, rows.last};
        }
    }
    std::sort(runs.begin(), runs.end(), [](const AxTileRun& a, const AxTileRun& b) {
        return a.column != b.column ? a.column < b.column : a.firstRow < b.firstRow;
    });
    QVector<AxTileRun> merged;
    for (const AxTileRun& run : qAsConst(runs)) {
        if (!merged.isEmpty() && merged.constLast().column == run.column &&
            merged.constLast().lastRow + 1 >= run.firstRow)
            merged.last().lastRow = std::max(merged.constLast().lastRow, run.lastRow);
        else
            merged += run;
    }
    return merged;
}

qint64 AxTileArea::Count(int level) const
{
    constexpr double mostSteps = 500000.0;
    const int count = 1 << level;
    qint64 most = 0;
    double steps = 0.0;
    for (const Ring& ring : rings) {
        const Box box = BoxOf(ring);
        steps += StepsOf(ring, count);
        const Rows rows = RowsOf(box.top * count, box.bottom * count, count);
        most += static_cast<qint64>(ColumnsOf(box, count).count) * std::max(0, rows.last - rows.first + 1);
    }
    if (most > axMostTilesCounted && steps > mostSteps)
        return most;
    qint64 tiles = 0;
    for (const AxTileRun& run : Runs(level))
        tiles += run.lastRow - run.firstRow + 1;
    return tiles;
}

qint64 AxTileArea::Count(int firstLevel, int lastLevel) const
{
    qint64 tiles = 0;
    for (int level = firstLevel; level <= lastLevel; ++level)
        tiles += Count(level);
    return tiles;
}

double AxTilePixelMetres(int level, double latitude)
{
    constexpr double equator = 2.0 * pi * 6378137.0;
    constexpr int pixels = 256;
    return equator * std::cos(latitude * pi / 180.0) / pixels / (1 << level);
}
