#include "mission/aircraft/AxGeocentricDrawing.h"
#include "scene/base/AxSinglePrecision.h"
#include "scene/base/AxWgs84.h"
#include "scene/shape/AxStateOverGround.h"
#include "scene/shape/AxWorldUniforms.h"

#include <osg/GLExtensions>
#include <osg/observer_ptr>
#include <osg/Program>

#include <algorithm>
#include <cmath>

namespace {
// Farther than that from the Earth's middle single precision leaves more over, metres.
constexpr double restLimit = 0.25;
// The body that hides lies so far below the ellipsoid, metres.
constexpr double bodyDepth = 500.0;

// axRound: one over the radii of the body that hides, which makes it a sphere of radius 1. axHorizon: the
// square of the eye's distance from where its view touches that; less than 0 for an eye within.
const char geocentricVertexSource[] = R"(#version 330 compatibility
uniform vec3 axEyeHigh;
uniform vec3 axEyeLow;
uniform vec3 axRound;
uniform vec3 axEyeRound;
uniform float axHorizon;
in vec4 axRest;
flat out vec4 axColor;
void main()
{
    vec3 way = (gl_Vertex.xyz - axEyeHigh) + (axRest.xyz * 0.25 - axEyeLow);
    axColor = gl_Color;
    gl_Position = gl_ProjectionMatrix * vec4(mat3(gl_ModelViewMatrix) * way, 1.0);
    vec3 round = way * axRound;
    float down = -dot(round, axEyeRound);
    bool hidden = axHorizon > 0.0 && down > axHorizon && down * down > axHorizon * dot(round, round);
    // Depth is not looked at, but what lies behind the globe is put behind the far plane.
    gl_Position.z = hidden ? 2.0 * gl_Position.w : gl_Position.w - 0.1;
}
)";
const char geocentricFragmentSource[] = R"(#version 330 compatibility
flat in vec4 axColor;
void main()
{
    gl_FragColor = axColor;
}
)";

osg::ref_ptr<osg::Program> GeocentricProgram()
{
    static osg::observer_ptr<osg::Program> shared;
    osg::ref_ptr<osg::Program> program;
    if (shared.lock(program))
        return program;
    program = new osg::Program;
    program->setName("AxGeocentric");
    program->addShader(new osg::Shader(osg::Shader::VERTEX, geocentricVertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, geocentricFragmentSource));
    program->addBindAttribLocation("axRest", AxGeocentric::restAttribute);
    shared = program.get();
    return program;
}
} // namespace

namespace AxGeocentric {
osg::Vec3f High(const osg::Vec3d& world)
{
    return {static_cast<float>(AxSinglePrecision(world.x())),
            static_cast<float>(AxSinglePrecision(world.y())),
            static_cast<float>(AxSinglePrecision(world.z()))};
}

osg::Vec4b Rest(const osg::Vec3d& world)
{
    osg::Vec4b parts;
    for (int i = 0; i < 3; ++i) {
        const double over = world[i] - AxSinglePrecision(world[i]);
        parts[static_cast<unsigned>(i)] =
            static_cast<signed char>(std::lround(std::clamp(over / restLimit, -1.0, 1.0) * 127.0));
    }
    return parts;
}

osg::ref_ptr<osg::StateSet> State(int bin)
{
    osg::ref_ptr<osg::StateSet> state = AxStateOverGround();
    state->setAttributeAndModes(GeocentricProgram());
    state->setRenderBinDetails(bin, "RenderBin");
    return state;
}

osg::Vec3d SetUniforms(osg::State& state)
{
    static const unsigned round = osg::Uniform::getNameID("axRound");
    static const unsigned eyeRound = osg::Uniform::getNameID("axEyeRound");
    static const unsigned horizon = osg::Uniform::getNameID("axHorizon");
    const osg::Vec3d eye = AxSetEyeUniforms(state);
    const osg::Program::PerContextProgram* program = state.getLastAppliedProgramObject();
    if (!program)
        return eye;
    constexpr double equator = 1.0 / (AxWgs84::semiMajorAxis - bodyDepth);
    constexpr double pole = 1.0 / (AxWgs84::semiMinorAxis - bodyDepth);
    const osg::Vec3d scale(equator, equator, pole);
    const osg::Vec3d scaled = osg::componentMultiply(eye, scale);
    auto* gl = state.get<osg::GLExtensions>();
    gl->glUniform3fv(program->getUniformLocation(round), 1, osg::Vec3f(scale).ptr());
    gl->glUniform3fv(program->getUniformLocation(eyeRound), 1, osg::Vec3f(scaled).ptr());
    gl->glUniform1f(program->getUniformLocation(horizon), static_cast<float>(scaled.length2() - 1.0));
    return eye;
}

ClipPlanesKept::ClipPlanesKept(osgUtil::CullVisitor* visitor) : cull(visitor)
{
    if (!cull)
        return;
    mode = cull->getComputeNearFarMode();
    inherited = cull->getInheritanceMask();
    cull->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
}

ClipPlanesKept::~ClipPlanesKept()
{
    if (!cull)
        return;
    cull->setComputeNearFarMode(mode);
    cull->setInheritanceMask(inherited);
}
} // namespace AxGeocentric
