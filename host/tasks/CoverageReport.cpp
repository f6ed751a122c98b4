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
    const double forPhotos = across * std::sqrt(static_cast<double>(shown.plan.photos.size()) / mostTests);
    const double forPicture = std::max(box.width(), box.height()) / mostPixels;
    return std::max({smallestCell, forArea, forPhotos, forPicture});
}

/// The coverage's cells, with what it does not say: of which the ground is unknown, and their places.
class Cells
{
public:
    Cells(const AxPlanCoverage& counted, const AxPlanPlane& ofArea, const AxPlanGround& ground)
        : coverage(counted), plane(ofArea), southWest(plane.ToPlane(coverage.corners.front())),
          isUnknown(coverage.photos.size(), false)
    {
        // No photo counts where the ground is not known.
        for (int row = 0; row < coverage.rows; ++row)
            for (int column = 0; column < coverage.columns; ++column)
                if (const std::size_t cell = CellAt(column, row);
                    coverage.isInside[cell] && coverage.photos[cell] == 0) {
                    const QPointF middle = PlaceAt(column + 0.5, row + 0.5);
                    isUnknown[cell] = !ground(middle.x(), middle.y());
                }
    }

    void FindWorst(CoverageReport& report) const
    {
        const auto isKnown = [this](std::size_t cell) { return coverage.isInside[cell] && !isUnknown[cell]; };
        std::optional<std::size_t> least;
        std::optional<std::size_t> coarsest;
        for (std::size_t cell = 0; cell < coverage.photos.size(); ++cell) {
            report.cells += coverage.isInside[cell] ? 1 : 0;
            report.unknown += isUnknown[cell] ? 1 : 0;
            if (!isKnown(cell))
                continue;
            if (!least || coverage.photos[cell] < coverage.photos[*least])
                least = cell;
            if (coverage.photos[cell] > 0 &&
                (!coarsest || coverage.sample[cell] > coverage.sample[*coarsest]))
                coarsest = cell;
        }
        if (least)
            report.leastPhotos = {static_cast<double>(coverage.photos[*least]), MiddleOf(*least)};
        if (coarsest)
            report.coarsestSample = {static_cast<double>(coverage.sample[*coarsest]), MiddleOf(*coarsest)};
    }

    double FinestSample() const
    {
        double finest = 0.0;
        for (std::size_t cell = 0; cell < coverage.photos.size(); ++cell)
            if (coverage.photos[cell] > 0 &&
                (finest == 0.0 || static_cast<double>(coverage.sample[cell]) < finest))
                finest = static_cast<double>(coverage.sample[cell]);
        return finest;
    }

    template <typename Value> CoveragePainting Painted(CoverageScale scale, Value valueOf) const
    {
        const int stripe = std::max(3, (coverage.columns + coverage.rows) / (2 * stripesAcross));
        std::vector<int> counts(scale.steps.size(), 0);
        int all = 0;
        CoveragePainting painting;
        painting.picture = QImage(coverage.columns, coverage.rows, QImage::Format_RGBA8888_Premultiplied);
        painting.picture.fill(Qt::transparent);
        for (int row = 0; row < coverage.rows; ++row)
            for (int column = 0; column < coverage.columns; ++column) {
                const std::size_t cell = CellAt(column, row);
                if (!coverage.isInside[cell])
                    continue;
                ++all;
                const auto step = static_cast<std::size_t>(scale.StepOf(static_cast<double>(valueOf(cell))));
                counts[step] += isUnknown[cell] ? 0 : 1;
                const bool isLight = (column + row) / stripe % 2 == 0;
                painting.picture.setPixelColor(column, coverage.rows - 1 - row,
                                               !isUnknown[cell] ? scale.steps[step].color
                                               : isLight        ? coverageUnknownLight
                                                                : coverageUnknownDark);
            }
        for (const int count : counts)
            painting.shares.push_back(all > 0 ? static_cast<double>(count) / all : 0.0);
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
    QPointF MiddleOf(std::size_t cell) const
    {
        const auto columns = static_cast<std::size_t>(coverage.columns);
        const std::size_t row = cell / columns;
        return PlaceAt(static_cast<double>(cell % columns) + 0.5, static_cast<double>(row) + 0.5);
    }

    const AxPlanCoverage& coverage;
    const AxPlanPlane& plane;
    const CAxPoint2D southWest;
    std::vector<bool> isUnknown;
};
} // namespace

CoverageReport CoverageReportOf(const ShownPlan& shown, const AxPlanGround& ground, std::atomic<int>& percent,
                                const std::atomic<bool>& isOff)
{
    CoverageReport report;
    const AxPlanPlane plane(shown.request.outline);
    const QRectF box = BoxAround(plane.ToPlane(shown.request.outline));
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
    const Cells cells(coverage, plane, ground);
    cells.FindWorst(report);
    const double coarsest = report.coarsestSample ? report.coarsestSample->value : 0.0;
    report.photos =
        cells.Painted(CoverageScale::OfPhotos(), [&](std::size_t cell) { return coverage.photos[cell]; });
    report.sample = cells.Painted(CoverageScale::OfSample(cells.FinestSample(), coarsest),
                                  [&](std::size_t cell) { return coverage.sample[cell]; });
    report.ground = cells.Ground(ground, shown.request.meanGround);
    report.cell = coverage.cell;
    return report;
}
