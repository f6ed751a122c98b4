#pragma once
#include <osg/Group>
#include <osg/ref_ptr>

#include <QPointer>

class CAxEarthViewer;
class QImage;
struct CoverageGround;

/// The coverage as it is painted on the ground of a map: over the areas of blocks, below the routes. GUI
/// thread; the viewer may go first.
class CoverageOverlay
{
public:
    explicit CoverageOverlay(CAxEarthViewer* viewer);
    CoverageOverlay(const CoverageOverlay&) = delete;
    CoverageOverlay& operator=(const CoverageOverlay&) = delete;
    ~CoverageOverlay();

    /// In place of what was painted before; nothing before the viewer has its map.
    void Paint(const CoverageGround& ground, const QImage& picture);
    void Clear();
    void SetVisible(bool visible); ///< of what is painted now and later

private:
    QPointer<CAxEarthViewer> viewer;
    osg::ref_ptr<osg::Group> node; ///< in the scene while something is painted
    bool isVisible = true;
};
