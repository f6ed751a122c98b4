#include "scene/shape/AxHandlePoints.h"
#include "scene/shape/AxHandleShape.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/observer_ptr>
#include <osg/PointSprite>
#include <osg/Program>
#include <osgUtil/CullVisitor>

namespace {
const char* const pointVertexSource = R"(#version 330 compatibility
uniform float ax_pixelScale; // how many pixels a pixel of the layout is drawn with
out vec4 tint;
out float radius;
void main()
{
    tint = gl_Color;
    radius = gl_MultiTexCoord0.x * ax_pixelScale;
    gl_PointSize = 2.0 * radius + 2.0;
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
}
)";
const char* const pointFragmentSource = R"(#version 330 compatibility
in vec4 tint;
in float radius;
out vec4 color;
void main()
{
    float distance = length(gl_PointCoord - 0.5) * (2.0 * radius + 2.0);
    float inside = clamp(radius + 0.5 - distance, 0.0, 1.0);
    float light = mix(0.2, 1.0, clamp(radius - 0.75 - distance, 0.0, 1.0));
    color = vec4(tint.rgb * light, tint.a * inside);
}
)";

osg::ref_ptr<osg::StateSet> StateOfPoints()
{
    static osg::observer_ptr<osg::StateSet> known;
    osg::ref_ptr<osg::StateSet> state;
    if (known.lock(state))
        return state;
    state = AxStateOnTop();
    osg::ref_ptr<osg::Program> program = new osg::Program;
    program->setName("Round handles");
    program->addShader(new osg::Shader(osg::Shader::VERTEX, pointVertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, pointFragmentSource));
    state->setAttributeAndModes(program);
    state->addUniform(new osg::Uniform("ax_pixelScale", 1.0f));
    state->setMode(GL_VERTEX_PROGRAM_POINT_SIZE, osg::StateAttribute::ON);
    state->setTextureAttributeAndModes(0, new osg::PointSprite);
    known = state;
    return state;
}
} // namespace

AxHandlePoints::AxHandlePoints(const osg::Vec3d& eye)
    : origin(eye), places(new osg::Vec3Array), radii(new osg::FloatArray(osg::Array::BIND_PER_VERTEX)),
      colors(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX))
{
}

void AxHandlePoints::Add(const osg::Vec3d& world, float radius, const osg::Vec4f& color)
{
    places->push_back(osg::Vec3f(world - origin));
    radii->push_back(radius);
    colors->push_back(color);
}

void AxHandlePoints::Draw(osgUtil::CullVisitor& cv) const
{
    if (places->empty())
        return;
    osg::ref_ptr<osg::Geometry> points = new osg::Geometry;
    points->setUseDisplayList(false);
    points->setUseVertexBufferObjects(false); // they would be filled for one frame only
    points->setCullingActive(false);
    points->setVertexArray(places);
    points->setTexCoordArray(0, radii);
    points->setColorArray(colors);
    points->addPrimitiveSet(new osg::DrawArrays(GL_POINTS, 0, static_cast<int>(places->size())));
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->setStateSet(StateOfPoints());
    geode->addDrawable(points);
    osg::ref_ptr<osg::RefMatrix> matrix =
        new osg::RefMatrix(osg::Matrixd::translate(origin) * *cv.getModelViewMatrix());
    cv.pushModelViewMatrix(matrix, osg::Transform::RELATIVE_RF);
    geode->accept(cv);
    cv.popModelViewMatrix();
}
