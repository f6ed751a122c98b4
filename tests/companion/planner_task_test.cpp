// Flights, coverage, what a task asks for, and cameras.
#include "Planned.h"

#include <AxAlgorthm/AxFootprint.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>
#include <AxData/planner/AxPlanCameras.h>
#include <AxData/planner/AxPlanCoverage.h>
#include <AxData/planner/AxPlanFlights.h>

#include <gtest/gtest.h>
#include <QFile>
#include <QPolygonF>
#include <QTemporaryDir>

#include <functional>
#include <set>

namespace {
using namespace Planned;

const QByteArray oneCamera = R"([{"name": "A", "type": "apsC", "sensor": [23.5, 15.6], "image": [6000, 4000],
                                  "focalLength": 20, "shortestInterval": 1}])";
} // namespace

TEST(PlanCoverage, CountsThePhotosThatReallyShowAPieceOfGround)
{
    const std::atomic<bool> isOff{false};
    AxPlanRequest request = RandomBlock(0).request; // with a hole
    request.height = 100.0;
    request.sideOverlap = 0.5;
    request.forwardOverlap = 0.5;
    const AxPlanCoverage flat = AxCoverageOf(request, AxPlanRoute(request), 3.0, isOff);
    EXPECT_GE(flat.leastPhotos, 1);
    const double sample = request.camera.SampleFrom(100.0);
    EXPECT_NEAR(flat.coarsestSample, sample, 1e-6);
    double sum = 0.0, inside = 0.0;
    for (std::size_t i = 0; i < flat.photos.size(); ++i)
        if (flat.isInside[i]) {
            sum += flat.photos[i];
            inside += 1.0;
        }
    EXPECT_NEAR(inside * 9.0, AxPlanRoute(request).figures.area, 0.02 * inside * 9.0);
    EXPECT_NEAR(sum / inside, 4.0, 1.2) << "twice along and twice across";
    const auto covered = AxCoveredAreaOf(request, AxPlanRoute(request), isOff);
    ASSERT_TRUE(covered && covered->isKnown);
    EXPECT_NEAR(covered->inside, inside * 9.0, 0.02 * inside * 9.0);
    EXPECT_GT(covered->beside, 0.1 * covered->inside) << "photos end beyond the rim";

    // A plateau 60 m below the aircraft: fewer photos show it, and a basin more coarsely than the plain.
    const double middle = request.outline[0].x();
    request.ground = [middle](double longitude, double) { return longitude > middle ? 40.0 : -20.0; };
    const AxPlanCoverage uneven = AxCoverageOf(request, AxPlanRoute(request), 3.0, isOff);
    EXPECT_LT(uneven.leastPhotos, flat.leastPhotos + 1);
    EXPECT_NEAR(uneven.coarsestSample, 1.2 * sample, 1e-6);
    EXPECT_LE(uneven.coarsestSampleAt.x(), middle);
    request.ground = [](double, double) { return std::optional<double>(); };
    const AxPlanCoverage unknown = AxCoverageOf(request, AxPlanRoute(request), 3.0, isOff);
    EXPECT_EQ(unknown.unknown, static_cast<int>(inside)) << "never taken as level ground";
    EXPECT_EQ(unknown.leastPhotos, 0);
    EXPECT_FALSE(AxCoveredAreaOf(request, AxPlanRoute(request), isOff)->isKnown);
    request.ground = {};
    request.kind = AxPlanRequest::Kind::Strip;
    request.outline = {{10.0, 45.0}, {10.01, 45.0}, {10.01, 45.005}};
    request.leftWidth = 30.0;
    request.rightWidth = 60.0;
    const AxPlanResult strip = AxPlanRoute(request);
    const AxPlanCoverage band = AxCoverageOf(request, strip, 3.0, isOff);
    EXPECT_NEAR(band.cells * 9.0, 1344.0 * 90.0, 0.03 * 1344.0 * 90.0) << "the line times the width";
    EXPECT_GE(band.leastPhotos, 1);
    request.kind = AxPlanRequest::Kind::Orbit;
    request.radius = 120.0;
    const AxPlanResult orbit = AxPlanRoute(request);
    const AxPlanCoverage disc = AxCoverageOf(request, orbit, 3.0, isOff);
    EXPECT_NEAR(disc.cells * 9.0, pi * 120.0 * 120.0, 0.02 * pi * 120.0 * 120.0);
    EXPECT_EQ(disc.photos.at(disc.photos.size() / 2 + static_cast<std::size_t>(disc.columns) / 2),
              orbit.photos.size())
        << "all look at the middle";
}

TEST(PlanCoverage, TiltedLensesShowWhatAPinholeCameraShows)
{
    const std::atomic<bool> isOff{false};
    AxPlanRequest request = RequestOver(Box(-600.0, -600.0, 600.0, 600.0));
    AxPlanCamera& camera = request.camera;
    camera.sensorHeight = camera.sensorWidth * camera.imageHeight / camera.imageWidth;
    const double focal = camera.focalLength * camera.imageWidth / camera.sensorWidth; // pixels
    AxPlanResult plan;
    plan.points = {{10.0, 45.0, 100.0}};
    plan.photos = {{10.0, 45.0, 100.0, 30.0, 0}};
    for (const AxPlanView& view : {AxPlanView{0.0, 0.0}, {0.0, 45.0}, {90.0, 30.0}, {200.0, 60.0}}) {
        SCOPED_TRACE(view.tilt);
        camera.views = {view};
        const auto corners = [&](int more) {
            return QPolygonF(CalcFootprintMapCoordinate(100.0, camera.imageWidth, camera.imageHeight + more,
                                                        focal, 30.0 + view.turn, view.tilt)
                                 .toVector());
        };
        const QPolygonF picture = corners(0);
        const AxPlanCoverage shown = AxCoverageOf(request, plan, 1.0, isOff);
        double wrong = 0.0, right = 0.0;
        for (std::size_t i = 0; i < shown.photos.size(); ++i) {
            const auto column = static_cast<double>(i % shown.columns);
            const auto row = (static_cast<double>(i) - column) / shown.columns;
            const bool isShown = picture.containsPoint({column - 599.5, row - 599.5}, Qt::OddEvenFill);
            ((shown.photos[i] > 0) == isShown ? right : wrong) += isShown || shown.photos[i] > 0 ? 1.0 : 0.0;
        }
        EXPECT_LT(wrong, 0.02 * right);
        const QPointF pixel =
            corners(2)[0] - corners(0)[0]; // half a pixel would do, but is no number of them
        const double ahead = std::abs(QPointF::dotProduct(
            pixel, {std::sin((30.0 + view.turn) * pi / 180.0), std::cos((30.0 + view.turn) * pi / 180.0)}));
        EXPECT_NEAR(shown.coarsestSample, ahead, 0.03 * ahead);
    }
    camera.views = {{}, {}};
    plan.photos.assign(6, plan.photos.front());
    for (const bool isSwinging : {false, true}) {
        camera.isSwinging = isSwinging;
        const AxPlanCoverage shown = AxCoverageOf(request, plan, 10.0, isOff);
        EXPECT_EQ(*std::max_element(shown.photos.begin(), shown.photos.end()), isSwinging ? 6 : 12);
    }
}

TEST(PlanFlights, SplitIntoFlightsAndLoseNoPhoto)
{
    for (unsigned seed = 0; seed < 12; ++seed) {
        SCOPED_TRACE(seed);
        AxPlanRequest request = RandomBlock(seed).request;
        request.home = request.outline[0];
        request.windSpeed = 5.0;
        request.windFrom = 240.0;
        const AxPlanResult plan = AxPlanRoute(request);
        // From half of a pass to several passes a flight.
        for (const double share : {0.02, 0.2, 0.7, 2.0}) {
            request.aircraft.endurance = 600.0 + share * plan.figures.seconds;
            const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(request, plan);
            ASSERT_FALSE(flights.empty());
            EXPECT_EQ(flights.size() > 1, plan.figures.seconds > request.aircraft.endurance);
            std::size_t photos = 0;
            for (const AxPlanFlight& flight : flights) {
                EXPECT_LE(flight.seconds, request.aircraft.endurance);
                for (const AxPlanPhoto& photo : flight.photos)
                    EXPECT_EQ(photo.longitude, plan.photos[photos++].longitude);
                for (std::size_t i = 1; i < flight.points.size(); ++i)
                    EXPECT_TRUE(flight.points[i].longitude != flight.points[i - 1].longitude ||
                                flight.points[i].latitude != flight.points[i - 1].latitude)
                        << "point " << i << " stands twice";
            }
            EXPECT_EQ(photos, plan.photos.size());
            EXPECT_EQ(flights.back().points.back().longitude, plan.points.back().longitude);
        }
        request.home = QPointF(request.outline[0].x(), request.outline[0].y() - 3.0);
        EXPECT_TRUE(AxSplitIntoFlights(request, plan).empty()) << "too far away";
    }
}

TEST(PlanFlights, EachPhotoOfABentPassBelongsToTheFlightThatComesByIt)
{
    AxPlanRequest circle;
    circle.kind = AxPlanRequest::Kind::Orbit;
    circle.outline = {{10.0, 45.0}};
    circle.radius = 500.0;
    circle.height = 100.0;
    AxPlanRequest bent = circle;
    bent.kind = AxPlanRequest::Kind::Strip;
    bent.outline = {{10.0, 45.0}, {10.01, 45.0}, {10.01, 45.002}, {10.0, 45.002}};
    bent.leftWidth = bent.rightWidth = 10.0;
    for (AxPlanRequest& request : {std::ref(circle), std::ref(bent)})
        for (const double share : {0.23, 0.55, 0.75, 0.9}) {
            const AxPlanResult plan = AxPlanRoute(request);
            ASSERT_EQ(plan.figures.passes, 1);
            request.aircraft.endurance = share * plan.figures.seconds;
            const AxPlanPlane plane(request.outline);
            const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(request, plan);
            EXPECT_EQ(static_cast<double>(flights.size()), std::ceil(1.0 / share));
            for (const AxPlanFlight& flight : flights) {
                double length = 0.0;
                for (std::size_t i = 1; i < flight.points.size(); ++i)
                    length += AxApart(At(plane, flight.points[i]), At(plane, flight.points[i - 1]));
                EXPECT_NEAR(static_cast<double>(flight.photos.size()), length / plan.figures.photoDistance,
                            2.0);
            }
        }
}

TEST(PlanOfATask, ATaskPlansItsBlockWithItsParameters)
{
    CAxBlockManager& blocks = CAxBlockManager::instance();
    CAxBlock* const block = blocks.AddBlock(QStringLiteral("planned"), CAxBlock::PolygonBlock);
    block->SetAnchor({{10.0, 45.0}, {10.01, 45.0}, {10.01, 45.008}, {10.0, 45.008}});
    block->SetAverageAltitude(400.0);
    CAxTaskPara* const para = block->GetTaskPara();
    CAxTask* const task =
        block->AddTask(std::make_unique<CAxTask>(QStringLiteral("t"), QStringLiteral("T"), para));
    QList<QPair<int, CAxVector3D>> markers;
    const auto route = [&](int entry, int count) {
        return task->ComputeRoute(entry, markers, CAxBlock::PolygonBlock, count, 1);
    };
    const QList<CAxVector3D> first = route(0, 0);
    ASSERT_FALSE(first.isEmpty());
    EXPECT_NEAR(first[0].x(), 45.004, 0.01) << "latitude comes first";
    EXPECT_NEAR(first[0].z(), 700.0, 1e-6) << "mean ground and relative height";
    ASSERT_EQ(markers.size(), 4);
    EXPECT_EQ(markers[3].first, 3);
    EXPECT_NE(route(3, 0)[0], first[0]);
    EXPECT_EQ(route(-1, 0), first);
    const CAxVector3D inserted(45.002, 10.005, 900.0);
    task->InsertVariableHeightRoutePt(1, {inserted});
    EXPECT_EQ(route(0, 0), first) << "heights do not change";
    CAxControl::GetInstance()->SetGround([](double, double) { return 400.0; }, block);
    para->SetChangeHighFlying(true);
    EXPECT_EQ(route(0, 0)[2], inserted);
    para->SetChangeHighFlying(false);
    CAxControl::GetInstance()->RemoveGround(block);
    task->TakePlan(AxPlanRoute(task->RequestOf(2, CAxBlock::PolygonBlock, 3)));
    EXPECT_NE(route(0, 0), first) << "planned by somebody else";
    EXPECT_EQ(route(0, 0), first) << "once";
    para->SetPlaneType(PlaneQuadcopter);
    EXPECT_EQ(route(0, 7).size(), 14);
    CAxControl::GetInstance()->SetZones(
        [](double, double, double) {
            return std::vector<AxPlanZone>{
                {{}, {{10.03, 44.99}, {10.04, 44.99}, {10.04, 45.02}, {10.03, 45.02}}}};
        },
        block);
    block->SetHomePosition(CAxVector3D(10.05, 45.004, 390.0), false);
    EXPECT_EQ(route(0, 7).size(), 14) << "straight until it is asked to go round";
    para->SetHomeLegRoundZones(true);
    EXPECT_EQ(route(0, 7).size(), 14 + 6) << "corners there and back";
    // One zone inside, and two that overlap along a whole side and stick out.
    const auto box = [](double west, double south, double east, double north) {
        return AxPlanZone{{}, {{west, south}, {east, south}, {east, north}, {west, north}}};
    };
    CAxControl::GetInstance()->SetZones(
        [box](double, double, double) {
            return std::vector<AxPlanZone>{box(10.002, 45.002, 10.004, 45.004),
                                           box(10.006, 44.99, 10.02, 45.01), box(10.007, 44.9, 10.009, 45.1)};
        },
        block);
    para->SetZonesAsHoles(true);
    const AxPlanRequest cut = task->RequestOf(0, CAxBlock::PolygonBlock, 0);
    EXPECT_EQ(cut.holes.size(), 2);
    const AxPlanResult plan = AxPlanRoute(cut);
    EXPECT_NEAR(plan.figures.area, 0.55 * 788.0 * 889.0, 0.01 * 788.0 * 889.0);
    para->SetZonesAsHoles(false);
    CAxControl::GetInstance()->RemoveZones(block);
    para->GetAirLineParam()->SetRelativeFlyHeight(0.0);
    EXPECT_TRUE(route(0, 0).isEmpty());
    EXPECT_TRUE(markers.isEmpty());
    EXPECT_TRUE(CAxTask(QStringLiteral("u"), {}, nullptr)
                    .ComputeRoute(0, markers, CAxBlock::PolygonBlock, 0, 0)
                    .isEmpty())
        << "without a block";
    blocks.DeleteBlock(QStringLiteral("planned"));
}

TEST(PlanCameras, TheShippedListIsReadAndABadOneNamesCameraAndField)
{
    QFile shipped(QStringLiteral(AX_RESOURCES "/planning/cameras.json"));
    ASSERT_TRUE(shipped.open(QIODevice::ReadOnly));
    QList<AxListedCamera> cameras;
    EXPECT_EQ(AxReadCameras(shipped.readAll(), cameras), QString());
    std::set<ECameraType> types;
    for (const AxListedCamera& listed : cameras)
        types.insert(listed.type);
    EXPECT_EQ(types.size(), 10u) << "each type has one";
    const int count = cameras.size();

    const struct
    {
        const char* from;
        const char* to;
        const char* named;
    } rows[] = {{"\"A\"", "7", "name"},
                {"apsC", "x", "type"},
                {"[23.5, 15.6]", "[23.5]", "sensor"},
                {"15.6", "0", "sensor"},
                {"6000", "6e9", "image"},
                {"4000", "4000.5", "image"},
                {"20", "\"20\"", "focalLength"},
                {"20", "-3", "focalLength"},
                {": 1", ": null", "shortestInterval"},
                {"}]", ", \"views\": [[0]]}]", "views"},
                {"}]", ", \"views\": [[0, 90]]}]", "views"},
                {"}]", "}", "no JSON"},
                {"[{", "{", "no JSON"}};
    for (const auto& row : rows) {
        const QString fault = AxReadCameras(QByteArray(oneCamera).replace(row.from, row.to), cameras);
        EXPECT_TRUE(fault.contains(QLatin1String(row.named))) << row.to << ": " << fault.toStdString();
        EXPECT_EQ(cameras.size(), count) << "the old list stands";
    }
    EXPECT_TRUE(AxReadCameras("[]", cameras).contains("array"));
    EXPECT_EQ(AxReadCameras(oneCamera, cameras), QString());
    EXPECT_EQ(cameras.size(), 1);
}

TEST(PlanCameras, NoOtherCameraStandsForOneThatTheFileLacks)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("cameras.json"));
    EXPECT_EQ(AxCameraIn(AxReadCameraFile(path), CameraThermal).fault, QString())
        << "there is no file at all";
    const struct
    {
        ECameraType type;
        const char* name;
        QByteArray list;
        const char* fault; // in its text; none
    } rows[] = {{CameraApsC, "", oneCamera, nullptr},
                {CameraApsC, "A", oneCamera, nullptr},
                {CameraThermal, "", oneCamera, "thermal"},
                {CameraThermal, "A", oneCamera, "thermal"},
                {CameraApsC, "B", oneCamera, "B"},
                {static_cast<ECameraType>(15), "", oneCamera, "15"},
                {CameraApsC, "A", QByteArray(oneCamera).replace("23.5", "0"), "sensor"}};
    for (const auto& row : rows) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(row.list);
        file.close();
        AxPlanRequest request = RandomBlock(1).request;
        request.camera = AxCameraIn(AxReadCameraFile(path), row.type, QLatin1String(row.name));
        const QString fault = AxPlanRoute(request).fault;
        if (row.fault)
            EXPECT_TRUE(fault.contains(QLatin1String(row.fault)) && fault.contains("cameras.json"))
                << row.fault << ": " << fault.toStdString();
        else
            EXPECT_TRUE(fault.isEmpty() && request.camera.imageWidth == 6000) << fault.toStdString();
    }
}
