#include "scene/shape/AxHandleShape.h"

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/observer_ptr>
#include <osg/Program>
#include <osg/ShapeDrawable>
#include <osgUtil/CullVisitor>

#include <cmath>
#include <map>
#include <tuple>

namespace {
// After what is transparent on the ground, before labels.
constexpr int renderBin = 12;

// A disc with a dark rim, or a box with a face darker the more it is turned
// away. A sphere's outermost pixel fades, so that its edge is smooth.
const char* const lineVertexSource = R"(#version 330 compatibility
out vec3 facing;
out vec4 tint;
void main()
{
    facing = gl_NormalMatrix * gl_Normal;
    tint = gl_Color;
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
}
)";
const char* const lineFragmentSource = R"(#version 330 compatibility
in vec3 facing;
in vec4 tint;
out vec4 color;
void main()
{
    float front = abs(normalize(facing).z);
    float light = mix(0.25, 1.0, smoothstep(0.40, 0.66, front));
    color = vec4(tint.rgb * light, tint.a * smoothstep(0.0, 0.30, front));
}
)";

osg::ref_ptr<osg::StateSet> StateOfShapes()
{
    // Not kept beyond the last handle: a closed context takes along what a state set holds in it.
    static osg::observer_ptr<osg::StateSet> known;
    osg::ref_ptr<osg::StateSet> state;
    if (known.lock(state))
        return state;
    state = AxStateOnTop();
    osg::ref_ptr<osg::Program> program = new osg::Program;
    program->setName("Handles");
    program->addShader(new osg::Shader(osg::Shader::VERTEX, lineVertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, lineFragmentSource));
    state->setAttributeAndModes(program);
    state->setMode(GL_CULL_FACE, osg::StateAttribute::ON);
    known = state;
    return state;
}
} // namespace

osg::ref_ptr<osg::StateSet> AxStateOnTop()
{
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
    state->setAttributeAndModes(
        new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
    state->setMode(GL_BLEND, osg::StateAttribute::ON);
    state->setRenderBinDetails(renderBin, "DepthSortedBin");
    return state;
}

osg::ref_ptr<osg::Geode> AxHandleShape(int type, float size, const osg::Vec4f& color)
{
    using Key = std::tuple<int, float, osg::Vec4f>;
    static std::map<Key, osg::observer_ptr<osg::Geode>> known;
    if (type != 0 && type != 1)
        return nullptr;
    osg::ref_ptr<osg::Geode> geode;
    if (const auto same = known.find(Key(type, size, color)); same != known.end() && same->second.lock(geode))
        return geode;
    for (auto entry = known.begin(); entry != known.end();)
        entry = entry->second.valid() ? std::next(entry) : known.erase(entry);

    osg::ref_ptr<osg::Shape> shape;
    if (type == 0)
        shape = new osg::Sphere(osg::Vec3(), size);
    else
        shape = new osg::Box(osg::Vec3(), size);
    osg::ref_ptr<osg::TessellationHints> detail = new osg::TessellationHints;
    detail->setDetailRatio(0.35f); // within a fifth of a pixel of round
    osg::ref_ptr<osg::ShapeDrawable> drawable = new osg::ShapeDrawable(shape, detail);
    drawable->setColor(color);
    geode = new osg::Geode;
    geode->addDrawable(drawable);
    geode->setStateSet(StateOfShapes());
    geode->setCullingActive(false);
    known[Key(type, size, color)] = geode.get();
    return geode;
}

void AxDrawInPixels(osgUtil::CullVisitor& cv, const osg::Matrixd& localToWorld, osg::Node& shape)
{
    const osg::Viewport* viewport = cv.getViewport();
    if (!viewport || !cv.getModelViewMatrix() || !cv.getProjectionMatrix())
        return;
    const osg::Matrixd& projection = *cv.getProjectionMatrix();
    osg::ref_ptr<osg::RefMatrix> matrix = new osg::RefMatrix(localToWorld * *cv.getModelViewMatrix());
    const double depth = (osg::Vec4d(matrix->getTrans(), 1.0) * projection).w();
    if (!(depth > 0.0))
        return;
    const double metresPerPixel = 2.0 * depth / (std::abs(projection(1, 1)) * viewport->height());
    matrix->preMultScale(osg::Vec3d(metresPerPixel, metresPerPixel, metresPerPixel));
    cv.pushModelViewMatrix(matrix, osg::Transform::RELATIVE_RF);
    shape.accept(cv);
    cv.popModelViewMatrix();
}
