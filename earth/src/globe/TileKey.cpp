#include <osgEarth/TileKey>

#include <tuple>

namespace osgEarth {
const TileKey TileKey::INVALID;

TileKey::TileKey(unsigned lod, unsigned tile_x, unsigned tile_y, const Profile* profile)
    : _lod(lod), _x(tile_x), _y(tile_y), _profile(profile)
{
    if (profile)
        _extent = profile->extentOf(lod, tile_x, tile_y);
}

bool TileKey::operator==(const TileKey& rhs) const
{
    return valid() && rhs.valid() && _lod == rhs._lod && _x == rhs._x && _y == rhs._y &&
           _profile->isHorizEquivalentTo(rhs._profile.get());
}

bool TileKey::operator<(const TileKey& rhs) const
{
    return std::tie(_lod, _x, _y) < std::tie(rhs._lod, rhs._x, rhs._y);
}

std::string TileKey::str() const
{
    return valid() ? std::string(Stringify() << _lod << "/" << _x << "/" << _y) : std::string("invalid");
}

unsigned TileKey::getQuadrant() const
{
    return _lod == 0 ? 0 : (_x & 1u) | ((_y & 1u) << 1);
}

TileKey TileKey::createChildKey(unsigned quadrant) const
{
    if (!valid())
        return {};
    return {_lod + 1, 2 * _x + (quadrant & 1u), 2 * _y + ((quadrant >> 1) & 1u), _profile.get()};
}

TileKey TileKey::createParentKey() const
{
    return createAncestorKey(static_cast<int>(_lod) - 1);
}

TileKey TileKey::createAncestorKey(int ancestorLod) const
{
    if (!valid() || ancestorLod < 0 || static_cast<unsigned>(ancestorLod) > _lod)
        return {};
    const unsigned up = _lod - static_cast<unsigned>(ancestorLod);
    return {static_cast<unsigned>(ancestorLod), _x >> up, _y >> up, _profile.get()};
}

TileKey TileKey::createNeighborKey(int xoffset, int yoffset) const
{
    if (!valid())
        return {};
    unsigned wide, high;
    _profile->getNumTiles(_lod, wide, high);
    const long long y = static_cast<long long>(_y) + yoffset;
    if (y < 0 || y >= static_cast<long long>(high))
        return {};
    const long long w = wide;
    const long long x = ((static_cast<long long>(_x) + xoffset) % w + w) % w;
    return {_lod, static_cast<unsigned>(x), static_cast<unsigned>(y), _profile.get()};
}
} // namespace osgEarth
