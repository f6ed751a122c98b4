// What is drawn of a route: its part, its heights, its colours, its markers and its label.
#include "mission/routes/AxRouteDetail.h"
#include "mission/routes/AxRouteRules.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace AxRouteRules;

TEST(RouteRules, ShowTheSubRouteOfTheDirectionAsSeenFromTheEntryPoint)
{
    struct
    {
        int size, entryPoint, direction, first, count;
    } const rows[] = {{12, -1, 2, 0, 4}, {12, 4, 1, 0, 4}, {12, 0, 0, 0, 4}, {12, 1, 2, 8, 4},
                      {12, 2, 0, 8, 4},  {12, 3, 2, 0, 4}, {12, 3, 1, 4, 4}, {13, 0, 2, 8, 4},
                      {2, 0, 1, 0, 0},   {12, 0, 3, 0, 4}, {12, 2, -1, 0, 4}};
    for (const auto& row : rows) {
        const Range range = ThirdShown(row.size, row.entryPoint, row.direction);
        EXPECT_TRUE(range.first == row.first && range.count == row.count)
            << row.size << ", entry " << row.entryPoint << ", direction " << row.direction << ": "
            << range.first << " and " << range.count;
    }
}

TEST(RouteRules, NumberAsManyPointsAsThereIsRoomFor)
{
    // A route of 1,000 points from corner to corner of the screen, or of a part of it.
    const auto shown = [](double size, int points = 1000) {
        std::vector<osg::Vec3d> route;
        for (int i = 0; i < points; ++i)
            route.emplace_back(size * (2.0 * i / (points - 1) - 1.0), (i % 2 ? 1.0 : -1.0) * size, 0.0);
        return NumbersShown(route, osg::Matrixd(), 1000, 800);
    };
    EXPECT_TRUE(shown(0.01).empty()) << "it would be hidden";
    EXPECT_EQ(shown(1.0, 4), (std::vector<int>{0, 1, 2, 3}));
    const std::vector<int> whole = shown(1.0), part = shown(0.2);
    EXPECT_EQ(whole.size(), 201u) << "each fifth";
    EXPECT_EQ(whole[1], 4) << "which is called 5";
    EXPECT_EQ(whole.front() + whole.back(), 999);
    EXPECT_LT(part.size(), 30u);
    const std::vector<int> near = shown(100.0);
    EXPECT_TRUE(near.empty()) << "every point is out of view";
    EXPECT_TRUE(NumbersShown({}, osg::Matrixd(), 1000, 800).empty());
    const osg::Matrixd behind = osg::Matrixd::perspective(30.0, 1.0, 1.0, 100.0);
    EXPECT_TRUE(NumbersShown({{-1, 0, 10}, {1, 0, 10}}, behind, 1000, 800).empty());
    EXPECT_EQ(NumbersShown({{-1, 0, -10}, {1, 0, -10}}, behind, 1000, 800).size(), 2u);
}

TEST(RouteRules, HideMarkersThatCoverTheirRoute)
{
    const osg::BoundingSphered route(osg::Vec3d(0, 0, 6.4e6), 500.0);
    const auto isHidden = [&](double height, double radius = 500.0) {
        return AreMarkersInTheWay({route.center(), radius}, osg::Vec3d(0, 0, 6.4e6 + height), 0.001);
    };
    EXPECT_FALSE(isHidden(6000.0)) << "167 pixels across";
    EXPECT_TRUE(isHidden(7000.0));
    EXPECT_FALSE(isHidden(100.0)) << "from within";
    EXPECT_FALSE(isHidden(11000.0, 0.0)) << "a single point";
}

TEST(RouteRules, LeaveOutWhatAPixelHides)
{
    // A meander whose rows lie 30 m apart, with a point every 10 m that is 1 m beside the line.
    std::vector<osg::Vec3d> route;
    for (int i = 0; i < 5000; ++i) {
        const int row = i / 100;
        route.emplace_back(10.0 * (row % 2 ? 99 - i % 100 : i % 100), 30.0 * row + i % 2, 6.4e6);
    }
    AxRouteDetail detail;
    detail.SetPoints(route);
    constexpr double pixel = 0.001; // metres from 1 m
    for (const double height : {500.0, 4000.0, 20000.0, 2e6}) {
        const osg::Vec3d eye(500.0, 750.0, 6.4e6 + height);
        const std::vector<int> kept = detail.Kept(detail.Levels(eye, pixel));
        EXPECT_EQ(kept.front() + kept.back(), 4999) << height;
        EXPECT_EQ(kept.size() == route.size(), height == 500.0) << kept.size() << " from " << height;
        EXPECT_LT(kept.size(), height > 1e6 ? 20u : height > 1e4 ? 200u : 5001u) << height;
        // No point is more than a pixel off the line that is left.
        double most = 0.0;
        for (std::size_t k = 1; k < kept.size(); ++k) {
            const osg::Vec3d from = route[kept[k - 1]], way = route[kept[k]] - from;
            for (int i = kept[k - 1]; i < kept[k]; ++i) {
                const double share = std::clamp((route[i] - from) * way / way.length2(), 0.0, 1.0);
                most = std::max(most, (route[i] - from - way * share).length());
            }
        }
        EXPECT_LT(most, pixel * height) << height;
    }
}

TEST(RouteRules, LiftPointsWithoutAnAltitudeUnlessEachHasItsOwn)
{
    EXPECT_EQ(DrawnAltitude(0.9e-5, 120.0, TaskOblique), 120.0);
    EXPECT_EQ(DrawnAltitude(1.1e-5, 120.0, TaskOblique), 1.1e-5);
    EXPECT_EQ(DrawnAltitude(0.0, 120.0, TaskVariableHeight), 0.0);
}

TEST(RouteRules, ColourWhatWasFlownAndLeaveTheColoursOutWithoutIndices)
{
    const osg::Vec4f yellow(1, 1, 0, 1);
    const auto colors = [&](auto add) {
        Segments segments;
        osg::Vec3d previous(1, 0, 0);
        for (int i = 1; i < 5; ++i)
            add(i, previous, osg::Vec3d(i + 1, 0, 0), segments);
        EXPECT_EQ(segments.points.size(), 8u);
        EXPECT_EQ(segments.points[5], osg::Vec3d(4, 0, 0));
        std::string letters;
        for (std::size_t i = 0; i < segments.colors.size(); i += 2)
            letters +=
                segments.colors[i] == segments.colors[i + 1] && segments.colors[i] == yellow ? 'y' : 'g';
        return letters;
    };
    const auto byIndices = [&](int start, int end) {
        return colors([=](int i, osg::Vec3d& previous, const osg::Vec3d& current, Segments& segments) {
            AddSegmentByIndices(i, previous, current, start, end, yellow, segments);
        });
    };
    EXPECT_EQ(byIndices(0, 0), "");
    EXPECT_EQ(byIndices(-1, 3), "");
    EXPECT_EQ(byIndices(1, 4), "gyyg");
    const std::vector<osg::Vec3d> route{{179.8, 9, 0}, {179.9, 9, 0}, {-179.9, 9, 0}, {-179.8, 9, 0}};
    EXPECT_EQ(SegmentNearest(route, {-179.95, 9.01, 500}), 2);
    EXPECT_EQ(SegmentNearest({{1, 1, 0}}, {1, 1, 0}), 0);
    EXPECT_EQ(colors([&](int i, osg::Vec3d& previous, const osg::Vec3d& current, Segments& segments) {
                  AddSegmentByPlace(i, previous, current, 3, yellow, segments);
              }),
              "ggyy");

    for (const bool hasFirst : {true, false}) {
        Segments legs;
        AddHomeLegs(hasFirst ? osg::Vec3d(1, 0, 0) : osg::Vec3d(9e-7, 0, 0), {2, 0, 0}, {3, 0, 0}, {4, 0, 0},
                    yellow, legs);
        EXPECT_EQ(legs.points.size(), hasFirst ? 6u : 4u);
        EXPECT_EQ(legs.colors, std::vector<osg::Vec4f>(legs.points.size(), yellow));
        EXPECT_EQ(legs.points.back(), osg::Vec3d(4, 0, 0));
    }
}

TEST(RouteRules, TurnTheLabelByTheQuadrantOfTheRoute)
{
    struct
    {
        osg::Vec3d direction;
        double heading;
    } const rows[] = {{{1, 1, 0}, 315.0},  {{-1, 1, 0}, 45.0}, {{-1, -1, 0}, 135.0},
                      {{1, -1, 0}, 225.0}, {{0, 1, 5}, 90.0},  {{0, -1, 0}, 90.0},
                      {{1, 0, 0}, 180.0},  {{0, 0, 1}, 0.0},   {{0, 0, 0}, 0.0}};
    for (const auto& row : rows)
        EXPECT_NEAR(LabelHeading(row.direction), row.heading, 1e-6)
            << row.direction.x() << ", " << row.direction.y();
}

TEST(RouteRules, PutTheLabelATenthOfTheFirstSegmentBesideItsStart)
{
    const osg::Vec3d start(6378137.0, 0.0, 0.0);
    // North of the equator's first point: direction (0, 0, 1000), without a heading.
    EXPECT_LT((LabelPlace(start, start + osg::Vec3d(0, 0, 1000)) - osg::Vec3d(6378137, 0, -100)).length(),
              1e-6);
    // East: 90 degrees.
    EXPECT_LT((LabelPlace(start, start + osg::Vec3d(0, 500, 0)) - osg::Vec3d(6378137, 50, 0)).length(), 1e-6);
}

TEST(RouteRules, FindMarkersAmongThePointsByAMillionthOfADegree)
{
    const QList<CAxVector3D> points{{10, 50, 100}, {11, 50, 200}, {10, 50, 300}};
    const auto matches = MatchingMarkers(
        points, {{7, {11 + 0.9e-6, 50, 0}}, {8, {11, 50 + 1.1e-6, 0}}, {9, {10, 50 - 0.9e-6, 0}}});
    EXPECT_EQ(matches.keys(), (QList<int>{0, 2}));
    EXPECT_EQ(matches[0].z(), 200.0);
    EXPECT_EQ(matches[2].z(), 100.0) << "the first of several";
    const QList<QPair<int, CAxVector3D>> markers{{0, {11, 50, 0}}, {1, {10.9, 50.001, 0}}};
    const auto stand = MatchingMarkers(WithMarkers({{10, 50, 100}, {11, 50, 200}}, markers), markers);
    EXPECT_EQ(stand[0].z(), 200.0);
    EXPECT_EQ(stand[1].z(), 200.0) << "beside the route";
    EXPECT_TRUE(WithMarkers({}, markers).isEmpty());
    EXPECT_TRUE(MarkerIcon(2, 2).endsWith("Waypoint_Set_3sel_ic.png"));
    EXPECT_TRUE(MarkerIcon(2, 1).endsWith("Waypoint_Set_3_ic.png"));
    EXPECT_TRUE(MarkerIcon(4, 4).isEmpty());
}
