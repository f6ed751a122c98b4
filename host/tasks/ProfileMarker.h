#pragma once
#include <osg/ref_ptr>

#include <QPointer>

class CAxEarthViewer;

namespace osgEarth::Annotation {
class PlaceNode;
}

/// A ring on the map that marks one place in the air. GUI thread; the viewer may go first.
class ProfileMarker
{
public:
    explicit ProfileMarker(CAxEarthViewer* viewer);
    ProfileMarker(const ProfileMarker&) = delete;
    ProfileMarker& operator=(const ProfileMarker&) = delete;
    ~ProfileMarker();

    /// Degrees, degrees, metres above the ellipsoid. Nothing before the viewer has its map.
    void Show(double longitude, double latitude, double altitude);
    void Hide();

private:
    QPointer<CAxEarthViewer> viewer;
    osg::ref_ptr<osgEarth::Annotation::PlaceNode> node; ///< in the scene while it is shown
};
