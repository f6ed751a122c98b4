// What mouse and key events mean for each tool.
#include "interaction/input/AxMouseRules.h"
#include "interaction/tools/AxBlockMove.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxGlobePoint.h"
#include "viewer/AxPlaceNames.h"
#include "viewer/overlay/AxReadOut.h"

#include <AxBaseUI/AxToolTable.h>

#include <osg/Math>

#include <QLocale>

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using namespace AxMouseRules;

TEST(Tools, AreDrawnWithAsTheirRowsSay)
{
    const std::set<int> drawByDrag{4, 9, 11, 12, 31};
    const std::set<int> drawByClick{3, 5, 7, 8, 13, 14, 17};
    const std::set<int> endByDoubleClick{3, 4, 5, 7, 13, 14, 15, 16, 17};
    const std::set<int> startAnew{3, 4, 5, 9, 31};
    for (int tool = 0; tool <= 32; ++tool) {
        SCOPED_TRACE(tool);
        const AxToolRow& row = AxToolRowOf(static_cast<EToolType>(tool));
        EXPECT_EQ(row.tool, tool < 32 ? tool : 0);
        EXPECT_EQ(row.start == AxDrawStart::Push, drawByDrag.count(tool) == 1);
        EXPECT_EQ(row.start == AxDrawStart::Click, drawByClick.count(tool) == 1);
        EXPECT_EQ(row.ownsDoubleClick, endByDoubleClick.count(tool) == 1);
        EXPECT_EQ(row.startsAnew, startAnew.count(tool) == 1);
        EXPECT_EQ(row.isOnBar, tool == 7 || tool == 8);
    }
}

TEST(MouseRules, AClickIsAReleaseAtThePushedPlace)
{
    const struct
    {
        osg::Vec2f push, release;
        bool isClick;
    } rows[] = {{{400, 300}, {400, 300}, true},
                {{1, 1}, {1.00001f, 1}, true},
                {{50, 3}, {50.00001f, 2.99999f}, true},
                {{1, 1}, {1, 1.00002f}, false},
                {{1000, 5}, {std::nextafter(1000.0f, 2000.0f), 5}, false},
                {{400, 300}, {400, 301}, false},
                {{0, 0}, {0, 0}, false}, // which stands for no push
                {{0, 5}, {0, 5}, true},
                {{1, NAN}, {1, NAN}, false}};
    for (const auto& row : rows)
        EXPECT_EQ(IsClick(row.push, row.release), row.isClick) << row.push.x() << ' ' << row.release.x();
}

TEST(PlaceNames, AreEitherCapitalsOrCitiesByDistance)
{
    EXPECT_FALSE(AxPlaceNames::At(5000000.0).capital);
    EXPECT_TRUE(AxPlaceNames::At(5000000.0).city);
    EXPECT_TRUE(AxPlaceNames::At(5000000.1).capital);
    EXPECT_FALSE(AxPlaceNames::At(5000000.1).city);
}

TEST(MouseRules, WrapHeadingsIntoHalfATurnEachWay)
{
    for (double degrees = -1500.0; degrees <= 1500.0; degrees += 7.5) {
        const double wrapped = WrapHeading(osg::DegreesToRadians(degrees));
        EXPECT_GT(wrapped, -osg::PI) << degrees;
        EXPECT_LE(wrapped, osg::PI) << degrees;
        EXPECT_NEAR(std::cos(wrapped), std::cos(osg::DegreesToRadians(degrees)), 1e-9);
        EXPECT_NEAR(std::sin(wrapped), std::sin(osg::DegreesToRadians(degrees)), 1e-9);
    }
    EXPECT_EQ(WrapHeading(osg::PI), osg::PI);
    EXPECT_EQ(WrapHeading(-osg::PI), osg::PI);
}

TEST(BlockMove, KeepsTheCursorAtItsPlaceInTheBlock)
{
    const osg::Vec3d first(-105.3, 37.2, 2000.0);
    const osg::Vec3d grabbed(-105.1, 37.25, 2100.0);
    const osg::Vec3d offset = AxBlockMove::Offset(first, grabbed);
    EXPECT_EQ(offset.z(), 0.0);
    EXPECT_EQ(AxBlockMove::Delta(first, grabbed, offset), osg::Vec3d());

    const osg::Vec3d delta = AxBlockMove::Delta(first, {-105.0, 37.0, 9.0}, offset);
    EXPECT_EQ(delta.x(), static_cast<double>(static_cast<float>(-105.0 - -105.3 - offset.x())));
    EXPECT_EQ(delta.y(), static_cast<double>(static_cast<float>(37.0 - 37.2 - offset.y())));
    EXPECT_EQ(delta.z(), 0.0);
    EXPECT_NEAR(delta.x(), 0.1, 1e-6);
    EXPECT_NE(delta.x(), -105.0 - -105.3 - offset.x());
}

TEST(ExactPlace, HasTheDigitsThatTheSignalsLost)
{
    const auto worldOf = [](double lng, double lat) {
        return AxGlobe::WorldOf(osg::Vec3d(lng, lat, 1500.0));
    };
    const auto single = [](double lng, double lat) {
        return osg::Vec3d(static_cast<double>(static_cast<float>(lng)),
                          static_cast<double>(static_cast<float>(lat)), 7.0);
    };
    constexpr double millimetre = 1e-8;
    for (const osg::Vec2d& place :
         {osg::Vec2d(-105.1234567, 37.1234567), osg::Vec2d(179.9999999, -60.7654321)}) {
        const osg::Vec3d told = single(place.x(), place.y());
        const osg::Vec3d exact = AxExactPlace(told, worldOf(place.x(), place.y()));
        EXPECT_NEAR(std::remainder(exact.x() - place.x(), 360.0), 0.0, millimetre);
        EXPECT_NEAR(exact.y(), place.y(), millimetre);
        EXPECT_EQ(exact.z(), told.z());
        const osg::Vec3d behind = worldOf(place.x() + 0.001, place.y());
        EXPECT_EQ(AxExactPlace(told, behind), told) << "on a model above";
        AxTellExactPlace(osg::Vec3d(place.x(), place.y(), 7.0));
        EXPECT_NEAR(std::remainder(AxExactPlace(told, behind).x() - place.x(), 360.0), 0.0, millimetre);
        EXPECT_EQ(AxExactPlace(told + osg::Vec3d(0.001, 0.0, 0.0), behind),
                  told + osg::Vec3d(0.001, 0.0, 0.0));
        AxTellExactPlace(std::nullopt);
        EXPECT_EQ(AxExactPlace(told, osg::Vec3d()), told);
        EXPECT_EQ(AxExactPlace(exact, worldOf(place.x(), place.y())), exact);
    }
    EXPECT_EQ(AxExactPlace({20.0, 10.0, 0.0}, worldOf(20.0, 10.0)), osg::Vec3d(20.0, 10.0, 0.0));
}

TEST(ReadOut, WritesDigitsOfTheCLocaleWhateverTheLocaleIs)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    const AxReadOut texts = AxReadOut::Of(-105.123456789, 37.5, 12345.678, 1.5e7);
    QLocale::setDefault(before);
    EXPECT_EQ(texts.longitude, "longitude:-105.123457degree");
    EXPECT_EQ(texts.latitude, "latitude:37.500000degree");
    EXPECT_EQ(texts.altitude, "altitude:12345.68meter");
    EXPECT_EQ(texts.range, "camera range:15000000.00meter");
}
