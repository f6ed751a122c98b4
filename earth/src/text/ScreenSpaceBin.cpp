#include "text/ScreenSpaceBin.h"
#include "text/LabelDeclutter.h"
#include "text/LabelLetters.h"
#include "text/SelfPlacedDrawable.h"
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <map>
#include <mutex>
#include <osg/observer_ptr>
#include <osgEarth/ScreenSpaceLayout>
#include <osgUtil/RenderBin>
#include <osgUtil/RenderStage>
#include <osgUtil/StateGraph>
#include <unordered_set>

namespace osgEarth {
namespace {
/// What a camera showed in its last frame.
struct History
{
    osg::observer_ptr<const osg::Camera> camera;
    std::unordered_set<const osg::Drawable*> shown;       // may be deleted by now: compared, never followed
    std::vector<osg::observer_ptr<LetteredText>> leaders; // first texts of what was drawn together
};

History& historyOf(const osg::Camera* camera)
{
    constexpr std::size_t kMostCameras = 100; // more than that are long gone
    static std::map<const osg::Camera*, History> perCamera;
    if (perCamera.size() > kMostCameras)
        perCamera.clear();
    History& history = perCamera[camera];
    if (history.camera.get() != camera) // another one at the address of one that is gone
        history = {camera, {}, {}};
    return history;
}

std::mutex historyMutex;

const ScreenSpaceLayoutData* layoutOf(const osg::Drawable& drawable)
{
    return dynamic_cast<const ScreenSpaceLayoutData*>(drawable.getUserData());
}

/// Leaves one after the other; texts of the same state that follow one another become one leaf.
class Run
{
public:
    using Leaves = osgUtil::RenderBin::RenderLeafList;
    Run(History& history, Leaves& leaves) : _history(history), _leaves(leaves) {}

    void add(osgUtil::RenderLeaf* leaf, const osg::Vec2f& place)
    {
        auto* text = dynamic_cast<LetteredText*>(const_cast<osg::Drawable*>(leaf->getDrawable()));
        if (!text || (_first && leaf->_parent != _first->_parent))
            end();
        if (!text)
            return _leaves.push_back(leaf);
        if (!_first) {
            _first = leaf;
            _leader = text;
        }
        _texts.push_back(text->at(place));
    }
    void end()
    {
        if (_texts.size() > 1) {
            LetterBatch* batch = lead();
            batch->show(_texts);
            _first->_drawable = batch;
            _first->_dynamic = true;
            _first->_modelview = new osg::RefMatrix();
        }
        if (_first)
            _leaves.push_back(_first);
        _texts.clear();
        _first = nullptr;
    }

private:
    LetterBatch* lead()
    {
        if (_history.leaders.size() <= _number)
            _history.leaders.resize(_number + 1);
        osg::observer_ptr<LetteredText>& known = _history.leaders[_number++];
        osg::ref_ptr<LetteredText> before;
        if (known.lock(before) && before != _leader)
            before->batch.swap(_leader->batch);
        if (!_leader->batch)
            _leader->batch = new LetterBatch();
        known = _leader;
        return _leader->batch.get();
    }

    History& _history;
    Leaves& _leaves;
    osgUtil::RenderLeaf* _first = nullptr;
    LetteredText* _leader = nullptr; // the text of the first leaf
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
        History& history = historyOf(stage->getCamera());
        std::unordered_set<const osg::Drawable*>& before = history.shown;
        // They come state by state; of labels equally important the first in the scene wins.
        std::stable_sort(_renderLeafList.begin(), _renderLeafList.end(),
                         [](const osgUtil::RenderLeaf* a, const osgUtil::RenderLeaf* b) {
                             return a->_traversalOrderNumber < b->_traversalOrderNumber;
                         });
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
            if (leaf->getDrawable()->getNumParents() > 0)
                candidate.owner = leaf->getDrawable()->getParent(0);
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
        Run run(history, kept);
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
