#pragma once
#include "interaction/marks/AxMarkHit.h"
#include "interaction/marks/AxMarkLayout.h"
#include "interaction/marks/AxMarkPictures.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Geometry>
#include <osg/Matrixd>
#include <osg/Vec3d>
#include <osg/Viewport>

#include <QSet>
#include <QStringList>

#include <vector>

namespace osgUtil {
class CullVisitor;
}

/**
 * Mark points as they are drawn: thousands of icons and names at once, in pixels, over the ground. Where they
 * go is worked out for each new view while it is culled.
 *
 * It hangs below no transform. GUI thread; reference-counted.
 */
class AXEARTHVIEWER_EXPORT AxMarkGeometry : public osg::Geometry
{
public:
    AxMarkGeometry();
    const char* libraryName() const override { return "ax"; }
    const char* className() const override { return "AxMarkGeometry"; }

    /// Geocentric metres, and a name for each; which ones are selected.
    void SetMarks(const std::vector<osg::Vec3d>& world, const QStringList& names, const QSet<int>& selected);
    /// One of them stands elsewhere.
    void SetPlace(int index, const osg::Vec3d& world);
    /// As the last frame drew them.
    const std::vector<AxMarkPlaced>& Drawn() const { return drawn; }
    /// The same for each mark; Icon where no frame has drawn them yet.
    const std::vector<AxMarkLook>& Looks() const { return looks; }

    using osg::Geometry::accept;
    void accept(osg::NodeVisitor& visitor) override;
    bool supports(const osg::PrimitiveFunctor&) const override { return false; }
    bool supports(const osg::PrimitiveIndexFunctor&) const override { return false; }

private:
    void changed();
    void draw(osgUtil::CullVisitor& cull);
    void layOut(const osg::Matrixd& toClip, const osg::Vec3d& eye, const osg::Viewport& window);
    osg::ref_ptr<osg::Geometry> quads(const QSize& window);

    std::vector<osg::Vec3d> places;
    QStringList names;
    std::vector<int> widths; // of the names, 0 until asked for
    QSet<int> selected;
    AxMarkPictures pictures;
    // Of the latest layout
    osg::Matrixd laidOutFor;
    osg::Vec4d windowLaidOutFor;
    bool isLaidOut = false;
    std::vector<AxMarkPlaced> drawn;
    std::vector<AxMarkLook> looks;
    osg::ref_ptr<osg::Geometry> shown;
};
