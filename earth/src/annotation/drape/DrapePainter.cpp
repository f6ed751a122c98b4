#include "DrapePainter.h"
#include <algorithm>
#include <cmath>
#include <mutex>
#include <osg/LineWidth>
#include <osg/Transform>
#include <osgEarth/MapNode>

namespace osgEarth {
namespace {
// What the ground can be while nobody knows it, metres above the ellipsoid.
constexpr double kLowestGround = -1000.0;
constexpr double kHighestGround = 9500.0;
// Heights are looked up again after this many frames, a few samples each.
constexpr unsigned kHeightInterval = 30;
constexpr unsigned kMostHeightSamples = 64;
// The ground between the samples may be higher or lower than any of them.
constexpr double kHeightMargin = 300.0;
// The drawn ground is coarser the farther it is and then lies beside the true
// one, below it above all, where flat faces cut through the round earth.
constexpr double kCoarseGround = 0.004; // of the distance

std::vector<unsigned> signatureOf(const osg::Geometry& geometry)
{
    std::vector<unsigned> signature;
    for (const osg::Array* array : {geometry.getVertexArray(), geometry.getColorArray()}) {
        signature.push_back(array ? array->getModifiedCount() : ~0u);
        signature.push_back(array ? array->getNumElements() : 0u);
        signature.push_back(unsigned(reinterpret_cast<size_t>(array)));
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
        _widths.push_back(1.0f);
    }
    void apply(osg::Node& node) override
    {
        const bool pushed = pushWidth(node);
        traverse(node);
        if (pushed)
            _widths.pop_back();
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
        const bool pushed = pushWidth(geometry);
        _painter.refresh(geometry, _matrices.back(), _widths.back());
        if (pushed)
            _widths.pop_back();
    }

private:
    bool pushWidth(const osg::Node& node)
    {
        const auto* width = node.getStateSet()
                                ? dynamic_cast<const osg::LineWidth*>(
                                      node.getStateSet()->getAttribute(osg::StateAttribute::LINEWIDTH))
                                : nullptr;
        if (width)
            _widths.push_back(width->getWidth());
        return width != nullptr;
    }
    Painter& _painter;
    std::vector<osg::Matrixd> _matrices;
    std::vector<float> _widths;
};

void DrapeableNode::Painter::refresh(const osg::Geometry& geometry, const osg::Matrixd& localToWorld,
                                     float lineWidth)
{
    Entry& entry = _entries[&geometry];
    const std::vector<unsigned> signature = signatureOf(geometry);
    const bool known = entry.lastSeen != 0 && entry.origin.signature == signature &&
                       entry.origin.localToWorld == localToWorld && entry.origin.lineWidth == lineWidth;
    if (!known) {
        entry.origin = {signature, localToWorld, lineWidth};
        entry.volumes.clear();
        for (const DrapeShape& shape : shapesOf(geometry, localToWorld, lineWidth)) {
            Volume volume;
            volume.mesh = volumeOf(shape);
            if (!volume.mesh.geometry)
                continue;
            volume.state = new osg::StateSet();
            volume.state->addUniform(new osg::Uniform("ax_drapeColor", shape.color));
            volume.heights = new osg::Uniform("ax_drapeHeights",
                                              osg::Vec3f(float(kLowestGround), float(kHighestGround), 0.0f));
            volume.heights->setDataVariance(osg::Object::DYNAMIC);
            volume.state->addUniform(volume.heights);
            volume.state->setDataVariance(osg::Object::DYNAMIC);
            entry.volumes.push_back(volume);
        }
    }
    entry.lastSeen = _pass;
    _order.push_back(&geometry);
}

/// Lowest and highest ground under a shape, as far as the terrain in memory knows it.
void DrapeableNode::Painter::lookUpHeights(Volume& volume, unsigned frame)
{
    if (volume.heightsKnown && frame - volume.heightsFrame < kHeightInterval)
        return;
    volume.heightsFrame = frame;
    osg::ref_ptr<MapNode> mapNode;
    double low = kLowestGround, high = kHighestGround, mean = 0.0;
    if (_mapNode.lock(mapNode) && mapNode->getTerrain()) {
        const SpatialReference* srs = mapNode->getMapSRS();
        const size_t step = std::max<size_t>(1, volume.mesh.samples.size() / kMostHeightSamples);
        unsigned found = 0;
        double lowest = 1e9, highest = -1e9, sum = 0.0;
        for (size_t i = 0; i < volume.mesh.samples.size(); i += step) {
            osg::Vec3d place;
            double height = 0.0;
            if (srs && srs->transformFromWorld(volume.mesh.samples[i], place) &&
                mapNode->getTerrain()->getHeight(srs, place.x(), place.y(), &height)) {
                lowest = std::min(lowest, height);
                highest = std::max(highest, height);
                sum += height;
                ++found;
            }
        }
        if (found > 0) {
            // Wide shapes have room for any mountain between their samples.
            const double margin =
                kHeightMargin + 0.5 * (highest - lowest) + 0.05 * volume.mesh.bound.radius();
            low = std::max(kLowestGround, lowest - margin);
            high = std::min(kHighestGround, highest + margin);
            mean = sum / found;
            volume.heightsKnown = true;
        }
    }
    volume.ground.set(low, high, mean);
}

void DrapeableNode::Painter::updateHeights(Volume& volume, const osg::Vec3d& eye, unsigned frame)
{
    lookUpHeights(volume, frame);
    const double distance = (eye - volume.mesh.origin).length() + volume.mesh.bound.radius();
    const double spare = kCoarseGround * distance;
    const osg::Vec3f heights(float(volume.ground.x() - spare),
                             float(volume.ground.y() + spare + volume.mesh.sagitta),
                             float(volume.ground.z()));
    osg::Vec3f before;
    if (!volume.heights->get(before) || before != heights)
        volume.heights->set(heights);
}

void DrapeableNode::Painter::findMapNode(const osg::NodePath& path)
{
    if (_mapNode.valid() || path.empty() || (_lastSearch != 0 && _pass - _lastSearch < 100))
        return;
    _lastSearch = _pass;
    _mapNode = MapNode::findMapNode(path.front());
}

void DrapeableNode::Painter::draw(Volume& volume, const osg::Matrixd& worldToView,
                                  const osg::Matrixd& worldToLocal, const osg::Vec3d& eye,
                                  osgUtil::CullVisitor& cv)
{
    osg::BoundingSphered ground = volume.mesh.bound;
    ground.radius() += kHighestGround;
    if (cv.isCulled(osg::BoundingSphere(osg::Vec3(ground.center() * worldToLocal), float(ground.radius()))))
        return;
    updateHeights(volume, eye, cv.getFrameStamp() ? cv.getFrameStamp()->getFrameNumber() : 0u);
    osg::ref_ptr<osg::RefMatrix> matrix =
        new osg::RefMatrix(osg::Matrixd::translate(volume.mesh.origin) * worldToView);
    cv.pushStateSet(volume.state.get());
    for (osg::StateSet* pass : {_passes->mark.get(), _passes->paint.get()}) {
        cv.pushStateSet(pass);
        cv.addDrawableAndDepth(volume.mesh.geometry.get(), matrix.get(), 0.0f);
        cv.popStateSet();
    }
    cv.popStateSet();
}

void DrapeableNode::Painter::cull(DrapeableNode& node, osgUtil::CullVisitor& cv)
{
    if (node.getNumChildren() == 0 || !cv.getCurrentCamera())
        return;
    ++_pass;
    _order.clear();
    const osg::Matrixd localToWorld = osg::computeLocalToWorld(cv.getNodePath(), true);
    Collector collector(*this, localToWorld, cv.getTraversalMask());
    for (unsigned i = 0; i < node.getNumChildren(); ++i)
        node.getChild(i)->accept(collector);
    for (auto entry = _entries.begin(); entry != _entries.end();)
        entry = entry->second.lastSeen == _pass ? std::next(entry) : _entries.erase(entry);

    const bool anything = std::any_of(_order.begin(), _order.end(), [this](const osg::Geometry* geometry) {
        return !_entries[geometry].volumes.empty();
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
        _pixel->set(float(2.0 / (yScale * viewport->height())));

    if (firstInFrame(cv.getCurrentCamera(), cv.getFrameStamp() ? cv.getFrameStamp()->getFrameNumber() : 0u)) {
        cv.pushStateSet(_passes->clear.get());
        cv.addDrawableAndDepth(_clear.get(), cv.getModelViewMatrix(), 0.0f);
        cv.popStateSet();
    }
    if (!cv.getState() || !StencilClear::contextHasStencil(cv.getState()->getContextID()))
        return;

    const osg::Matrixd worldToLocal = osg::Matrixd::inverse(localToWorld);
    const osg::Matrixd worldToView = worldToLocal * *cv.getModelViewMatrix();
    const osg::Vec3d eye = osg::Vec3d() * osg::Matrixd::inverse(worldToView);
    const Horizon horizon(eye);
    cv.pushStateSet(_frame.get());
    for (const osg::Geometry* geometry : _order)
        for (Volume& volume : _entries[geometry].volumes)
            if (!horizon.hides(volume.mesh.occludee))
                draw(volume, worldToView, worldToLocal, eye, cv);
    cv.popStateSet();
}

void DrapeableNode::Painter::releaseGLObjects(osg::State* state) const
{
    if (state)
        StencilClear::forgetContext(state->getContextID());
    if (_passes)
        for (osg::StateSet* pass : {_passes->mark.get(), _passes->paint.get(), _passes->clear.get()})
            pass->releaseGLObjects(state);
    for (const auto& entry : _entries)
        for (const Volume& volume : entry.second.volumes)
            volume.mesh.geometry->releaseGLObjects(state);
}
} // namespace osgEarth
