#include "analysis/volume/AxVolumeGrid.h"

#include <AxAlgorthm/AxAreaMeasure.h>
#include <AxAlgorthm/AxRoundStep.h>
#include <AxData/planner/AxPlanPlane.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace {
constexpr float unknownHeight = std::numeric_limits<float>::quiet_NaN();
constexpr std::size_t mostRimPoints = 4000;
// Between places of the projection that are computed; those in between are off by less than a centimetre.
constexpr double latticeMetres = 400.0;
// From there on longitudes do not go evenly from place to place.
constexpr double nearPole = 85.0;
// Heights are read in strips of columns: files give them in blocks, of which a wide row needs too many.
constexpr int stripColumns = 64;
// Parts of cells that are less are numerical noise.
constexpr double leastShare = 1.0e-9;
// Of a cell: height, kind, base of a surface, difference, class, and its packed pixels.
constexpr double bytesOfCell = 4.0 + 1.0 + 4.0 + 4.0 + 1.0 + 2.0;

struct Box
{
    double west = std::numeric_limits<double>::max();
    double east = std::numeric_limits<double>::lowest();
    double south = std::numeric_limits<double>::max();
    double north = std::numeric_limits<double>::lowest();

    explicit Box(const AxPlanLine& points)
    {
        for (const CAxPoint2D& point : points) {
            west = std::min(west, point.x());
            east = std::max(east, point.x());
            south = std::min(south, point.y());
            north = std::max(north, point.y());
        }
    }
    double Width() const { return east - west; }
    double Depth() const { return north - south; }
};

std::vector<CAxVector3D> PlacesOf(const QList<QPointF>& ring)
{
    std::vector<CAxVector3D> places;
    for (const QPointF& corner : ring)
        places.emplace_back(corner.x(), corner.y(), 0.0);
    return places;
}

bool ArePlaces(const QList<QPointF>& ring)
{
    return ring.size() >= 3 && std::all_of(ring.begin(), ring.end(), [](const QPointF& corner) {
               return std::isfinite(corner.x()) && std::abs(corner.y()) <= 90.0;
           });
}

// Metres; where none is chosen, there is none below.
constexpr double finestCell = 0.1;

/// What the size of cells hangs on.
struct Shape
{
    Box box;
    double breadth = 0.0; // metres: the width of a corridor, half the side of a square

    explicit Shape(const AxPlanLine& ring);
    /// With fewer across, a bank along a corridor is not seen between them.
    double CoarsestCell() const
    {
        constexpr double fewestAcross = 5.0;
        return std::max(finestCell, breadth / fewestAcross);
    }
    double CellsOf(double cell) const
    {
        return std::ceil(box.Width() / cell) * std::ceil(box.Depth() / cell);
    }
};

Shape ShapeOf(const QList<QPointF>& ring)
{
    return Shape(AxPlanPlane(ring).ToPlane(ring));
}

/// Not more, with so many digits as people fill in.
double TwoDigitsBelow(double value)
{
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1.0);
    return std::floor(value / unit) * unit;
}

double CellFor(const AxVolumeQuestion& question, const Shape& shape)
{
    constexpr double cellsAlong = 200.0;
    constexpr double cellsAcross = 10.0;
    if (question.cell != 0.0)
        return question.cell;
    const double side =
        std::min(std::max(shape.box.Width(), shape.box.Depth()) / cellsAlong, shape.breadth / cellsAcross);
    const double cell = side > finestCell ? AxRoundStepBelow(side) : finestCell;
    // A corridor that lies askew has a box that is empty for the most part.
    return shape.CellsOf(cell) > axManyVolumeCells && cell < shape.CoarsestCell()
               ? std::max(cell, TwoDigitsBelow(shape.CoarsestCell()))
               : cell;
}

/// Where places of the plane lie on the globe: computed at a few of them, and evenly in between.
class Lattice
{
public:
    Lattice(const QPointF& around, const AxVolumeGrid& grid)
        : plane({around}), west(grid.West()), south(grid.South()), longitude(around.x()),
          isEven(std::abs(around.y()) <= nearPole)
    {
        if (!isEven)
            return;
        columns = static_cast<int>(-2.0 * west / latticeMetres) + 2;
        const int rows = static_cast<int>(-2.0 * south / latticeMetres) + 2;
        nodes.reserve(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column)
                nodes.push_back(exact(west + column * latticeMetres, south + row * latticeMetres));
    }

    QPointF At(double x, double y) const
    {
        if (!isEven)
            return exact(x, y);
        const double column = std::max(0.0, (x - west) / latticeMetres);
        const double row = std::max(0.0, (y - south) / latticeMetres);
        const auto left = static_cast<std::size_t>(column);
        const auto low = static_cast<std::size_t>(row);
        const double u = column - static_cast<double>(left);
        const double v = row - static_cast<double>(low);
        const QPointF* at = &nodes[low * static_cast<std::size_t>(columns) + left];
        const QPointF* above = at + columns;
        return (at[0] * (1.0 - u) + at[1] * u) * (1.0 - v) + (above[0] * (1.0 - u) + above[1] * u) * v;
    }

private:
    QPointF exact(double x, double y) const
    {
        QPointF place = plane.ToLngLat({x, y});
        // Those beyond the antimeridian go on.
        place.rx() = longitude + std::remainder(place.x() - longitude, 360.0);
        return place;
    }

    AxPlanPlane plane;
    double west;
    double south;
    double longitude;
    bool isEven;
    int columns = 0;
    std::vector<QPointF> nodes;
};

/// What of a ring lies on one side of a line along an axis (Sutherland and Hodgman, Reentrant Polygon
/// Clipping, 1974). Parts that fall apart stay joined by edges on the line, there and back, without area.
template <bool isAlongX> void ClipAt(const AxPlanLine& ring, double at, bool keepsAbove, AxPlanLine& clipped)
{
    clipped.clear();
    const auto along = [](const CAxPoint2D& point) { return isAlongX ? point.x() : point.y(); };
    const auto isKept = [&](const CAxPoint2D& point) {
        return keepsAbove ? along(point) >= at : along(point) <= at;
    };
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const CAxPoint2D& from = ring[i == 0 ? ring.size() - 1 : i - 1];
        const CAxPoint2D& to = ring[i];
        if (isKept(from) != isKept(to)) {
            const double share = (at - along(from)) / (along(to) - along(from));
            CAxPoint2D crossing = AxBetween(from, to, share);
            clipped.push_back(isAlongX ? CAxPoint2D(at, crossing.y()) : CAxPoint2D(crossing.x(), at));
        }
        if (isKept(to))
            clipped.push_back(to);
    }
}

/// Area and middle of a ring by the shoelace formula, around a place near it so that digits are kept.
struct Part
{
    double area = 0.0; // as the ring turns
    double x = 0.0;
    double y = 0.0;
};

Part PartOf(const AxPlanLine& ring, double nearX, double nearY)
{
    double twice = 0.0;
    double momentX = 0.0;
    double momentY = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const CAxPoint2D& a = ring[i == 0 ? ring.size() - 1 : i - 1];
        const CAxPoint2D& b = ring[i];
        const double ax = a.x() - nearX, ay = a.y() - nearY;
        const double bx = b.x() - nearX, by = b.y() - nearY;
        const double cross = ax * by - bx * ay;
        twice += cross;
        momentX += (ax + bx) * cross;
        momentY += (ay + by) * cross;
    }
    if (twice == 0.0)
        return {};
    return {0.5 * twice, nearX + momentX / (3.0 * twice), nearY + momentY / (3.0 * twice)};
}

Shape::Shape(const AxPlanLine& ring) : box(ring)
{
    double perimeter = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i)
        perimeter += AxApart(ring[i == 0 ? ring.size() - 1 : i - 1], ring[i]);
    const double area = std::abs(PartOf(ring, box.west, box.south).area);
    breadth = perimeter > 0.0 ? 2.0 * area / perimeter : 0.0;
}

class Cutter
{
public:
    Cutter(AxVolumeGrid& filled, const AxPlanLine& outline)
        : grid(filled), ring(outline), turn(PartOf(outline, 0.0, 0.0).area < 0.0 ? -1.0 : 1.0)
    {
    }

    /// Tells which cells of a row are inside, and cuts those on the ring. Rows in ascending order.
    void CutRow(int row)
    {
        const double low = grid.South() + row * grid.cell;
        const double high = low + grid.cell;
        ClipAt<false>(ring, low, true, above);
        ClipAt<false>(above, high, false, band);
        isCut.assign(static_cast<std::size_t>(grid.columns), false);
        crossings.clear();
        for (std::size_t i = 0; i < band.size(); ++i)
            takeEdge(band[i == 0 ? band.size() - 1 : i - 1], band[i], low, high);
        std::sort(crossings.begin(), crossings.end());
        std::size_t passed = 0;
        for (int column = 0; column < grid.columns; ++column) {
            const double west = grid.West() + column * grid.cell;
            const double middle = west + 0.5 * grid.cell;
            while (passed < crossings.size() && crossings[passed] < middle)
                ++passed;
            const std::size_t at = static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
                                   static_cast<std::size_t>(column);
            if (isCut[static_cast<std::size_t>(column)])
                cut(at, west, low);
            else if (passed % 2 == 1)
                grid.kinds[at] = AxVolumeGrid::Inside;
        }
    }

private:
    int columnOf(double x) const
    {
        return std::clamp(static_cast<int>(std::floor((x - grid.West()) / grid.cell)), 0, grid.columns - 1);
    }
    void takeEdge(const CAxPoint2D& from, const CAxPoint2D& to, double low, double high)
    {
        // Those that the clipping has made, and the ring's own that lie on the border of a row.
        if ((from.y() == low && to.y() == low) || (from.y() == high && to.y() == high))
            return;
        const int last = columnOf(std::max(from.x(), to.x()));
        for (int column = columnOf(std::min(from.x(), to.x())); column <= last; ++column)
            isCut[static_cast<std::size_t>(column)] = true;
        const double y = 0.5 * (low + high);
        if ((from.y() > y) != (to.y() > y))
            crossings.push_back(from.x() + (to.x() - from.x()) * (y - from.y()) / (to.y() - from.y()));
    }
    void cut(std::size_t at, double west, double low)
    {
        ClipAt<true>(band, west, true, above);
        ClipAt<true>(above, west + grid.cell, false, piece);
        const Part part = PartOf(piece, west + 0.5 * grid.cell, low + 0.5 * grid.cell);
        const double share = turn * part.area / (grid.cell * grid.cell);
        if (!(share > leastShare))
            return;
        grid.kinds[at] = AxVolumeGrid::Edge;
        grid.edges.push_back({at, std::min(1.0, share), std::clamp(part.x, west, west + grid.cell),
                              std::clamp(part.y, low, low + grid.cell)});
    }

    AxVolumeGrid& grid;
    const AxPlanLine& ring;
    double turn;
    AxPlanLine above;
    AxPlanLine band;
    AxPlanLine piece;
    std::vector<bool> isCut;
    std::vector<double> crossings;
};

bool ReadCells(AxVolumeGrid& grid, const Lattice& lattice, const AxHeightAt& ground,
               const AxVolumeProgress& progress)
{
    // Where the next cut cell of each row is among the edges.
    std::vector<std::size_t> next(static_cast<std::size_t>(grid.rows) + 1, 0);
    for (const AxVolumeGrid::EdgeCell& edge : grid.edges)
        ++next[edge.cell / static_cast<std::size_t>(grid.columns) + 1];
    for (std::size_t row = 1; row < next.size(); ++row)
        next[row] += next[row - 1];
    for (int first = 0; first < grid.columns; first += stripColumns) {
        const int past = std::min(grid.columns, first + stripColumns);
        for (int row = 0; row < grid.rows; ++row) {
            const double stripsDone = first + stripColumns * static_cast<double>(row) / grid.rows;
            if (progress && row % stripColumns == 0 && !progress(std::min(1.0, stripsDone / grid.columns)))
                return false;
            for (int column = first; column < past; ++column) {
                const std::size_t at =
                    static_cast<std::size_t>(row) * static_cast<std::size_t>(grid.columns) +
                    static_cast<std::size_t>(column);
                if (grid.kinds[at] == AxVolumeGrid::Outside)
                    continue;
                double x = grid.West() + (column + 0.5) * grid.cell;
                double y = grid.South() + (row + 0.5) * grid.cell;
                if (grid.kinds[at] == AxVolumeGrid::Edge) {
                    const AxVolumeGrid::EdgeCell& edge = grid.edges[next[static_cast<std::size_t>(row)]++];
                    x = edge.x;
                    y = edge.y;
                }
                const QPointF place = lattice.At(x, y);
                if (const auto height = ground(place.x(), place.y()); height && std::isfinite(*height))
                    grid.heights[at] = static_cast<float>(*height);
            }
        }
    }
    return true;
}

bool ReadRim(AxVolumeGrid& grid, const std::vector<AxPathPlace>& places, const AxPlanLine& ring,
             const AxHeightAt& ground, const AxVolumeProgress& progress)
{
    grid.rim.reserve(ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i) {
        // A service may take its time with each of them.
        if (progress && !progress(0.0))
            return false;
        const CAxPoint2D& before = ring[i == 0 ? ring.size() - 1 : i - 1];
        const CAxPoint2D& after = ring[(i + 1) % ring.size()];
        const std::optional<double> height = ground(places[i].longitude, places[i].latitude);
        const bool isKnown = height && std::isfinite(*height);
        grid.rim.push_back({ring[i].x(), ring[i].y(),
                            isKnown ? *height : std::numeric_limits<double>::quiet_NaN(),
                            0.5 * (AxApart(before, ring[i]) + AxApart(ring[i], after))});
    }
    return true;
}

AxVolumeGrid Failed(AxVolumeFault fault)
{
    AxVolumeGrid grid;
    grid.fault = fault;
    return grid;
}
} // namespace

double AxVolumeCellOf(const QList<QPointF>& ring)
{
    return ArePlaces(ring) ? CellFor({ring}, ShapeOf(ring)) : 0.0;
}

double AxCoarsestVolumeCellOf(const QList<QPointF>& ring)
{
    return ArePlaces(ring) ? ShapeOf(ring).CoarsestCell() : 0.0;
}

AxVolumeSize AxVolumeSizeOf(const AxVolumeQuestion& question)
{
    if (!ArePlaces(question.ring))
        return {};
    constexpr double bytesOfMegabyte = 1.0e6;
    const Shape shape = ShapeOf(question.ring);
    const double cells = shape.CellsOf(CellFor(question, shape));
    return {cells, cells * bytesOfCell / bytesOfMegabyte};
}

AxVolumeFault AxVolumeFaultOf(const AxVolumeQuestion& question)
{
    if (!ArePlaces(question.ring))
        return AxVolumeFault::NoArea;
    const AxAreaFigures figures = AxMeasureArea(PlacesOf(question.ring));
    if (figures.isCrossed || !(figures.area > 0.0))
        return AxVolumeFault::NoArea;
    const Shape shape = ShapeOf(question.ring);
    if (std::hypot(shape.box.Width(), shape.box.Depth()) > 2.0 * axWidestVolume)
        return AxVolumeFault::TooLarge;
    if (!std::isfinite(question.cell) || question.cell < 0.0 || !std::isfinite(question.height))
        return AxVolumeFault::WrongNumber;
    // The coarsest is told, and may be filled in with what its digits leave out.
    constexpr double slack = 1.0 + 1.0e-6;
    if (question.cell > slack * shape.CoarsestCell())
        return AxVolumeFault::Coarse;
    const double cells = AxVolumeSizeOf(question).cells;
    if (!(cells <= axMostVolumeCells))
        return AxVolumeFault::TooMany;
    return cells > axManyVolumeCells && !question.mayBeLarge ? AxVolumeFault::Many : AxVolumeFault::None;
}

AxVolumeGrid AxVolumeGridOf(const AxVolumeQuestion& question, const AxHeightAt& ground,
                            const AxVolumeProgress& progress)
{
    const AxVolumeFault fault = AxVolumeFaultOf(question);
    if (fault != AxVolumeFault::None || !ground)
        return Failed(fault == AxVolumeFault::None ? AxVolumeFault::NoGround : fault);
    // Around the middle of the box, where the cells' own middle is to be.
    const Shape shape = ShapeOf(question.ring);
    const Box& box = shape.box;
    AxVolumeGrid grid;
    grid.middle =
        AxPlanPlane(question.ring).ToLngLat({0.5 * (box.west + box.east), 0.5 * (box.south + box.north)});
    grid.cell = CellFor(question, shape);
    std::vector<CAxVector3D> closed = PlacesOf(question.ring);
    closed.push_back(closed.front());
    std::vector<AxPathPlace> places = AxPlacesAlong(closed, grid.cell, mostRimPoints);
    places.pop_back();
    const AxPlanPlane plane({grid.middle});
    AxPlanLine ring;
    for (const AxPathPlace& place : places)
        ring.push_back(plane.ToPlane(QPointF(place.longitude, place.latitude)));
    // It is as wide to both sides of the middle; a little more than the ring, which then ends within cells.
    const Box around(ring);
    const auto cellsOver = [&](double low, double high) {
        constexpr double more = 1.0e-6;
        return std::max(1, static_cast<int>(std::ceil(2.0 * std::max(-low, high) / grid.cell + more)));
    };
    grid.columns = cellsOver(around.west, around.east);
    grid.rows = cellsOver(around.south, around.north);
    const std::size_t cells = static_cast<std::size_t>(grid.columns) * static_cast<std::size_t>(grid.rows);
    grid.kinds.assign(cells, AxVolumeGrid::Outside);
    grid.heights.assign(cells, unknownHeight);

    constexpr double partOfCutting = 0.1;
    Cutter cutter(grid, ring);
    for (int row = 0; row < grid.rows; ++row) {
        if (progress && !progress(partOfCutting * row / grid.rows))
            return Failed(AxVolumeFault::Interrupted);
        cutter.CutRow(row);
    }
    const auto tell = [&](double done) {
        return !progress || progress(partOfCutting + (1.0 - partOfCutting) * done);
    };
    if (!ReadRim(grid, places, ring, ground, tell) ||
        !ReadCells(grid, Lattice(grid.middle, grid), ground, tell))
        return Failed(AxVolumeFault::Interrupted);
    return grid;
}
