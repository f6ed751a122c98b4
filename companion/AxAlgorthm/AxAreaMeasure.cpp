#include <AxAlgorthm/AxAreaMeasure.h>
#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxCoordinate.h>

#include <GeographicLib/AzimuthalEquidistant.hpp>
#include <GeographicLib/Geocentric.hpp>
#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/Math.hpp>
#include <GeographicLib/PolygonArea.hpp>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <utility>

namespace {
using GeographicLib::AzimuthalEquidistant;
using GeographicLib::Geocentric;
using GeographicLib::Geodesic;

constexpr double farthestFromMiddle = 5.0e5; // metres
constexpr double longestSide = 5.0e5;        // metres
constexpr double levelDegrees = 1.0e-6;
// Geodesics are straight between points so near to each other, in the plane in which the grid lies.
constexpr double straightMetres = 5000.0;
constexpr std::size_t mostCorners = 2000;
constexpr std::size_t enoughCells = 100;
constexpr int mostHalvings = 6;
constexpr double fewestLooks = 4.0; // along a side

constexpr double degree()
{
    return 3.14159265358979323846 / 180.0;
}

struct Vector
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

Vector operator+(const Vector& a, const Vector& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

Vector operator-(const Vector& a, const Vector& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

double Dot(const Vector& a, const Vector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector Cross(const Vector& a, const Vector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double Length(const Vector& a)
{
    return std::sqrt(Dot(a, a));
}

Vector NormalOf(const CAxVector3D& place)
{
    const double longitude = place.x() * degree();
    const double latitude = place.y() * degree();
    return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude),
            std::sin(latitude)};
}

bool AreCrossed(const Vector& a, const Vector& b, const Vector& c, const Vector& d)
{
    const Vector ab = Cross(a, b);
    const Vector cd = Cross(c, d);
    if (!(Dot(ab, c) * Dot(ab, d) < 0.0) || !(Dot(cd, a) * Dot(cd, b) < 0.0))
        return false;
    // Both great circles meet in two opposite points.
    const Vector meeting = Cross(ab, cd);
    return Dot(meeting, a + b) * Dot(meeting, c + d) > 0.0;
}

bool IsCrossed(const std::vector<CAxVector3D>& ring)
{
    std::vector<Vector> normals;
    std::transform(ring.begin(), ring.end(), std::back_inserter(normals), NormalOf);
    const std::size_t count = normals.size();
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t j = i + 2; j < count; ++j)
            if (!(i == 0 && j + 1 == count) &&
                AreCrossed(normals[i], normals[i + 1], normals[j], normals[(j + 1) % count]))
                return true;
    return false;
}

std::vector<CAxVector3D> OnGlobe(const std::vector<CAxVector3D>& places)
{
    std::vector<CAxVector3D> usable;
    std::copy_if(places.begin(), places.end(), std::back_inserter(usable), [](const CAxVector3D& place) {
        return std::isfinite(place.x()) && std::abs(place.y()) <= 90.0;
    });
    return usable;
}

// The plane around the middle of some places, metres to the east and to the north there.
class LocalPlane
{
public:
    // False where there is no middle, or a place is too far from it.
    bool Set(const std::vector<CAxVector3D>& places, double farthest)
    {
        Vector sum;
        for (const CAxVector3D& place : places)
            sum = sum + NormalOf(place);
        if (!(Length(sum) > 1.0e-6 * double(places.size())))
            return false;
        latitude = std::atan2(sum.z, std::hypot(sum.x, sum.y)) / degree();
        longitude = std::atan2(sum.y, sum.x) / degree();
        return std::all_of(places.begin(), places.end(), [this, farthest](const CAxVector3D& place) {
            const CAxPoint2D at = From(place.x(), place.y());
            return std::hypot(at.x(), at.y()) <= farthest;
        });
    }
    CAxPoint2D From(double lng, double lat) const
    {
        double x = 0.0;
        double y = 0.0;
        projection.Forward(latitude, longitude, lat, lng, x, y);
        return {x, y};
    }
    // Longitude and latitude.
    CAxPoint2D To(double x, double y) const
    {
        double lat = 0.0;
        double lng = 0.0;
        projection.Reverse(latitude, longitude, x, y, lat, lng);
        return {lng, lat};
    }

private:
    AzimuthalEquidistant projection{Geodesic::WGS84()};
    double latitude = 0.0;
    double longitude = 0.0;
};

struct Grid
{
    double west = 0.0; // metres in the plane
    double south = 0.0;
    double east = 0.0;
    double north = 0.0;
    double cell = 0.0;
    std::size_t columns = 0;
    std::size_t rows = 0;

    void Divide(double size)
    {
        cell = size;
        columns = static_cast<std::size_t>(std::ceil((east - west) / cell));
        rows = static_cast<std::size_t>(std::ceil((north - south) / cell));
    }
};

// From where to where the middles of cells of a row are inside, columns first to past the last.
std::vector<std::pair<std::size_t, std::size_t>> RunsInside(const Grid& grid, std::size_t row,
                                                            const std::vector<CAxPoint2D>& ring)
{
    const double y = grid.south + (double(row) + 0.5) * grid.cell;
    std::vector<double> crossings;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const CAxPoint2D& a = ring[i];
        const CAxPoint2D& b = ring[(i + 1) % ring.size()];
        if ((a.y() > y) != (b.y() > y))
            crossings.push_back(a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()));
    }
    std::sort(crossings.begin(), crossings.end());
    std::vector<std::pair<std::size_t, std::size_t>> runs;
    const auto column = [&grid](double x) {
        const double at = std::ceil((x - grid.west) / grid.cell - 0.5);
        return static_cast<std::size_t>(std::clamp(at, 0.0, double(grid.columns)));
    };
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
        if (column(crossings[i]) < column(crossings[i + 1]))
            runs.emplace_back(column(crossings[i]), column(crossings[i + 1]));
    return runs;
}

std::size_t CellsInside(const Grid& grid, const std::vector<CAxPoint2D>& ring)
{
    std::size_t count = 0;
    for (std::size_t row = 0; row < grid.rows; ++row)
        for (const auto& [first, past] : RunsInside(grid, row, ring))
            count += past - first;
    return count;
}

// A corner of cells, geocentric: on the ground, and on the ellipsoid below.
struct Corner
{
    bool isRead = false;
    Vector ground;
    Vector below;
};

class CornerRow
{
public:
    CornerRow(const Grid& ofGrid, std::size_t row, const LocalPlane& ofPlane)
        : grid(ofGrid), plane(ofPlane), y(ofGrid.south + double(row) * ofGrid.cell),
          corners(ofGrid.columns + 1)
    {
    }
    // Null where the height is not known.
    const Corner* At(std::size_t column, const AxHeightAt& height)
    {
        Corner& corner = corners[column];
        if (corner.isRead)
            return &corner;
        const CAxPoint2D at = plane.get().To(grid.get().west + double(column) * grid.get().cell, y);
        const std::optional<double> altitude = height(at.x(), at.y());
        if (!altitude || !std::isfinite(*altitude))
            return nullptr;
        for (const bool isGround : {true, false}) {
            Vector& to = isGround ? corner.ground : corner.below;
            Geocentric::WGS84().Forward(at.y(), at.x(), isGround ? *altitude : 0.0, to.x, to.y, to.z);
        }
        corner.isRead = true;
        return &corner;
    }

private:
    std::reference_wrapper<const Grid> grid;
    std::reference_wrapper<const LocalPlane> plane;
    double y;
    std::vector<Corner> corners;
};

double OfTriangle(const Vector& a, const Vector& b, const Vector& c)
{
    return 0.5 * Length(Cross(b - a, c - a));
}

// How many square metres of ground there are on one of the ellipsoid; NaN where heights are missing.
double GroundRatio(const Grid& grid, const std::vector<CAxPoint2D>& ring, const LocalPlane& plane,
                   const AxHeightAt& height, const std::atomic<bool>* isOff)
{
    double onGround = 0.0;
    double below = 0.0;
    CornerRow lower(grid, 0, plane);
    for (std::size_t row = 0; row < grid.rows; ++row) {
        CornerRow upper(grid, row + 1, plane);
        for (const auto& [first, past] : RunsInside(grid, row, ring)) {
            for (std::size_t column = first; column < past; ++column) {
                if (isOff && *isOff)
                    return AxPathLeg::unknown;
                const Corner* const sw = lower.At(column, height);
                const Corner* const se = lower.At(column + 1, height);
                const Corner* const nw = upper.At(column, height);
                const Corner* const ne = upper.At(column + 1, height);
                if (!sw || !se || !nw || !ne)
                    return AxPathLeg::unknown;
                onGround += OfTriangle(sw->ground, se->ground, ne->ground) +
                            OfTriangle(sw->ground, ne->ground, nw->ground);
                below +=
                    OfTriangle(sw->below, se->below, ne->below) + OfTriangle(sw->below, ne->below, nw->below);
            }
        }
        lower = std::move(upper);
    }
    return onGround / below; // NaN where no cell is inside
}

void MeasureGround(AxAreaFigures& figures, const std::vector<CAxVector3D>& ring, const AxPathGround& ground,
                   const std::atomic<bool>* isOff)
{
    LocalPlane plane;
    if (!ground.height || ground.most < 1 || !plane.Set(ring, farthestFromMiddle))
        return;
    std::vector<CAxVector3D> closed = ring;
    closed.push_back(ring.front());
    std::vector<CAxPoint2D> corners;
    for (const AxPathPlace& place : AxPlacesAlong(closed, straightMetres, mostCorners))
        corners.push_back(plane.From(place.longitude, place.latitude));
    Grid grid;
    const auto [west, east] =
        std::minmax_element(corners.begin(), corners.end(),
                            [](const CAxPoint2D& a, const CAxPoint2D& b) { return a.x() < b.x(); });
    const auto [south, north] =
        std::minmax_element(corners.begin(), corners.end(),
                            [](const CAxPoint2D& a, const CAxPoint2D& b) { return a.y() < b.y(); });
    grid.west = west->x();
    grid.east = east->x();
    grid.south = south->y();
    grid.north = north->y();
    const double box = (grid.east - grid.west) * (grid.north - grid.south);
    if (!(box > 0.0) || !(ground.step > 0.0))
        return;
    grid.Divide(std::max(ground.step, std::sqrt(box / double(ground.most))));
    // Small and narrow rings take finer cells than the steps.
    for (int i = 0; i < mostHalvings && CellsInside(grid, corners) < std::min(enoughCells, ground.most / 4);
         ++i)
        grid.Divide(grid.cell / 2.0);
    const double ratio = GroundRatio(grid, corners, plane, ground.height, isOff);
    if (!std::isfinite(ratio))
        return;
    figures.overGround = figures.area * ratio;
    figures.step = grid.cell;
}
} // namespace

AxAreaFigures AxMeasureArea(const std::vector<CAxVector3D>& places, const AxPathGround& ground,
                            const std::atomic<bool>* isOff)
{
    AxAreaFigures figures;
    const std::vector<CAxVector3D> ring = OnGlobe(places);
    if (ring.size() < 2)
        return figures;
    GeographicLib::PolygonArea polygon(Geodesic::WGS84());
    for (const CAxVector3D& place : ring)
        polygon.AddPoint(place.y(), place.x());
    double area = 0.0;
    polygon.Compute(false, true, figures.perimeter, area);
    figures.isCrossed = IsCrossed(ring);
    if (ring.size() < 3 || figures.isCrossed)
        return figures;
    figures.area = std::abs(area);
    MeasureGround(figures, ring, ground, isOff);
    return figures;
}

AxPlaneFigures AxMeasurePlane(const std::array<CAxVector3D, 4>& corners, const AxPathGround& ground,
                              const std::atomic<bool>* isOff)
{
    AxPlaneFigures figures;
    const std::vector<CAxVector3D> ring(corners.begin(), corners.end());
    if (OnGlobe(ring).size() != ring.size())
        return figures;
    figures.width = DistanceBetweenTwoLatLng(corners[0], corners[1]);
    figures.depth = DistanceBetweenTwoLatLng(corners[1], corners[2]);
    figures.area = AxMeasureArea(ring).area;
    LocalPlane plane;
    if (!ground.height || std::max(figures.width, figures.depth) > longestSide ||
        !plane.Set(ring, longestSide))
        return figures;

    CAxPoint2D at[4];
    for (std::size_t i = 0; i < 4; ++i)
        at[i] = plane.From(corners[i].x(), corners[i].y());
    const double finest =
        std::max(ground.step, std::sqrt(figures.width * figures.depth / double(ground.most)));
    const auto looks = [finest, &ground](double side) {
        const double most = std::max(fewestLooks, std::floor(std::sqrt(double(ground.most))));
        return static_cast<int>(
            std::clamp(std::ceil(side / finest), fewestLooks, std::max(most, 4.0 * fewestLooks)));
    };
    const int columns = looks(figures.width);
    const int rows = looks(figures.depth);

    // Looks are the middles of equal parts, so their sums lead to the plane without a matrix to turn: along
    // both sides from the middle, u and v, which are orthogonal in these sums.
    double base = AxPathLeg::unknown;
    double sum = 0.0;
    double sumU = 0.0;
    double sumV = 0.0;
    double sumUU = 0.0;
    double sumVV = 0.0;
    double sumSquares = 0.0;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (isOff && *isOff)
                return figures;
            const double u = (column + 0.5) / columns - 0.5;
            const double v = (row + 0.5) / rows - 0.5;
            const auto mix = [u, v](double a, double b, double c, double d) {
                return ((0.5 - u) * a + (0.5 + u) * b) * (0.5 - v) +
                       ((0.5 - u) * d + (0.5 + u) * c) * (0.5 + v);
            };
            const CAxPoint2D place = plane.To(mix(at[0].x(), at[1].x(), at[2].x(), at[3].x()),
                                              mix(at[0].y(), at[1].y(), at[2].y(), at[3].y()));
            const std::optional<double> height = ground.height(place.x(), place.y());
            if (!height || !std::isfinite(*height))
                return figures;
            if (std::isnan(base))
                base = *height; // so that squares keep their digits
            const double above = *height - base;
            sum += above;
            sumU += u * above;
            sumV += v * above;
            sumUU += u * u;
            sumVV += v * v;
            sumSquares += above * above;
        }
    }
    const double count = double(columns) * rows;
    const double perU = sumU / sumUU;
    const double perV = sumV / sumVV;
    // Of a plane with these rises along the sides; x to the east, y to the north.
    const double ux = 0.5 * (at[1].x() - at[0].x() + at[2].x() - at[3].x());
    const double uy = 0.5 * (at[1].y() - at[0].y() + at[2].y() - at[3].y());
    const double vx = 0.5 * (at[3].x() - at[0].x() + at[2].x() - at[1].x());
    const double vy = 0.5 * (at[3].y() - at[0].y() + at[2].y() - at[1].y());
    const double turned = ux * vy - uy * vx;
    if (!(std::abs(turned) > 0.0))
        return figures;
    const double east = (perU * vy - perV * uy) / turned;
    const double north = (perV * ux - perU * vx) / turned;
    const double slope = std::hypot(east, north);
    figures.dip = std::atan(slope) / degree();
    if (figures.dip > levelDegrees)
        figures.aspect = std::fmod(std::atan2(-east, -north) / degree() + 360.0, 360.0);
    figures.onPlane = figures.area * std::sqrt(1.0 + slope * slope);
    const double mean = sum / count;
    const double residual = sumSquares - count * mean * mean - perU * sumU - perV * sumV;
    figures.roughness = std::sqrt(std::max(0.0, residual) / count);
    figures.step = std::max(figures.width / columns, figures.depth / rows);
    return figures;
}

std::array<CAxVector3D, 4> AxRectangleOver(const CAxVector3D& from, const CAxVector3D& to, double bearing)
{
    const Geodesic& earth = Geodesic::WGS84();
    double distance = 0.0;
    double azimuth = 0.0;
    double atEnd = 0.0;
    earth.Inverse(from.y(), from.x(), to.y(), to.x(), distance, azimuth, atEnd);
    const double angle = (azimuth - bearing) * degree();
    const double along = distance * std::cos(angle);
    const double across = distance * std::sin(angle);
    const double middle = 0.5 * (from.z() + to.z());
    const auto corner = [&](double metres, double direction) {
        double latitude = 0.0;
        double longitude = 0.0;
        earth.Direct(from.y(), from.x(), direction, metres, latitude, longitude);
        return CAxVector3D(longitude, latitude, middle);
    };
    return {from, corner(along, bearing), to, corner(across, bearing + 90.0)};
}
