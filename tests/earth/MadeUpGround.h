#pragma once
#include "RasterMaker.h"

#include <osg/ref_ptr>
#include <osgEarth/Map>
#include <ostream>
#include <string>
#include <vector>

/// A map of heights that a test writes: sources that overlap, end raggedly or
/// lie askew, up to 2,000 m above what is around them.
struct MadeUpGround
{
    const char* name;
    /// Adds the layers of a map, written into the folder.
    void (*write)(const ScratchFolder& folder, osgEarth::Map& map);
    /// Steepest slope, rise over run, of a source by itself.
    double steepest;
};

inline std::ostream& operator<<(std::ostream& out, const MadeUpGround& ground)
{
    return out << ground.name;
}

/// All of them lie around this place, within 0.15 degrees.
constexpr double kMadeUpLongitude = 10.0;
constexpr double kMadeUpLatitude = 45.0;

const std::vector<MadeUpGround>& madeUpGrounds();
