#pragma once
#include <osg/Vec3d>
#include <osgEarth/Viewpoint>

#include <QStringList>

#include <optional>
#include <vector>

class AxViewerPrivate;

/**
 * Flights to where blocks are in the picture. From afar the ground below them is known coarsely only: once it
 * is loaded there, the view is put right. Belongs to the viewer. GUI thread.
 */
class AxBlockFlight
{
public:
    explicit AxBlockFlight(AxViewerPrivate& ofViewer) : viewer(ofViewer) {}

    /// To the objects of these IDs; `margin` as in CAxEarthViewer::SetAllBlockView(). False when there is
    /// none.
    bool To(const QStringList& ids, double margin, double seconds);
    /// The viewer asks with every tick.
    void Look();

private:
    struct Wanted
    {
        QStringList ids;
        double margin = 0.0;
        osgEarth::Viewpoint viewpoint;
    };

    std::vector<osg::Vec3d> places(const QStringList& ids) const;
    osgEarth::Viewpoint over(const QStringList& ids, double margin) const;
    bool isThere(const osgEarth::Viewpoint& wantedView) const;

    AxViewerPrivate& viewer;
    std::optional<Wanted> last; ///< until it was put right, or somebody else has moved the view
};
