#include <osgEarth/Registry>
#include <osgEarth/TileKey>

#include <gtest/gtest.h>
#include <set>

using namespace osgEarth;

namespace {
const Profile* geodetic()
{
    return Registry::instance()->getGlobalGeodeticProfile();
}
const Profile* mercator()
{
    return Registry::instance()->getSphericalMercatorProfile();
}
} // namespace

TEST(TileKey, ChildrenTileTheirParentWithoutAGap)
{
    const TileKey parent(5, 13, 9, geodetic());
    for (unsigned quadrant = 0; quadrant < 4; ++quadrant) {
        const TileKey child = parent.createChildKey(quadrant);
        EXPECT_EQ(child.createParentKey(), parent);
        EXPECT_EQ(child.getQuadrant(), quadrant);
        EXPECT_TRUE(parent.getExtent().contains(child.getExtent()));
    }
    const GeoExtent nw = parent.createChildKey(0).getExtent(), se = parent.createChildKey(3).getExtent();
    EXPECT_EQ(nw.north(), parent.getExtent().north());
    EXPECT_EQ(nw.west(), parent.getExtent().west());
    EXPECT_EQ(se.south(), parent.getExtent().south());
    EXPECT_EQ(nw.east(), se.west());
    EXPECT_EQ(nw.south(), se.north());
}

TEST(TileKey, NeighboursShareTheirEdgeToTheLastBit)
{
    for (const Profile* profile : {geodetic(), mercator()})
        for (unsigned lod : {0u, 3u, 11u, 19u}) {
            unsigned wide, high;
            profile->getNumTiles(lod, wide, high);
            const TileKey key(lod, wide / 3, high / 2, profile);
            if (wide > 1) {
                EXPECT_EQ(key.getExtent().xMax(),
                          TileKey(lod, wide / 3 + 1, high / 2, profile).getExtent().xMin());
            }
            if (high > 2) {
                EXPECT_EQ(key.getExtent().yMin(),
                          TileKey(lod, wide / 3, high / 2 + 1, profile).getExtent().yMax());
            }
        }
}

TEST(TileKey, NeighbourKeysWrapRoundButStopAtThePoles)
{
    const TileKey last(2, 7, 0, geodetic());
    EXPECT_EQ(last.createNeighborKey(1, 0), TileKey(2, 0, 0, geodetic()));
    EXPECT_EQ(TileKey(2, 0, 0, geodetic()).createNeighborKey(-1, 0), last);
    EXPECT_FALSE(last.createNeighborKey(0, -1).valid());
    EXPECT_FALSE(TileKey(2, 0, 3, geodetic()).createNeighborKey(0, 1).valid());
}

TEST(TileKey, InvalidOnesStayInvalid)
{
    EXPECT_FALSE(TileKey().createChildKey(0).valid());
    EXPECT_FALSE(TileKey(0, 1, 0, geodetic()).createParentKey().valid());
    EXPECT_FALSE(TileKey() == TileKey());
    EXPECT_EQ(TileKey(4, 3, 2, geodetic()).str(), "4/3/2");
    EXPECT_EQ(TileKey(4, 12, 5, geodetic()).createAncestorKey(2), TileKey(2, 3, 1, geodetic()));
}

struct LocateRow
{
    double lon, lat;
    unsigned lod, x, y;
};

class Locate : public ::testing::TestWithParam<LocateRow>
{
};

TEST_P(Locate, TileOfAPoint)
{
    const LocateRow& row = GetParam();
    EXPECT_EQ(geodetic()->createTileKey(row.lon, row.lat, row.lod),
              TileKey(row.lod, row.x, row.y, geodetic()));
}

INSTANTIATE_TEST_SUITE_P(Points, Locate,
                         ::testing::Values(LocateRow{-180, 90, 0, 0, 0}, LocateRow{180, -90, 0, 1, 0},
                                           LocateRow{0, 0, 1, 2, 1}, LocateRow{-0.001, 0.001, 1, 1, 0},
                                           LocateRow{180, 90, 3, 15, 0}));

TEST(Profile, IntersectingTilesOfAnExtent)
{
    const SpatialReference* wgs84 = SpatialReference::get("wgs84");
    struct
    {
        GeoExtent extent;
        unsigned lod;
        std::set<std::string> expected;
    } const rows[] = {
        {GeoExtent(wgs84, -180, -90, 0, 90), 0, {"0/0/0"}},
        {GeoExtent(wgs84, -1, -1, 1, 1), 0, {"0/0/0", "0/1/0"}},
        {GeoExtent(wgs84, 0, 0, 90, 90), 1, {"1/2/0"}},
        {GeoExtent(wgs84, 170, 1, -170, 2), 1, {"1/3/0", "1/0/0"}},
    };
    for (const auto& row : rows) {
        std::vector<TileKey> keys;
        geodetic()->getIntersectingTiles(row.extent, row.lod, keys);
        std::set<std::string> found;
        for (const TileKey& key : keys)
            found.insert(key.str());
        EXPECT_EQ(found, row.expected) << row.extent.toString();
        EXPECT_EQ(keys.size(), found.size()) << "each once";
    }
}

TEST(Profile, FromNamesAndOptions)
{
    EXPECT_EQ(Profile::createNamed("global-geodetic"), geodetic());
    EXPECT_EQ(Profile::createNamed("Spherical-Mercator"), mercator());
    EXPECT_EQ(Profile::createNamed("no such profile"), nullptr);
    EXPECT_FALSE(geodetic()->isEquivalentTo(mercator()));
    Config conf("profile");
    conf.add("srs", "epsg:32613");
    conf.add("xmin", 0.0);
    conf.add("ymin", 0.0);
    conf.add("xmax", 200.0);
    conf.add("ymax", 100.0);
    const osg::ref_ptr<const Profile> local = Profile::create(ProfileOptions(ConfigOptions(conf)));
    ASSERT_TRUE(local.valid());
    unsigned wide, high;
    local->getNumTiles(0, wide, high);
    EXPECT_EQ(wide, 2u);
    EXPECT_EQ(high, 1u);
    conf.set("xmax", -5.0);
    EXPECT_EQ(Profile::create(ProfileOptions(ConfigOptions(conf))), nullptr) << "west of its west edge";
}
