#include "scene/shape/AxWorldGeometry.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxShapeBatch.h"
#include "scene/shape/AxShapeSurface.h"
#include "scene/shape/AxWorldStates.h"
#include "scene/shape/AxWorldUniforms.h"

#include <osg/LineWidth>
#include <osg/Program>
#include <osgUtil/CullVisitor>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

using namespace AxGlobe;

namespace {
constexpr unsigned restAttribute = AxShapeBatches::restAttribute;

// The bit of the stencil buffer that keeps the parts of a fill from being
// blended twice; it is 0 again afterwards.
constexpr GLuint onceBit = 0x80;

// How far below the lowest thing in sight the body that hides begins, metres.
constexpr double bodyMargin = 50.0;

// Altitude of the surface of the body that may hide a shape.
double BodyAltitude(const osg::Vec3d& eye, double lowest)
{
    const osg::Vec3d scaled(eye.x() / semiMajorAxis, eye.y() / semiMajorAxis,
                            eye.z() / AxWgs84::semiMinorAxis);
    const double eyeAltitude = (scaled.length() - 1.0) * AxWgs84::semiMinorAxis;
    return std::min({0.0, lowest, eyeAltitude}) - bodyMargin;
}

// What makes that body a sphere of radius 1.
osg::Vec3d OverRadii(double altitude)
{
    return {1.0 / (semiMajorAxis + altitude), 1.0 / (semiMajorAxis + altitude),
            1.0 / (AxWgs84::semiMinorAxis + altitude)};
}

// What single precision leaves over. Volatile, because GCC 12 otherwise
// vectorises the way to float and back into nothing, and the rest with it.
float Low(double value)
{
    const volatile float high = static_cast<float>(value);
    return static_cast<float>(value - static_cast<double>(high));
}

osg::Vec3f Low(const osg::Vec3d& value)
{
    return {Low(value.x()), Low(value.y()), Low(value.z())};
}

// Of a metre one metre ahead; more than any picture has where it is not known, and where all lines of sight
// are parallel.
double PixelsAtOneMetre(const osg::Viewport* viewport, const osg::Matrixd& projection)
{
    return viewport && projection(3, 3) == 0.0 ? 0.5 * projection(1, 1) * viewport->height() : 1e6;
}

bool IsFill(const osg::PrimitiveSet& primitives)
{
    return primitives.getMode() >= GL_TRIANGLES;
}
} // namespace

AxWorldGeometry::AxWorldGeometry() : states(AxWorldStates::Shared())
{
    setUseDisplayList(false);
    setSupportsDisplayList(false);
    setUseVertexBufferObjects(true);
    SetPoints({});
}

AxWorldGeometry::AxWorldGeometry(const AxWorldGeometry& other, const osg::CopyOp& copy)
    : osg::Geometry(other, copy), coarseFill(other.coarseFill), coarseLine(other.coarseLine),
      coarseError(other.coarseError), coarseSteepest(other.coarseSteepest), coarseSides(other.coarseSides),
      lowest(other.lowest), steepest(other.steepest), sides(other.sides), states(other.states)
{
}

AxWorldGeometry::~AxWorldGeometry() = default;

void AxWorldGeometry::SetPoints(const std::vector<osg::Vec3d>& world)
{
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec3Array> rest = new osg::Vec3Array;
    points->reserve(world.size());
    rest->reserve(world.size());
    for (const osg::Vec3d& point : world) {
        points->push_back(osg::Vec3f(point));
        rest->push_back(Low(point));
    }
    removePrimitiveSet(0, getNumPrimitiveSets());
    coarseFill = nullptr;
    coarseLine = nullptr;
    batched = nullptr;
    sides = AxFillSides();
    coarseSides = AxFillSides();
    setVertexArray(points);
    setVertexAttribArray(restAttribute, rest, osg::Array::BIND_PER_VERTEX);
    setColorArray(new osg::Vec4Array(static_cast<unsigned>(world.size())), osg::Array::BIND_PER_VERTEX);
    lowest = 0.0;
    steepest = 0.5 * pi;
    dirtyBound();
}

void AxWorldGeometry::SetShape(const AxShapeMesh& mesh, bool closed, const osg::Vec4f& edge,
                               const osg::Vec4f& fill)
{
    const bool isFilled = !mesh.triangles.empty() && fill.a() > visibleAlpha;
    const auto outline = static_cast<unsigned>(mesh.outlineCount);
    // A vertex has one colour, so the fill has the outline's points once more.
    std::vector<osg::Vec3d> points(mesh.points.begin(), mesh.points.begin() + outline);
    if (isFilled)
        points.insert(points.end(), mesh.points.begin(), mesh.points.end());
    SetPoints(points);
    lowest = mesh.lowest;
    steepest = mesh.steepest;
    auto* colors = static_cast<osg::Vec4Array*>(getColorArray());
    std::fill(colors->begin(), colors->begin() + outline, edge);
    std::fill(colors->begin() + outline, colors->end(), fill);
    if (isFilled) {
        osg::ref_ptr<osg::DrawElementsUInt> triangles = new osg::DrawElementsUInt(GL_TRIANGLES);
        triangles->reserve(mesh.triangles.size());
        for (const unsigned index : mesh.triangles)
            triangles->push_back(outline + index);
        addPrimitiveSet(triangles);
    }
    if (outline > 0)
        addPrimitiveSet(
            new osg::DrawArrays(closed ? GL_LINE_LOOP : GL_LINE_STRIP, 0, static_cast<int>(outline)));
    if (!isFilled)
        return;
    std::vector<unsigned> ring(outline);
    std::iota(ring.begin(), ring.end(), 0u);
    sides = AxFillSides(mesh.points, ring, mesh.triangles);
    if (!(mesh.coarseError > 0.0))
        return;
    const auto elements = [](GLenum mode, const std::vector<unsigned>& indices, unsigned offset) {
        osg::ref_ptr<osg::DrawElementsUInt> set = new osg::DrawElementsUInt(mode);
        set->reserve(indices.size());
        for (const unsigned index : indices)
            set->push_back(offset + index);
        set->setElementBufferObject(new osg::ElementBufferObject);
        return set;
    };
    coarseFill = elements(GL_TRIANGLES, mesh.coarseTriangles, outline);
    coarseLine = elements(closed ? GL_LINE_LOOP : GL_LINE_STRIP, mesh.coarseOutline, 0);
    coarseError = mesh.coarseError;
    coarseSteepest = mesh.coarseSteepest;
    coarseSides = AxFillSides(mesh.points, mesh.coarseOutline, mesh.coarseTriangles);
}

// One state for all shapes of a width: between those nothing has to be changed.
void AxWorldGeometry::SetLineWidth(float pixels)
{
    setStateSet(states->OfWidth(pixels));
}

float AxWorldGeometry::GetLineWidth() const
{
    const osg::StateSet* state = getStateSet();
    const auto* width =
        state ? dynamic_cast<const osg::LineWidth*>(state->getAttribute(osg::StateAttribute::LINEWIDTH))
              : nullptr;
    return width ? width->getWidth() : 1.0f;
}

osg::BoundingBox AxWorldGeometry::computeBoundingBox() const
{
    // Half a metre is what single precision leaves open at the earth's surface.
    constexpr float roundOff = 1.0f;
    osg::BoundingBox box;
    if (const auto* points = dynamic_cast<const osg::Vec3Array*>(getVertexArray()))
        for (const osg::Vec3f& point : *points)
            box.expandBy(point);
    if (box.valid()) {
        box._min -= osg::Vec3f(roundOff, roundOff, roundOff);
        box._max += osg::Vec3f(roundOff, roundOff, roundOff);
    }
    return box;
}

bool AxWorldGeometry::IsBeyondHorizon(const osg::Vec3d& eye) const
{
    const osg::BoundingSphere& bound = getBound();
    if (!bound.valid())
        return true;
    const osg::Vec3d center = bound.center();
    const double radius = static_cast<double>(bound.radius());
    const double body = AxWgs84::semiMinorAxis + BodyAltitude(eye, lowest);
    const double distance = center.length();
    if (radius >= distance || eye.length() <= body)
        return false;
    const double between = std::acos(std::clamp((eye * center) / (eye.length() * distance), -1.0, 1.0));
    const double reach =
        std::acos(body / eye.length()) + std::acos(std::min(body / (distance + radius), 1.0));
    return between - std::asin(radius / distance) > reach;
}

// Whether nothing of it can be behind the globe: all of it lies before the
// plane of the horizon.
bool AxWorldGeometry::IsInSight(const osg::Vec3d& eye) const
{
    const osg::BoundingSphere& bound = getBound();
    const osg::Vec3d round = OverRadii(BodyAltitude(eye, lowest));
    const osg::Vec3d eyeRound = osg::componentMultiply(eye, round);
    const osg::Vec3d center = osg::componentMultiply(osg::Vec3d(bound.center()), round);
    return bound.valid() &&
           center * eyeRound - static_cast<double>(bound.radius()) * round.z() * eyeRound.length() > 1.0;
}

// Whether so much of the fill that it can be seen may lie behind other parts of it.
bool AxWorldGeometry::MayFold(const osg::Vec3d& eye, double pixelsAtOneMetre, bool coarse) const
{
    constexpr double hardlySeenPixels = 2.0; // square ones
    const osg::BoundingSphere& bound = getBound();
    const osg::Vec3d center = bound.center();
    const double radius = static_cast<double>(bound.radius());
    const osg::Vec3d sight = eye - center;
    const double distance = sight.length();
    const double fromCenter = center.length();
    if (radius >= distance || radius >= fromCenter)
        return true;
    // Not while all of it is seen from above.
    const double slant = std::acos(std::clamp((sight * center) / (distance * fromCenter), -1.0, 1.0));
    const double slope = coarse ? coarseSteepest : steepest;
    if (slant + std::asin(radius / distance) + std::asin(radius / fromCenter) + slope < 0.5 * pi)
        return false;
    // Too small for it to matter.
    if (pi * std::pow(radius * pixelsAtOneMetre / distance, 2) < hardlySeenPixels)
        return false;
    const double angle = (coarse ? coarseSides : sides).CoveringItself(eye);
    return !(angle * pixelsAtOneMetre * pixelsAtOneMetre < hardlySeenPixels);
}

// Whether what the coarse shape is off cannot be seen.
bool AxWorldGeometry::isSmall(const osg::Vec3d& eye, double pixelsAtOneMetre) const
{
    constexpr double hardlySeenPixels = 1.5;
    if (!coarseFill || !coarseLine)
        return false;
    const osg::BoundingSphere& bound = getBound();
    const double distance = (eye - osg::Vec3d(bound.center())).length() - static_cast<double>(bound.radius());
    return coarseError * pixelsAtOneMetre < hardlySeenPixels * distance;
}

void AxWorldGeometry::drawFill(bool coarse, osg::State& state, bool hasBuffers) const
{
    if (coarse)
        return coarseFill->draw(state, hasBuffers);
    for (const auto& primitives : _primitives)
        if (IsFill(*primitives))
            primitives->draw(state, hasBuffers);
}

void AxWorldGeometry::drawLines(bool coarse, osg::State& state, bool hasBuffers) const
{
    if (coarse)
        return coarseLine->draw(state, hasBuffers);
    for (const auto& primitives : _primitives)
        if (!IsFill(*primitives))
            primitives->draw(state, hasBuffers);
}

void AxWorldGeometry::accept(osg::NodeVisitor& visitor)
{
    if (!visitor.validNodeMask(*this))
        return;
    osgUtil::CullVisitor* cull = visitor.asCullVisitor();
    if (cull && IsBeyondHorizon(cull->getEyeLocal()))
        return;
    visitor.pushOntoNodePath(this);
    if (cull) {
        // It is drawn whatever the clip planes are, and must not move them.
        const osg::CullSettings::ComputeNearFarMode mode = cull->getComputeNearFarMode();
        const osg::CullSettings::InheritanceMask inherited = cull->getInheritanceMask();
        cull->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
        const osg::Vec3d eye = cull->getEyeLocal();
        const double pixels = cull->getProjectionMatrix()
                                  ? PixelsAtOneMetre(cull->getViewport(), *cull->getProjectionMatrix())
                                  : 0.0;
        const bool coarse = pixels > 0.0 && isSmall(eye, pixels);
        const bool inSight = IsInSight(eye);
        cull->pushStateSet(states->all[inSight][coarse]);
        if (inSight && pixels > 0.0 && isOneOfMany(eye, pixels, coarse))
            drawWithOthers(*cull, eye);
        else
            visitor.apply(*this);
        cull->popStateSet();
        cull->setComputeNearFarMode(mode);
        cull->setInheritanceMask(inherited);
    } else {
        visitor.apply(*this);
    }
    visitor.popFromNodePath();
}

// The shape on its own; null for one whose arrays somebody else has made.
std::shared_ptr<const AxBatchMesh> AxWorldGeometry::batchMesh() const
{
    const auto* points = dynamic_cast<const osg::Vec3Array*>(getVertexArray());
    const auto* rest = dynamic_cast<const osg::Vec3Array*>(getVertexAttribArray(restAttribute));
    const auto* colors = dynamic_cast<const osg::Vec4Array*>(getColorArray());
    if (!points || !rest || !colors || rest->size() != points->size() || colors->size() != points->size())
        return nullptr;
    const std::vector<unsigned> source{points->getModifiedCount(), rest->getModifiedCount(),
                                       colors->getModifiedCount(), getNumPrimitiveSets()};
    if (batched && batchedFrom == source)
        return batched;
    auto mesh = std::make_shared<AxBatchMesh>();
    std::map<unsigned, unsigned> places;
    const auto take = [&](unsigned index) {
        const auto [place, isNew] = places.emplace(index, static_cast<unsigned>(mesh->points.size()));
        if (isNew) {
            mesh->points.push_back((*points)[index]);
            mesh->rest.push_back((*rest)[index]);
            mesh->colors.push_back((*colors)[index]);
        }
        return place->second;
    };
    const auto takeAll = [&](const osg::PrimitiveSet& primitives) {
        const unsigned count = primitives.getNumIndices();
        if (IsFill(primitives)) {
            for (unsigned i = 0; i < count; ++i)
                mesh->triangles.push_back(take(primitives.index(i)));
            return;
        }
        const bool isClosed = primitives.getMode() == GL_LINE_LOOP;
        for (unsigned i = 0; i + (isClosed ? 0 : 1) < count; ++i)
            for (const unsigned end : {i, (i + 1) % count})
                mesh->segments.push_back(take(primitives.index(end)));
    };
    if (coarseFill && coarseLine) {
        takeAll(*coarseFill);
        takeAll(*coarseLine);
    } else {
        for (const auto& primitives : _primitives)
            takeAll(*primitives);
    }
    batched = mesh;
    batchedFrom = source;
    return mesh;
}

// Whether it is so small and simple that it is best drawn together with others.
bool AxWorldGeometry::isOneOfMany(const osg::Vec3d& eye, double pixelsAtOneMetre, bool coarse) const
{
    // Of the radius: fills are sorted by distance, lines need not be.
    constexpr double largestFillPixels = 40.0, largestLinePixels = 160.0;
    constexpr unsigned mostPoints = 200;
    const bool hasFill =
        std::any_of(_primitives.begin(), _primitives.end(),
                    [](const osg::ref_ptr<osg::PrimitiveSet>& primitives) { return IsFill(*primitives); });
    const double largestPixels = hasFill ? largestFillPixels : largestLinePixels;
    const osg::BoundingSphere& bound = getBound();
    const double distance = (eye - osg::Vec3d(bound.center())).length();
    if (!bound.valid() || static_cast<double>(bound.radius()) * pixelsAtOneMetre > largestPixels * distance ||
        coarse != (coarseFill.valid() && coarseLine.valid()) ||
        (!coarse && getVertexArray()->getNumElements() > mostPoints))
        return false;
    return !hasFill || !MayFold(eye, pixelsAtOneMetre, coarse);
}

void AxWorldGeometry::drawWithOthers(osgUtil::CullVisitor& cull, const osg::Vec3d& eye)
{
    const std::shared_ptr<const AxBatchMesh> mesh = batchMesh();
    // Whoever hangs a callback on a shape wants it drawn by itself.
    if (!mesh || getCullCallback() || getDrawCallback())
        return cull.apply(*this);
    if (isCullingActive() && cull.isCulled(getBoundingBox()))
        return;
    if (getStateSet())
        cull.pushStateSet(getStateSet());
    states->batches->Take(mesh, cull, static_cast<float>((eye - osg::Vec3d(getBound().center())).length()));
    if (getStateSet())
        cull.popStateSet();
}

osg::Vec3d AxSetEyeUniforms(osg::State& state)
{
    static const unsigned eyeHigh = osg::Uniform::getNameID("axEyeHigh");
    static const unsigned eyeLow = osg::Uniform::getNameID("axEyeLow");
    const osg::Vec3d eye = osg::Matrixd::inverse(state.getModelViewMatrix()).getTrans();
    if (const osg::Program::PerContextProgram* program = state.getLastAppliedProgramObject()) {
        auto* gl = state.get<osg::GLExtensions>();
        gl->glUniform3fv(program->getUniformLocation(eyeHigh), 1, osg::Vec3f(eye).ptr());
        gl->glUniform3fv(program->getUniformLocation(eyeLow), 1, Low(eye).ptr());
    }
    return eye;
}

void AxWorldGeometry::setHorizon(const osg::Vec3d& eye, osg::State& state) const
{
    static const unsigned round = osg::Uniform::getNameID("axRound");
    static const unsigned eyeRound = osg::Uniform::getNameID("axEyeRound");
    static const unsigned horizon = osg::Uniform::getNameID("axHorizon");
    const osg::Program::PerContextProgram* program = state.getLastAppliedProgramObject();
    if (!program)
        return;
    auto* gl = state.get<osg::GLExtensions>();
    const auto set = [&](unsigned name, const osg::Vec3f& value) {
        gl->glUniform3fv(program->getUniformLocation(name), 1, value.ptr());
    };
    const GLint hides = program->getUniformLocation(horizon);
    if (hides < 0)
        return;
    const osg::Vec3d scale = OverRadii(BodyAltitude(eye, lowest));
    const osg::Vec3d scaled = osg::componentMultiply(eye, scale);
    set(round, osg::Vec3f(scale));
    set(eyeRound, osg::Vec3f(scaled));
    gl->glUniform1f(hides, static_cast<float>(std::max(scaled.length2() - 1.0, 0.0)));
}

void AxWorldGeometry::drawImplementation(osg::RenderInfo& info) const
{
    osg::State& state = *info.getState();
    const osg::Vec3d eye = AxSetEyeUniforms(state);
    setHorizon(eye, state);
    const bool hasBuffers =
        state.useVertexBufferObject(_supportsVertexBufferObjects && _useVertexBufferObjects);
    const bool hasArrayObjects = hasBuffers && state.useVertexArrayObject(_useVertexArrayObject);
    osg::VertexArrayState* arrays = state.getCurrentVertexArrayState();
    arrays->setVertexBufferObjectSupported(hasBuffers);
    drawVertexArraysImplementation(info);

    const double pixels = PixelsAtOneMetre(state.getCurrentViewport(), state.getProjectionMatrix());
    const bool coarse = isSmall(eye, pixels);
    const bool isStencilFree = !state.getLastAppliedMode(GL_STENCIL_TEST);
    const bool hasFill = std::any_of(_primitives.begin(), _primitives.end(),
                                     [](const auto& primitives) { return IsFill(*primitives); });
    if (hasFill && isStencilFree && MayFold(eye, pixels, coarse)) {
        // Marks the pixels first, then paints each and takes its mark away.
        glEnable(GL_STENCIL_TEST);
        glStencilMask(onceBit);
        glStencilFunc(GL_ALWAYS, onceBit, onceBit);
        glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        drawFill(coarse, state, hasBuffers);
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        glStencilFunc(GL_EQUAL, onceBit, onceBit);
        glStencilOp(GL_KEEP, GL_KEEP, GL_ZERO);
        drawFill(coarse, state, hasBuffers);
        glStencilMask(~0u);
        glDisable(GL_STENCIL_TEST);
        state.haveAppliedAttribute(osg::StateAttribute::STENCIL);
        state.haveAppliedAttribute(osg::StateAttribute::COLORMASK);
        state.haveAppliedMode(GL_STENCIL_TEST, osg::StateAttribute::OFF);
    } else {
        drawFill(coarse, state, hasBuffers);
    }
    drawLines(coarse, state, hasBuffers);

    if (hasBuffers && !hasArrayObjects) {
        arrays->unbindVertexBufferObject();
        arrays->unbindElementBufferObject();
    }
}

void AxWorldGeometry::resizeGLObjectBuffers(unsigned maxSize)
{
    osg::Geometry::resizeGLObjectBuffers(maxSize);
    for (const auto& bySight : states->all)
        for (const auto& state : bySight)
            state->resizeGLObjectBuffers(maxSize);
}

void AxWorldGeometry::releaseGLObjects(osg::State* state) const
{
    osg::Geometry::releaseGLObjects(state);
    states->batches->ReleaseGLObjects(state);
    for (const auto& bySight : states->all)
        for (const auto& shared : bySight)
            shared->releaseGLObjects(state);
}
