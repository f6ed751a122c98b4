#include "host/tasks/CoverageReport.h"

#include <AxAlgorthm/AxMath.h>
#include <AxData/planner/AxPlanCoverage.h>
#include <AxData/planner/AxPlanPlane.h>

#include <osg/CoordinateSystemNode>

#include <QPolygonF>
#include <QRectF>

#include <algorithm>
#include <cmath>

const QColor coverageUnknownLight(0xb8, 0xb8, 0xb8);
const QColor coverageUnknownDark(0x60, 0x60, 0x60);

namespace {
// In the box around the area; each asks for a height.
constexpr double mostCells = 300000.0;
// Along a side of a picture; what every graphics adapter takes.
constexpr double mostPixels = 4096.0;
// Whether a photo shows a cell.
constexpr double mostTests = 5e7;
constexpr double smallestCell = 0.5; // metres
// As long as from straight above is the picture of a tilted lens, or so.
constexpr double tilted = 1.5;
// Of unknown ground, so many across the area and of three cells at least.
constexpr int stripesAcross = 40;
// Places of the ground below the picture along its longer side, and how far apart they are at least, metres.
constexpr double mostPlaces = 96.0;
constexpr double closestPlaces = 10.0;

QRectF BoxAround(const AxPlanLine& ring)
{
    QPolygonF points;
    for (const CAxPoint2D& point : ring)
        points += QPointF(point.x(), point.y());
    return points.boundingRect();
}

double CellFor(const ShownPlan& shown, const QRectF& box)
{
    const AxPlanFigures& figures = shown.plan.figures;
    const AxPlanCamera& camera = shown.request.camera;
    const double across = std::hypot(camera.WidthFrom(figures.height), camera.LengthFrom(figures.height));
    const double forArea = std::sqrt(box.width() * box.height() / mostCells);
    const double lenses = camera.isSwinging ? 1.0 : std::max(1.0, static_cast<double>(camera.views.size()));
    const double tests = lenses * static_cast<double>(shown.plan.photos.size());
    const double forPhotos = (camera.views.empty() ? 1.0 : tilted) * across * std::sqrt(tests / mostTests);
    const double forPicture = std::max(box.width(), box.height()) / mostPixels;
    return std::max({smallestCell, forArea, forPhotos, forPicture});
}

/// The coverage's cells as pictures and places.
class Cells
{
public:
    Cells(const AxPlanCoverage& counted, const AxPlanPlane& ofArea)
        : coverage(counted), plane(ofArea), southWest(plane.ToPlane(coverage.corners.front()))
    {
    }

    template <typename Value> CoveragePainting Painted(CoverageScale scale, Value valueOf) const
    {
        const int stripe = std::max(3, (coverage.columns + coverage.rows) / (2 * stripesAcross));
        std::vector<int> counts(scale.steps.size(), 0);
        CoveragePainting painting;
        painting.picture = QImage(coverage.columns, coverage.rows, QImage::Format_RGBA8888_Premultiplied);
        painting.picture.fill(Qt::transparent);
        for (int row = 0; row < coverage.rows; ++row)
            for (int column = 0; column < coverage.columns; ++column) {
                const std::size_t cell = CellAt(column, row);
                if (!coverage.isInside[cell])
                    continue;
                const bool isKnown = coverage.isKnown[cell];
                const auto step = static_cast<std::size_t>(scale.StepOf(static_cast<double>(valueOf(cell))));
                counts[step] += isKnown ? 1 : 0;
                const bool isLight = (column + row) / stripe % 2 == 0;
                painting.picture.setPixelColor(column, coverage.rows - 1 - row,
                                               isKnown   ? scale.steps[step].color
                                               : isLight ? coverageUnknownLight
                                                         : coverageUnknownDark);
            }
        for (const int count : counts)
            painting.shares.push_back(static_cast<double>(count) / std::max(1, coverage.cells));
        painting.scale = std::move(scale);
        return painting;
    }

    /// `elsewhere` is the height where none is known.
    CoverageGround Ground(const AxPlanGround& heights, double elsewhere) const
    {
        const double longer = std::max(coverage.columns, coverage.rows) * coverage.cell;
        const double step = std::max(closestPlaces, longer / mostPlaces);
        CoverageGround ground;
        ground.columns = static_cast<int>(std::ceil(coverage.columns * coverage.cell / step)) + 1;
        ground.rows = static_cast<int>(std::ceil(coverage.rows * coverage.cell / step)) + 1;
        const osg::EllipsoidModel wgs84;
        for (int row = 0; row < ground.rows; ++row)
            for (int column = 0; column < ground.columns; ++column) {
                const QPointF place =
                    PlaceAt(static_cast<double>(coverage.columns) * column / (ground.columns - 1),
                            static_cast<double>(coverage.rows) * row / (ground.rows - 1));
                osg::Vec3d point;
                wgs84.convertLatLongHeightToXYZ(DegreeToRadians(place.y()), DegreeToRadians(place.x()),
                                                heights(place.x(), place.y()).value_or(elsewhere), point.x(),
                                                point.y(), point.z());
                ground.places.push_back(point);
            }
        return ground;
    }

private:
    std::size_t CellAt(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(coverage.columns) +
               static_cast<std::size_t>(column);
    }
    QPointF PlaceAt(double column, double row) const
    {
        return plane.ToLngLat({southWest.x() + column * coverage.cell, southWest.y() + row * coverage.cell});
    }

    const AxPlanCoverage& coverage;
    const AxPlanPlane& plane;
    const CAxPoint2D southWest;
};
} // namespace

CoverageReport CoverageReportOf(const ShownPlan& shown, const AxPlanGround& ground, std::atomic<int>& percent,
                                const std::atomic<bool>& isOff)
{
    CoverageReport report;
    const AxPlanPlane plane(shown.request.outline);
    const AxPlanLine ring = AxCoverageRing(shown.request, plane);
    if (ring.empty())
        return report;
    const QRectF box = BoxAround(ring);
    AxPlanRequest request = shown.request;
    // Heights take most of the time, and are asked for from south to north.
    request.ground = [&](double longitude, double latitude) {
        const double north = plane.ToPlane(QPointF(longitude, latitude)).y() - box.top();
        percent = std::clamp(static_cast<int>(100.0 * north / std::max(1.0, box.height())), 0, 100);
        return ground(longitude, latitude);
    };
    const AxPlanCoverage coverage = AxCoverageOf(request, shown.plan, CellFor(shown, box), isOff);
    if (coverage.photos.empty() || isOff)
        return report;
    report.cells = coverage.cells;
    report.unknown = coverage.unknown;
    if (report.cells > report.unknown)
        report.leastPhotos = {static_cast<double>(coverage.leastPhotos), coverage.leastPhotosAt};
    if (coverage.coarsestSample > 0.0)
        report.coarsestSample = {coverage.coarsestSample, coverage.coarsestSampleAt};
    const Cells cells(coverage, plane);
    report.photos =
        cells.Painted(CoverageScale::OfPhotos(), [&](std::size_t cell) { return coverage.photos[cell]; });
    report.sample = cells.Painted(CoverageScale::OfSample(coverage.finestSample, coverage.coarsestSample),
                                  [&](std::size_t cell) { return coverage.sample[cell]; });
    report.ground = cells.Ground(ground, shown.request.meanGround);
    report.cell = coverage.cell;
    return report;
}
