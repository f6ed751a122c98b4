#include "mission/aircraft/AxTrailGeometry.h"
#include "mission/aircraft/AxGeocentricDrawing.h"

#include <osg/GLExtensions>
#include <osg/LineWidth>
#include <osg/observer_ptr>
#include <osgUtil/CullVisitor>

#include <algorithm>
#include <cmath>
#include <map>

namespace {
constexpr int trailBin = 14; // over areas, below the links of labels and models
constexpr double hardlySeenPixels = 0.6;

// Grows by a part, so that little is reserved in vain and little is copied.
template <typename Values> void ReserveForOne(Values& values)
{
    constexpr std::size_t least = 256;
    if (values.size() == values.capacity())
        values.reserve(std::min<std::size_t>(AxTrailGeometry::mostVertices,
                                             values.size() + std::max(least, values.size() / 8)));
}

// One for all trails of a width, so that many of them are drawn without a change of state between them.
osg::ref_ptr<osg::StateSet> TrailState(float width)
{
    static std::map<float, osg::observer_ptr<osg::StateSet>> shared;
    osg::ref_ptr<osg::StateSet> state;
    if (shared[width].lock(state))
        return state;
    state = AxGeocentric::State(trailBin);
    state->setAttributeAndModes(new osg::LineWidth(width));
    state->setMode(GL_LINE_SMOOTH, osg::StateAttribute::ON);
    shared[width] = state.get();
    return state;
}
} // namespace

struct AxTrailGeometry::Vertex
{
    osg::Vec3f high;
    osg::Vec4b rest;
};

AxTrailGeometry::AxTrailGeometry(float width, const osg::Vec4f& lineColor)
    : points(new osg::Vec3Array), strip(new osg::DrawArrays(GL_LINE_STRIP, 0, 0)), color(lineColor),
      buffer(new osg::VertexBufferObject)
{
    setUseDisplayList(false);
    setSupportsDisplayList(false);
    setUseVertexBufferObjects(true);
    setVertexArray(points);
    setColorArray(new osg::Vec4Array(1, &color), osg::Array::BIND_OVERALL);
    addPrimitiveSet(strip);
    setStateSet(TrailState(width));
}

AxTrailGeometry::~AxTrailGeometry() = default;

void AxTrailGeometry::SetJoint(const osg::Vec3d& world)
{
    joint = world;
    box.expandBy(osg::Vec3f(world));
    uploaded = 0;
    dirtyBound();
}

bool AxTrailGeometry::Append(const osg::Vec3d& world)
{
    const osg::Vec3f high = AxGeocentric::High(world);
    if (IsFull() || (!points->empty() && points->back() == high))
        return false;
    ReserveForOne(points->asVector());
    ReserveForOne(rest);
    // The one before was perhaps drawn elsewhere.
    if (head)
        uploaded = std::min(uploaded, Count() - 1);
    head.reset();
    points->push_back(high);
    rest.push_back(AxGeocentric::Rest(world));
    detail.Add(world);
    points->dirty();
    strip->setCount(Count());
    strip->dirty();
    dirtyGLObjects();
    if (!box.contains(high)) {
        // A metre more than single precision leaves over; the line also grows without asking each time.
        constexpr float margin = 50.0f;
        box.expandBy(high - osg::Vec3f(margin, margin, margin));
        box.expandBy(high + osg::Vec3f(margin, margin, margin));
        dirtyBound();
    }
    return true;
}

void AxTrailGeometry::SetHead(const std::optional<osg::Vec3d>& world)
{
    if (Count() == 0 || world == head)
        return;
    head = world;
    uploaded = std::min(uploaded, Count() - 1);
    points->dirty();
}

std::size_t AxTrailGeometry::Bytes() const
{
    return points->asVector().capacity() * sizeof(osg::Vec3f) + rest.capacity() * sizeof(osg::Vec4b) +
           detail.Runs().capacity() * sizeof(AxTrailDetail::Run);
}

void AxTrailGeometry::accept(osg::NodeVisitor& visitor)
{
    if (!visitor.validNodeMask(*this))
        return;
    osgUtil::CullVisitor* cull = visitor.asCullVisitor();
    const AxGeocentric::ClipPlanesKept kept(cull);
    osg::Geometry::accept(visitor);
}

AxTrailGeometry::Vertex AxTrailGeometry::vertex(int index) const
{
    if (head && index == Count() - 1)
        return {AxGeocentric::High(*head), AxGeocentric::Rest(*head)};
    const auto i = static_cast<std::size_t>(index);
    return {(*points)[i], rest[i]};
}

// The joint, or the first point once more, and then the points.
bool AxTrailGeometry::upload(osg::State& state) const
{
    osg::GLBufferObject* object = buffer->getOrCreateGLBufferObject(state.getContextID());
    if (!object)
        return false;
    auto* gl = state.get<osg::GLExtensions>();
    object->bindBuffer();
    if (object != filled || Count() > room) {
        constexpr int leastRoom = 1024;
        filled = object;
        room = std::min(mostVertices, std::max(leastRoom, 2 * Count()));
        uploaded = 0;
        gl->glBufferData(GL_ARRAY_BUFFER_ARB, static_cast<GLsizeiptr>(room + 1) * GLsizeiptr(sizeof(Vertex)),
                         nullptr, GL_DYNAMIC_DRAW_ARB);
    }
    if (uploaded >= Count())
        return true;
    std::vector<Vertex> fresh;
    fresh.reserve(static_cast<std::size_t>(Count() - uploaded + 1));
    if (uploaded == 0)
        fresh.push_back(joint ? Vertex{AxGeocentric::High(*joint), AxGeocentric::Rest(*joint)} : vertex(0));
    const int first = uploaded == 0 ? 0 : uploaded + 1;
    for (int i = uploaded; i < Count(); ++i)
        fresh.push_back(vertex(i));
    gl->glBufferSubData(GL_ARRAY_BUFFER_ARB, GLintptr(first) * GLintptr(sizeof(Vertex)),
                        static_cast<GLsizeiptr>(fresh.size() * sizeof(Vertex)), fresh.data());
    uploaded = Count();
    return true;
}

void AxTrailGeometry::drawRuns(const osg::Vec3d& eye, double partOfDistance, osg::State& state) const
{
    auto* gl = state.get<osg::GLExtensions>();
    const auto draw = [&](int first, int stride, int count) {
        if (count < 2)
            return;
        const GLsizei step = stride * static_cast<GLsizei>(sizeof(Vertex));
        const std::size_t offset = static_cast<std::size_t>(first) * sizeof(Vertex);
        glVertexPointer(3, GL_FLOAT, step, reinterpret_cast<const void*>(offset));
        gl->glVertexAttribPointer(AxGeocentric::restAttribute, 4, GL_BYTE, GL_TRUE, step,
                                  reinterpret_cast<const void*>(offset + sizeof(osg::Vec3f)));
        glDrawArrays(GL_LINE_STRIP, 0, count);
    };
    if (joint)
        draw(0, 1, 2);
    int first = 0;
    for (const AxTrailDetail::Run& run : detail.Runs()) {
        // Up to the first point of the next run.
        const int steps = std::min(Count() - 1 - first, AxTrailDetail::runLength);
        const int stride = detail.StrideFor(run, eye, partOfDistance);
        const int groups = steps / stride;
        // Behind the joint that is one farther.
        draw(1 + first, stride, groups + 1);
        draw(1 + first + groups * stride, 1, steps - groups * stride + 1);
        first += AxTrailDetail::runLength;
    }
}

void AxTrailGeometry::drawImplementation(osg::RenderInfo& info) const
{
    if (Count() == 0)
        return;
    osg::State& state = *info.getState();
    const osg::Vec3d eye = AxGeocentric::SetUniforms(state);
    const osg::Viewport* viewport = state.getCurrentViewport();
    const osg::Matrixd& projection = state.getProjectionMatrix();
    // With parallel lines of sight nothing is far away.
    const bool isPerspective = projection(3, 3) == 0.0;
    const double pixels = viewport && isPerspective ? 0.5 * projection(1, 1) * viewport->height() : 1e6;

    state.disableAllVertexArrays();
    state.unbindVertexBufferObject();
    auto* gl = state.get<osg::GLExtensions>();
    if (upload(state)) {
        glColor4fv(color.ptr());
        glEnableClientState(GL_VERTEX_ARRAY);
        gl->glEnableVertexAttribArray(AxGeocentric::restAttribute);
        drawRuns(eye, hardlySeenPixels / pixels, state);
        gl->glDisableVertexAttribArray(AxGeocentric::restAttribute);
        glDisableClientState(GL_VERTEX_ARRAY);
        glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    }
    gl->glBindBuffer(GL_ARRAY_BUFFER_ARB, 0);
}

void AxTrailGeometry::releaseGLObjects(osg::State* state) const
{
    osg::Geometry::releaseGLObjects(state);
    buffer->releaseGLObjects(state);
    filled = nullptr;
    room = 0;
    uploaded = 0;
}
