#include "drape/DrapePainter.h"
#include "globe/Geodetic.h"
#include <algorithm>
#include <cmath>
#include <mutex>
#include <osg/LineWidth>
#include <osg/Transform>
#include <osgEarth/MapNode>

namespace osgEarth {
namespace {
// Heights are looked up again after this many frames.
constexpr unsigned kHeightInterval = 30;
// What batched shapes may cost a frame: building them, and heights looked up for them.
constexpr std::chrono::milliseconds kBuildTime(4);
constexpr unsigned kMostLookUps = 400;

std::vector<unsigned> signatureOf(const osg::Geometry& geometry)
{
    std::vector<unsigned> signature;
    for (const osg::Array* array : {geometry.getVertexArray(), geometry.getColorArray()}) {
        signature.push_back(array ? array->getModifiedCount() : ~0u);
        signature.push_back(array ? array->getNumElements() : 0u);
        signature.push_back(static_cast<unsigned>(reinterpret_cast<size_t>(array)));
    }
    for (unsigned i = 0; i < geometry.getNumPrimitiveSets(); ++i) {
        const osg::PrimitiveSet* set = geometry.getPrimitiveSet(i);
        signature.push_back(set->getModifiedCount());
        signature.push_back(set->getNumIndices());
        signature.push_back(set->getMode());
    }
    return signature;
}

/// True once a frame and camera: for the first node that drapes anything in it.
bool firstInFrame(const osg::Camera* camera, unsigned frame)
{
    static std::mutex mutex;
    static std::map<const osg::Camera*, unsigned> lastFrame;
    std::lock_guard<std::mutex> lock(mutex);
    const auto known = lastFrame.find(camera);
    if (known != lastFrame.end() && known->second == frame)
        return false;
    if (lastFrame.size() > 100) // cameras that are long gone
        lastFrame.clear();
    lastFrame[camera] = frame;
    return true;
}
} // namespace

/// Finds the geometries below a node with their place and line width.
class DrapeableNode::Painter::Collector : public osg::NodeVisitor
{
public:
    Collector(Painter& painter, const osg::Matrixd& localToWorld, unsigned traversalMask)
        : osg::NodeVisitor(osg::NodeVisitor::TRAVERSE_ACTIVE_CHILDREN), _painter(painter)
    {
        setTraversalMask(traversalMask);
        _matrices.push_back(localToWorld);
    }
    void apply(osg::Node& node) override
    {
        const Style outer = _style;
        takeStyle(node);
        traverse(node);
        _style = outer;
    }
    void apply(osg::Transform& node) override
    {
        osg::Matrix matrix = _matrices.back();
        node.computeLocalToWorldMatrix(matrix, this);
        _matrices.push_back(matrix);
        apply(static_cast<osg::Node&>(node));
        _matrices.pop_back();
    }
    void apply(osg::Geometry& geometry) override
    {
        const Style outer = _style;
        takeStyle(geometry);
        _painter.refresh(geometry, {signatureOf(geometry), _matrices.back(), _style.width, _style.bin});
        _style = outer;
    }

private:
    struct Style
    {
        float width = 1.0f;
        std::optional<int> bin;
    };
    void takeStyle(const osg::Node& node)
    {
        const osg::StateSet* state = node.getStateSet();
        if (!state)
            return;
        if (const auto* width =
                dynamic_cast<const osg::LineWidth*>(state->getAttribute(osg::StateAttribute::LINEWIDTH)))
            _style.width = width->getWidth();
        if (state->getRenderBinMode() != osg::StateSet::INHERIT_RENDERBIN_DETAILS)
            _style.bin = state->getBinNumber();
    }
    Painter& _painter;
    std::vector<osg::Matrixd> _matrices;
    Style _style;
};

bool DrapeableNode::Painter::Origin::operator==(const Origin& other) const
{
    return signature == other.signature && localToWorld == other.localToWorld &&
           lineWidth == other.lineWidth && bin == other.bin;
}

void DrapeableNode::Painter::refresh(const osg::Geometry& geometry, Origin origin)
{
    Entry& entry = _entries[&geometry];
    const bool known = entry.lastSeen != 0 && entry.origin == origin;
    // Batched shapes are built a few each frame; until its turn comes, a geometry is drawn as it was before.
    const bool waits = !known && origin.bin && _built && std::chrono::steady_clock::now() > _enough;
    if (!known && !waits) {
        const std::vector<DrapeShape> shapes = shapesOf(geometry, origin.localToWorld, origin.lineWidth);
        entry.origin = std::move(origin);
        entry.volumes.clear();
        entry.members.clear();
        entry.origin.bin ? makeMembers(entry, shapes) : makeVolumes(entry, shapes);
        _built = true;
    }
    _isBehind = _isBehind || waits;
    if (!waits || entry.lastSeen != 0)
        entry.lastSeen = _pass;
    _order.push_back(&geometry);
}

void DrapeableNode::Painter::makeVolumes(Entry& entry, const std::vector<DrapeShape>& shapes)
{
    for (const DrapeShape& shape : shapes) {
        Volume volume;
        volume.mesh = volumeOf(shape);
        if (!volume.mesh.geometry)
            continue;
        volume.state = new osg::StateSet();
        volume.state->addUniform(new osg::Uniform("ax_drapeColor", shape.color));
        volume.heights = new osg::Uniform("ax_drapeHeights", volume.ground.heights(0.0, 0.0));
        volume.heights->setDataVariance(osg::Object::DYNAMIC);
        volume.state->addUniform(volume.heights);
        volume.state->setDataVariance(osg::Object::DYNAMIC);
        entry.volumes.push_back(volume);
    }
}

void DrapeableNode::Painter::makeMembers(Entry& entry, const std::vector<DrapeShape>& shapes)
{
    for (const DrapeShape& shape : shapes) {
        DrapeBlock block = blockOf(shape);
        if (block.levels.empty())
            continue;
        const bool lines = shape.triangles.empty();
        entry.members.push_back(std::make_shared<DrapeBatch::Member>(std::move(block)));
        _batches.try_emplace({*entry.origin.bin, lines, shape.color}, shape.color, lines)
            .first->second.add(entry.members.back());
    }
}

void DrapeableNode::Painter::findMapNode(const osg::NodePath& path)
{
    if (_mapNode.valid() || path.empty() || (_lastSearch != 0 && _pass - _lastSearch < 100))
        return;
    _lastSearch = _pass;
    _mapNode = MapNode::findMapNode(path.front());
}

void DrapeableNode::Painter::draw(Volume& volume, const DrapeView& view, osgUtil::CullVisitor& cv)
{
    osg::BoundingSphered ground = volume.mesh.bound;
    ground.radius() += DrapeGround::kHighest;
    if (cv.isCulled(osg::BoundingSphere(osg::Vec3(ground.center() * view.worldToLocal),
                                        static_cast<float>(ground.radius()))))
        return;
    if (!volume.ground.isKnown() || volume.ground.isDue(view.frame, kHeightInterval))
        volume.ground.lookUp(volume.mesh, view.map, view.eye, view.frame);
    const double distance = (view.eye - volume.mesh.origin).length() + volume.mesh.bound.radius();
    const osg::Vec3f heights = volume.ground.heights(volume.mesh.sagitta, distance);
    osg::Vec3f before;
    if (!volume.heights->get(before) || before != heights)
        volume.heights->set(heights);
    osg::ref_ptr<osg::RefMatrix> matrix =
        new osg::RefMatrix(osg::Matrixd::translate(volume.mesh.origin) * view.worldToView);
    cv.pushStateSet(volume.state.get());
    for (osg::StateSet* pass : {_passes->mark.get(), _passes->paint.get()}) {
        cv.pushStateSet(pass);
        cv.addDrawableAndDepth(volume.mesh.geometry.get(), matrix.get(), 0.0f);
        cv.popStateSet();
    }
    cv.popStateSet();
}

/// Brings the shapes up to date with the node's children.
void DrapeableNode::Painter::collect(DrapeableNode& node, const osg::Matrixd& localToWorld,
                                     unsigned traversalMask)
{
    ++_pass;
    _order.clear();
    _built = false;
    _isBehind = false;
    _enough = std::chrono::steady_clock::now() + kBuildTime;
    Collector collector(*this, localToWorld, traversalMask);
    for (unsigned i = 0; i < node.getNumChildren(); ++i)
        node.getChild(i)->accept(collector);
    for (auto entry = _entries.begin(); entry != _entries.end();)
        entry = entry->second.lastSeen == _pass ? std::next(entry) : _entries.erase(entry);
    for (auto batch = _batches.begin(); batch != _batches.end();)
        batch = batch->second.tidy() ? std::next(batch) : _batches.erase(batch);
}

/// Its picture goes on changing while shapes wait; whoever leaves out frames in
/// which nothing changes learns it by OSG's own word for that.
void DrapeableNode::Painter::tellWhetherDone(DrapeableNode& node)
{
    if (_isBehind == _variance.has_value())
        return;
    if (_isBehind) {
        _variance = node.getDataVariance();
        node.setDataVariance(osg::Object::DYNAMIC);
    } else {
        node.setDataVariance(*_variance);
        _variance.reset();
    }
}

void DrapeableNode::Painter::cull(DrapeableNode& node, osgUtil::CullVisitor& cv)
{
    if (!cv.getCurrentCamera() || (node.getNumChildren() == 0 && _entries.empty()))
        return;
    const osg::Matrixd localToWorld = osg::computeLocalToWorld(cv.getNodePath(), true);
    collect(node, localToWorld, cv.getTraversalMask());
    tellWhetherDone(node);

    const bool anything =
        !_batches.empty() || std::any_of(_order.begin(), _order.end(), [this](const osg::Geometry* geometry) {
            const auto entry = _entries.find(geometry);
            return entry != _entries.end() && !entry->second.volumes.empty();
        });
    if (!anything)
        return;

    findMapNode(cv.getNodePath());
    if (!_passes)
        _passes = DrapePasses::shared();
    if (!_frame) {
        _frame = new osg::StateSet();
        _frame->setDataVariance(osg::Object::DYNAMIC);
        _pixel = new osg::Uniform("ax_drapePixel", 0.0f);
        _pixel->setDataVariance(osg::Object::DYNAMIC);
        _frame->addUniform(_pixel);
    }
    const osg::Viewport* viewport = cv.getViewport();
    const double yScale = (*cv.getProjectionMatrix())(1, 1); // 1 / tan(half the field of view)
    if (viewport && viewport->height() > 0.0 && yScale > 0.0)
        _pixel->set(static_cast<float>(2.0 / (yScale * viewport->height())));

    if (firstInFrame(cv.getCurrentCamera(), cv.getFrameStamp() ? cv.getFrameStamp()->getFrameNumber() : 0u)) {
        cv.pushStateSet(_passes->clear.get());
        cv.addDrawableAndDepth(_clear.get(), cv.getModelViewMatrix(), 0.0f);
        cv.popStateSet();
    }
    if (!cv.getState() || !StencilClear::contextHasStencil(cv.getState()->getContextID()))
        return;

    DrapeView view;
    view.worldToLocal = osg::Matrixd::inverse(localToWorld);
    view.worldToView = view.worldToLocal * *cv.getModelViewMatrix();
    view.eye = osg::Vec3d() * osg::Matrixd::inverse(view.worldToView);
    view.horizon = Horizon(view.eye);
    float pixel = 0.0f;
    _pixel->get(pixel);
    // Along parallel lines of sight a pixel is as large everywhere: as it is at the ground, seen from the
    // eye.
    if ((*cv.getProjectionMatrix())(3, 3) != 0.0) {
        pixel /= static_cast<float>(std::max(1.0, Util::toGeodetic(osg::EllipsoidModel(), view.eye).height));
        _pixel->set(pixel);
    }
    view.pixel = static_cast<double>(pixel);
    view.frame = cv.getFrameStamp() ? cv.getFrameStamp()->getFrameNumber() : 0u;
    view.map = _mapNode;
    cv.pushStateSet(_frame.get());
    for (const osg::Geometry* geometry : _order) {
        const auto entry = _entries.find(geometry);
        if (entry == _entries.end())
            continue;
        for (Volume& volume : entry->second.volumes)
            if (!view.horizon.hides(volume.mesh.occludee))
                draw(volume, view, cv);
    }
    unsigned lookUps = kMostLookUps;
    for (auto& batch : _batches)
        batch.second.cull(cv, view, *_passes, lookUps);
    cv.popStateSet();
    _isBehind = _isBehind || lookUps == 0;
    tellWhetherDone(node);
}

void DrapeableNode::Painter::releaseGLObjects(osg::State* state) const
{
    if (state)
        StencilClear::forgetContext(state->getContextID());
    if (_passes)
        for (osg::StateSet* pass : {_passes->mark.get(), _passes->paint.get(), _passes->markMany.get(),
                                    _passes->markManyBefore.get(), _passes->markManyFlat.get(),
                                    _passes->paintFrame.get(), _passes->clear.get()})
            pass->releaseGLObjects(state);
    for (const auto& entry : _entries)
        for (const Volume& volume : entry.second.volumes)
            volume.mesh.geometry->releaseGLObjects(state);
    for (const auto& batch : _batches)
        batch.second.releaseGLObjects(state);
}
} // namespace osgEarth
