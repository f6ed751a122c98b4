#pragma once

#include <osg/Image>
#include <osg/ref_ptr>
#include <osgViewer/Viewer>
#include <string>

namespace osgEarth {
class Map;
class MapNode;
} // namespace osgEarth

/// A map drawn into a window of 640 x 400 pixels of its own, cleared to pure
/// magenta so that holes in the ground show.
class OffscreenGlobe
{
public:
    static constexpr int kWidth = 640;
    static constexpr int kHeight = 400;

    explicit OffscreenGlobe(osgEarth::Map* map);
    ~OffscreenGlobe();

    /// Degrees and metres; heading and pitch in degrees, pitch -90 looks down.
    void lookAt(double longitude, double latitude, double height, double heading, double pitch, double range);
    /// Draws frames until no tile is wanted any more; false when that takes two minutes of the processor.
    bool drawUntilComplete();
    void frame();
    /// RGB of the last frame, 0 to 255, x from the left, y from the bottom.
    osg::Vec3i pixel(int x, int y) const;
    static bool isHole(const osg::Vec3i& colour) { return colour == osg::Vec3i(255, 0, 255); }

    osgEarth::MapNode& mapNode() { return *_mapNode; }
    osgViewer::Viewer& viewer() { return *_viewer; }

private:
    class Capture;
    osg::ref_ptr<osgEarth::MapNode> _mapNode;
    osg::ref_ptr<osgViewer::Viewer> _viewer;
    osg::ref_ptr<osg::Image> _picture;
};

/// Full name of a file that ships with the program's map.
std::string shippedMapFile(const std::string& name);
