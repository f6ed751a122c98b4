#include "text/ScreenSpaceBin.h"
#include "text/LabelDeclutter.h"
#include "text/LabelLetters.h"
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

/// Leaves one after the other; texts of the same letters that follow one another become one leaf.
class Run
{
public:
    using Leaves = osgUtil::RenderBin::RenderLeafList;
    Run(const osg::Camera* camera, Leaves& leaves) : _camera(camera), _leaves(leaves) {}

    void add(osgUtil::RenderLeaf* leaf, const osg::Vec2f& place)
    {
        const auto* text = dynamic_cast<const LetteredText*>(leaf->getDrawable());
        if (!text || text->batches() != _batches)
            end();
        if (!text)
            return _leaves.push_back(leaf);
        _batches = text->batches();
        _first = _texts.empty() ? leaf : _first;
        _texts.push_back(text->at(place));
    }
    void end()
    {
        if (_texts.size() > 1) {
            LetterBatch* batch = _batches->batchOf(_camera, _number++);
            batch->show(_texts);
            _first->_drawable = batch;
            _first->_dynamic = true;
            _first->_modelview = new osg::RefMatrix();
        }
        if (!_texts.empty())
            _leaves.push_back(_first);
        _texts.clear();
        _batches = nullptr;
    }

private:
    const osg::Camera* _camera;
    Leaves& _leaves;
    LetterBatches* _batches = nullptr;
    osgUtil::RenderLeaf* _first = nullptr;
    std::vector<PlacedText> _texts;
    std::size_t _number = 0; // of the run
};

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
            const auto origin = originOnScreen(*leaf->_modelview, *leaf->_projection);
            if (!origin)
                continue;
            osg::Vec3d place((origin->x() * 0.5 + 0.5) * viewport->width(),
                             (origin->y() * 0.5 + 0.5) * viewport->height(), 0.0);
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
        Run run(stage->getCamera(), kept);
        // The most important one is drawn last and so lies on top.
        for (auto index = chosen.rbegin(); index != chosen.rend(); ++index) {
            osgUtil::RenderLeaf* leaf = placed[*index];
            osg::Vec3d place = positions[*index];
            if (snap)
                place.set(std::floor(place.x() + 0.5), std::floor(place.y() + 0.5), 0.0);
            leaf->_modelview = new osg::RefMatrix(osg::Matrixd::translate(place.x(), place.y(), 0.0));
            leaf->_projection = screen;
            before.insert(leaf->getDrawable());
            run.add(leaf, osg::Vec2f(static_cast<float>(place.x()), static_cast<float>(place.y())));
        }
        run.end();
        _renderLeafList.swap(kept);
        if (history().size() > 100) // cameras that are long gone
            history().clear();
    }
};

// Registers the bin when the library is loaded: state sets may name it without ScreenSpaceLayout::activate().
const bool registered = [] {
    osgUtil::RenderBin::addRenderBinPrototype(OSGEARTH_SCREEN_SPACE_LAYOUT_BIN, new ScreenSpaceBin());
    return true;
}();
} // namespace

std::optional<osg::Vec2d> originOnScreen(const osg::Matrixd& modelview, const osg::Matrixd& projection)
{
    constexpr double kBeyond = 1.5;
    const osg::Vec4d clip =
        osg::Vec4d(modelview(3, 0), modelview(3, 1), modelview(3, 2), modelview(3, 3)) * projection;
    if (!(clip.w() > 0.0) || std::abs(clip.x()) > kBeyond * clip.w() ||
        std::abs(clip.y()) > kBeyond * clip.w())
        return std::nullopt;
    return osg::Vec2d(clip.x() / clip.w(), clip.y() / clip.w());
}

void registerScreenSpaceBin()
{
    // Referring to the object keeps a static linker from dropping this file.
    (void)registered;
}
} // namespace osgEarth
