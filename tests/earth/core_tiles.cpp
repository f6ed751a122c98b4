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

TEST(Profile, TileOfAPoint)
{
    const struct
    {
        double lon, lat;
        unsigned lod, x, y;
    } rows[] = {{-180, 90, 0, 0, 0},
                {180, -90, 0, 1, 0},
                {0, 0, 1, 2, 1},
                {-0.001, 0.001, 1, 1, 0},
                {180, 90, 3, 15, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(geodetic()->createTileKey(row.lon, row.lat, row.lod),
                  TileKey(row.lod, row.x, row.y, geodetic()));
}

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
