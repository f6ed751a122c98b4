#include "text/ScreenSpaceBin.h"
#include "text/LabelDeclutter.h"
#include "text/SelfPlacedDrawable.h"
#include <cfloat>
#include <cmath>
#include <map>
#include <mutex>
#include <osgEarth/ScreenSpaceLayout>
#include <osgUtil/RenderBin>
#include <osgUtil/RenderStage>
#include <osgUtil/StateGraph>
#include <unordered_set>

namespace osgEarth {
namespace {
/// The drawables that a camera showed in its last frame. They may be deleted by now:
/// the pointers are compared, never followed.
using Shown = std::unordered_set<const osg::Drawable*>;

std::map<const osg::Camera*, Shown>& history()
{
    static std::map<const osg::Camera*, Shown> perCamera;
    return perCamera;
}

std::mutex historyMutex;

const ScreenSpaceLayoutData* layoutOf(const osg::Drawable& drawable)
{
    return dynamic_cast<const ScreenSpaceLayoutData*>(drawable.getUserData());
}

/// Sorts once a frame, at the end of the cull traversal: gives each leaf the
/// matrices that put it on the screen and drops those without room.
class ScreenSpaceBin : public osgUtil::RenderBin
{
public:
    ScreenSpaceBin() : osgUtil::RenderBin(SORT_BACK_TO_FRONT) {}
    ScreenSpaceBin(const ScreenSpaceBin& rhs, const osg::CopyOp& op = osg::CopyOp::SHALLOW_COPY)
        : osgUtil::RenderBin(rhs, op)
    {
    }
    META_Object(osgEarth, ScreenSpaceBin);

    void sortImplementation() override
    {
        copyLeavesFromStateGraphListToRenderLeafList();
        const osgUtil::RenderStage* stage = getStage();
        const osg::Viewport* viewport = stage ? stage->getViewport() : nullptr;
        if (!viewport)
            return;

        RenderLeafList kept;
        std::vector<osgUtil::RenderLeaf*> placed;
        std::vector<osg::Vec3d> positions;
        std::vector<LabelCandidate> candidates;
        std::lock_guard<std::mutex> lock(historyMutex);
        Shown& before = history()[stage->getCamera()];
        for (osgUtil::RenderLeaf* leaf : _renderLeafList) {
            if (dynamic_cast<const SelfPlacedDrawable*>(leaf->getDrawable())) {
                kept.push_back(leaf);
                continue;
            }
            osg::Vec3d place;
            if (!project(*leaf, *viewport, place))
                continue;
            const ScreenSpaceLayoutData* layout = layoutOf(*leaf->getDrawable());
            if (layout)
                place += osg::Vec3d(layout->getPixelOffset().x(), layout->getPixelOffset().y(), 0.0);
            const osg::BoundingBox box = leaf->getDrawable()->getBoundingBox();
            LabelCandidate candidate;
            candidate.box = {
                static_cast<float>(place.x()) + box.xMin(), static_cast<float>(place.y()) + box.yMin(),
                static_cast<float>(place.x()) + box.xMax(), static_cast<float>(place.y()) + box.yMax()};
            candidate.priority = layout ? layout->getPriority() : 0.0f;
            if (!ScreenSpaceLayout::getDeclutteringEnabled())
                candidate.priority = FLT_MAX;
            candidate.shownBefore = before.count(leaf->getDrawable()) != 0;
            placed.push_back(leaf);
            positions.push_back(place);
            candidates.push_back(candidate);
        }

        before.clear();
        const osg::ref_ptr<osg::RefMatrix> screen =
            new osg::RefMatrix(osg::Matrixd::ortho2D(0.0, viewport->width(), 0.0, viewport->height()));
        const bool snap = ScreenSpaceLayout::getOptions().snapToPixel().value();
        std::vector<size_t> chosen = chooseLabels(candidates, static_cast<float>(viewport->width()),
                                                  static_cast<float>(viewport->height()),
                                                  ScreenSpaceLayout::getOptions().maxObjects().value());
        // The most important one is drawn last and so lies on top.
        for (auto index = chosen.rbegin(); index != chosen.rend(); ++index) {
            osgUtil::RenderLeaf* leaf = placed[*index];
            osg::Vec3d place = positions[*index];
            if (snap)
                place.set(std::floor(place.x() + 0.5), std::floor(place.y() + 0.5), 0.0);
            leaf->_modelview = new osg::RefMatrix(osg::Matrixd::translate(place.x(), place.y(), 0.0));
            leaf->_projection = screen;
            before.insert(leaf->getDrawable());
            kept.push_back(leaf);
        }
        _renderLeafList.swap(kept);
        if (history().size() > 100) // cameras that are long gone
            history().clear();
    }

private:
    /// Screen position of the leaf's origin; false when it is not in view.
    static bool project(const osgUtil::RenderLeaf& leaf, const osg::Viewport& viewport, osg::Vec3d& place)
    {
        const osg::Vec4d clip = osg::Vec4d(0.0, 0.0, 0.0, 1.0) * (*leaf._modelview * *leaf._projection);
        if (!(clip.w() > 0.0) || std::abs(clip.x()) > 1.5 * clip.w() || std::abs(clip.y()) > 1.5 * clip.w())
            return false;
        place.set((clip.x() / clip.w() * 0.5 + 0.5) * viewport.width(),
                  (clip.y() / clip.w() * 0.5 + 0.5) * viewport.height(), 0.0);
        return true;
    }
};

// Registers the bin when the library is loaded: state sets may name it without ScreenSpaceLayout::activate().
const bool registered = [] {
    osgUtil::RenderBin::addRenderBinPrototype(OSGEARTH_SCREEN_SPACE_LAYOUT_BIN, new ScreenSpaceBin());
    return true;
}();
} // namespace

void registerScreenSpaceBin()
{
    // Referring to the object keeps a static linker from dropping this file.
    (void)registered;
}
} // namespace osgEarth
