#include "scene/shape/AxWorldStates.h"

#include <osg/LineWidth>
#include <osg/observer_ptr>
#include <osg/Program>

namespace {
// axEyeHigh and axEyeLow: the eye in two parts, metres. axRound: one over the
// radii of the body that hides things, which makes it a sphere of radius 1.
// axHorizon: the square of the eye's distance from the tangent to that sphere.
const char vertexSource[] = R"(#version 330 compatibility
uniform vec3 axEyeHigh;
uniform vec3 axEyeLow;
uniform vec3 axRound;
in vec3 axRest;
out vec3 axWay;
flat out vec4 axColor;
void main()
{
    vec3 way = (gl_Vertex.xyz - axEyeHigh) + (axRest - axEyeLow);
    axWay = way * axRound;
    axColor = gl_Color;
    gl_Position = gl_ProjectionMatrix * vec4(mat3(gl_ModelViewMatrix) * way, 1.0);
    // Depth is not looked at; between the clip planes from a few centimetres on.
    gl_Position.z = gl_Position.w - 0.1;
}
)";
// Where a part may be behind the globe.
const char hidingSource[] = R"(#version 330 compatibility
uniform vec3 axEyeRound;
uniform float axHorizon;
in vec3 axWay;
flat in vec4 axColor;
void main()
{
    float down = -dot(axWay, axEyeRound);
    if (down > axHorizon && down * down > axHorizon * dot(axWay, axWay))
        discard;
    gl_FragColor = axColor;
}
)";
// Where nothing is, which costs software renderers far less.
const char plainSource[] = R"(#version 330 compatibility
flat in vec4 axColor;
void main()
{
    gl_FragColor = axColor;
}
)";

osg::ref_ptr<osg::Program> MakeProgram(const char* name, const char* fragmentSource)
{
    osg::ref_ptr<osg::Program> program = new osg::Program;
    program->setName(name);
    program->addShader(new osg::Shader(osg::Shader::VERTEX, vertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, fragmentSource));
    program->addBindAttribLocation("axRest", AxShapeBatches::restAttribute);
    return program;
}
} // namespace

AxWorldStates::AxWorldStates()
{
    const osg::ref_ptr<osg::Program> plain = MakeProgram("AxWorldGeometry", plainSource);
    const osg::ref_ptr<osg::Program> hiding = MakeProgram("AxWorldGeometry, hiding", hidingSource);
    for (const bool inSight : {false, true})
        for (const bool coarse : {false, true}) {
            osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
            state->setAttributeAndModes(inSight ? plain : hiding);
            // Short lines gain little by it, and many of them are what it costs most for.
            state->setMode(GL_LINE_SMOOTH, coarse ? osg::StateAttribute::OFF : osg::StateAttribute::ON);
            all[inSight][coarse] = state;
        }
}

osg::ref_ptr<AxWorldStates> AxWorldStates::Shared()
{
    static osg::observer_ptr<AxWorldStates> shared;
    osg::ref_ptr<AxWorldStates> states;
    if (!shared.lock(states))
        shared = states = new AxWorldStates;
    return states;
}

osg::StateSet* AxWorldStates::OfWidth(float pixels)
{
    osg::ref_ptr<osg::StateSet>& state = widths[pixels];
    if (!state) {
        state = new osg::StateSet;
        state->setAttributeAndModes(new osg::LineWidth(pixels));
    }
    return state;
}
