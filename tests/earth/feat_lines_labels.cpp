#include "base/MachineFont.h"
#include "featurelayers/LabelSet.h"
#include "featurelayers/LineWork.h"
#include "LogCapture.h"
#include "RasterMaker.h"
#include "text/LabelDeclutter.h"
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <osg/Math>
#include <osgEarth/SpatialReference>
#include <random>
#include <set>

using namespace osgEarth;
using namespace osgEarth::Features;

namespace {
FeatureList polygons(const std::vector<std::vector<osg::Vec2d>>& rings)
{
    FeatureList features;
    for (const auto& ring : rings) {
        osg::ref_ptr<Polygon> polygon = new Polygon();
        for (const osg::Vec2d& p : ring)
            polygon->push_back(p.x(), p.y());
        features.push_back(new Feature(polygon.get(), SpatialReference::get("wgs84")));
    }
    return features;
}

size_t segmentsOf(const std::vector<LonLatLine>& lines)
{
    size_t count = 0;
    for (const LonLatLine& line : lines)
        count += line.size() - 1;
    return count;
}

double distanceToLine(const osg::Vec2d& p, const LonLatLine& line)
{
    double least = DBL_MAX;
    for (size_t i = 0; i + 1 < line.size(); ++i) {
        const osg::Vec2d ab = line[i + 1] - line[i];
        const double t = std::clamp(((p - line[i]) * ab) / std::max(ab.length2(), 1e-300), 0.0, 1.0);
        least = std::min(least, (p - line[i] - ab * t).length());
    }
    return least;
}

LabelCandidate candidate(float x, float y, float priority, bool before = false)
{
    return {{x, y, x + 100.0f, y + 20.0f}, priority, before};
}
} // namespace

TEST(FeatLineWork, SharedBordersAreDrawnOnce)
{
    // Two squares side by side, wound against each other as neighbours are.
    const auto lines =
        distinctLines(polygons({{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, {{1, 0}, {2, 0}, {2, 1}, {1, 1}}}));
    EXPECT_EQ(segmentsOf(lines), 7u);
    const auto sameTurn = distinctLines(polygons({{{0, 0}, {1, 0}, {1, 1}}, {{0, 0}, {1, 0}, {1, 1}}}));
    EXPECT_EQ(segmentsOf(sameTurn), 3u);
}

TEST(FeatLineWork, TheRimOfTheMapIsNoBorder)
{
    const auto antarctic =
        distinctLines(polygons({{{-180, -90}, {180, -90}, {180, -70}, {0, -65}, {-180, -70}}}));
    EXPECT_EQ(segmentsOf(antarctic), 2u);
    const auto jump = distinctLines(polygons({{{179.9, 10}, {-179.9, 10}, {-179.9, 11}, {179.9, 11}}}));
    EXPECT_EQ(segmentsOf(jump), 2u);
}

TEST(FeatLineWork, SimplifiedLinesStayWithinTolerance)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> step(-0.05, 0.05);
    for (const double tolerance : {0.01, 0.1, 1.0}) {
        LonLatLine line;
        for (int i = 0; i < 2000; ++i)
            line.emplace_back(i * 0.01, (line.empty() ? 0.0 : line.back().y()) + step(random));
        const LonLatLine simple = simplified(line, tolerance);
        ASSERT_GE(simple.size(), 2u);
        EXPECT_EQ(simple.front(), line.front());
        EXPECT_EQ(simple.back(), line.back());
        EXPECT_LT(simple.size(), line.size());
        for (const osg::Vec2d& p : line)
            ASSERT_LE(distanceToLine(p, simple), tolerance + 1e-12);
    }
}

TEST(FeatLineWork, SmallIslandsVanishAndLargeOnesStayClosed)
{
    LonLatLine island;
    for (int i = 0; i <= 72; ++i)
        island.emplace_back(std::cos(i * osg::PI / 36.0), std::sin(i * osg::PI / 36.0));
    island.back() = island.front();
    EXPECT_TRUE(simplified(island, 3.0).empty());
    const LonLatLine kept = simplified(island, 0.1);
    ASSERT_GE(kept.size(), 5u);
    EXPECT_EQ(kept.front(), kept.back());
}

TEST(FeatLineWork, CellsHoldEverySegmentOnceAndCutLongOnes)
{
    const LonLatLine line{{-7.0, 3.0}, {4.0, 3.0}, {4.0, -9.0}};
    double length = 0.0;
    std::set<std::pair<double, double>> corners;
    for (const LineCell& cell : cellsOf({line}, 5.0, 0.5)) {
        EXPECT_TRUE(corners.insert({cell.west, cell.south}).second);
        for (const LonLatLine& run : cell.runs)
            for (size_t i = 0; i + 1 < run.size(); ++i) {
                const osg::Vec2d middle = (run[i] + run[i + 1]) * 0.5;
                EXPECT_LE((run[i + 1] - run[i]).length(), 0.5 + 1e-12);
                EXPECT_TRUE(middle.x() >= cell.west && middle.x() < cell.west + 5.0 &&
                            middle.y() >= cell.south && middle.y() < cell.south + 5.0);
                length += (run[i + 1] - run[i]).length();
            }
    }
    EXPECT_NEAR(length, 23.0, 1e-9);
}

TEST(FeatDeclutter, MoreImportantLabelsWinTheirRoom)
{
    const std::vector<LabelCandidate> candidates{candidate(0, 0, 1.0f), candidate(50, 0, 5.0f),
                                                 candidate(300, 0, 2.0f), candidate(120, 10, 3.0f)};
    EXPECT_EQ(chooseLabels(candidates, 800, 600), (std::vector<size_t>{1, 2}));
    EXPECT_EQ(chooseLabels(candidates, 800, 600, 1), (std::vector<size_t>{1}));
}

TEST(FeatDeclutter, WhatMayNotBeHiddenIsShownAnyway)
{
    const std::vector<LabelCandidate> candidates{candidate(0, 0, FLT_MAX), candidate(0, 0, FLT_MAX),
                                                 candidate(0, 0, 9.0f)};
    EXPECT_EQ(chooseLabels(candidates, 800, 600, 1).size(), 2u);
}

TEST(FeatDeclutter, LabelsOnTheEdgeOfTouchingDoNotTakeTurns)
{
    // The lesser label has just enough room: it stays when shown, but does not come back.
    const float gap = 100.0f + kComebackMargin * 0.5f;
    EXPECT_EQ(chooseLabels({candidate(0, 0, 2.0f), candidate(gap, 0, 1.0f, true)}, 800, 600).size(), 2u);
    EXPECT_EQ(chooseLabels({candidate(0, 0, 2.0f), candidate(gap, 0, 1.0f, false)}, 800, 600).size(), 1u);
    // Of two equals the one that was shown stays.
    EXPECT_EQ(chooseLabels({candidate(0, 0, 1.0f), candidate(10, 0, 1.0f, true)}, 800, 600),
              (std::vector<size_t>{1}));
}

TEST(FeatDeclutter, WhatBelongsTogetherIsNotInItsOwnWay)
{
    const int place = 0;
    const int other = 0;
    // An icon, its text close beside it, and the text of another place as close.
    LabelCandidate icon = candidate(0, 0, 2.0f);
    LabelCandidate text = candidate(100.0f + kComebackMargin * 0.5f, 0, 2.0f);
    LabelCandidate strange = candidate(0, 20.0f + kComebackMargin * 0.5f, 1.0f);
    icon.owner = text.owner = &place;
    strange.owner = &other;
    EXPECT_EQ(chooseLabels({icon, text, strange}, 800, 600), (std::vector<size_t>{0, 1}));
}

TEST(FeatDeclutter, NoTwoShownLabelsOverlapWhereverTheyLie)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<float> x(-200.0f, 1400.0f), y(-100.0f, 900.0f);
    std::vector<LabelCandidate> candidates;
    for (int i = 0; i < 2000; ++i)
        candidates.push_back(candidate(x(random), y(random), float(i % 17)));
    const auto chosen = chooseLabels(candidates, 1280, 800);
    EXPECT_GT(chosen.size(), 100u);
    for (size_t i = 0; i < chosen.size(); ++i)
        for (size_t j = 0; j < i; ++j)
            ASSERT_FALSE(candidates[chosen[i]].box.meets(candidates[chosen[j]].box));
}

TEST(FeatLabels, SortedByPriorityAndOnTheEllipsoid)
{
    FeatureList features;
    const std::pair<const char*, int> rows[] = {{"small", 5}, {"large", 500}, {"", 900}};
    for (const auto& row : rows) {
        osg::ref_ptr<PointSet> point = new PointSet();
        point->push_back(0.0, 90.0);
        features.push_back(new Feature(point.get(), SpatialReference::get("wgs84")));
        features.back()->set("name", std::string(row.first));
        features.back()->set("population", row.second);
    }
    osg::ref_ptr<TextSymbol> symbol = new TextSymbol();
    symbol->content() = StringExpression("[name]");
    symbol->priority() = NumericExpression("[population]");
    const auto labels = labelsOf(features, *symbol);
    ASSERT_EQ(labels.size(), 2u); // nothing to write for the nameless
    EXPECT_EQ(labels[0].text, "large");
    EXPECT_NEAR(labels[0].ground.z(), 6356752.3, 1.0);
    EXPECT_FALSE(Horizon(osg::Vec3d(0, 0, 2e7)).hides(labels[0].occludee));
    EXPECT_TRUE(Horizon(osg::Vec3d(0, 0, -2e7)).hides(labels[0].occludee));
    EXPECT_TRUE(Horizon(osg::Vec3d(2e7, 0, 0)).hides(labels[0].occludee));
    EXPECT_FALSE(Horizon(osg::Vec3d(2e7, 0, 9e6)).hides(labels[0].occludee));
}

TEST(FeatGlyphs, LettersHaveRoomOfTheirOwnAndComeBackAfterAReset)
{
    GlyphAtlas atlas(nullptr, 64);
    EXPECT_TRUE(atlas.glyph('A').drawn);
    EXPECT_FALSE(atlas.glyph(' ').drawn);
    EXPECT_GT(atlas.glyph(' ').advance, 0.0f);
    for (unsigned code = 33; code < 127; ++code)
        for (int i = 0; i < 2; ++i)
            atlas.glyph(code);
    const auto& a = atlas.glyph('A');
    const auto& b = atlas.glyph('B');
    EXPECT_TRUE(a.u1 <= b.u0 || b.u1 <= a.u0 || a.v1 <= b.v0 || b.v1 <= a.v0);
    atlas.reset();
    EXPECT_FALSE(atlas.isFull());
    EXPECT_TRUE(atlas.glyph('B').drawn);
}

TEST(FeatFonts, TwoFilesMakeOneFontAndBrokenOnesNone)
{
    namespace fs = std::filesystem;
    ScratchFolder scratch;
    const LogCapture log;
    const fs::path folder = scratch.path("fonts");
    fs::create_directories(folder / "below");
    std::ofstream(folder / "msyh.ttc") << "no font";
    EXPECT_FALSE(findFontIn({folder.string(), scratch.path("none")}));

    for (const char* name : {"DejaVuSans.ttf", "DroidSansFallbackFull.ttf"}) {
        std::error_code ignored;
        for (const std::string& top : machineFontFolders())
            for (const auto& entry : fs::recursive_directory_iterator(top, ignored))
                if (entry.path().filename() == name)
                    fs::copy_file(entry.path(), folder / "below" / name,
                                  fs::copy_options::overwrite_existing);
        if (!fs::exists(folder / "below" / name))
            GTEST_SKIP() << name << " is not installed";
    }
    const osg::ref_ptr<osgText::Font> font = findFontIn({folder.string()});
    ASSERT_TRUE(font);
    const osgText::FontResolution size(24, 24);
    const auto ink = [&](unsigned code) {
        const osgText::Glyph* glyph = font->getGlyph(size, code);
        return std::string(reinterpret_cast<const char*>(glyph->data()), glyph->getTotalSizeInBytes());
    };
    EXPECT_NE(ink('A'), ink(0x0378));    // no letter: the box of the Latin font
    EXPECT_NE(ink(0x897f), ink(0x2fff)); // that of the Chinese one
    EXPECT_NE(ink(0x897f), ink(0x5761));
}
