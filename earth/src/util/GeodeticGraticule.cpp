#include "Geodetic.h"

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Geometry>
#include <osg/Program>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthUtil/GeodeticGraticule>
#include <osgUtil/CullVisitor>

namespace osgEarth::Util {
namespace {

/** Below this height of the eye nothing is left of the lines, and they are not drawn at all. */
constexpr double kFadedBelow = 60e3;

constexpr int kLines = 12;            // on each side of the middle one
constexpr int kMeridianSegments = 32; // from the southern to the northern end
constexpr int kParallelSegments = 64; // round the part of the globe that is in sight
constexpr float kMeridian = 0.0f;
constexpr float kParallel = 1.0f;

/**
 * One mesh serves every height: x counts lines from the one nearest to the
 * point below the eye, y runs along the line from -1 to 1, z tells meridians
 * from parallels. The shader chooses the spacing from the height of the eye
 * and lays the mesh out over what can be seen; it also bends lines to the
 * ellipsoid and pulls them towards the eye in depth only, over any summit.
 */
const char* const kVertexSource = R"(#version 330 compatibility
uniform mat4 osg_ViewMatrixInverse;
uniform vec2 ax_globe; // equatorial radius, first eccentricity squared
out float alpha;
const float kPi = 3.14159265;

// Radians between the lines that reach so far with twelve, each step a multiple of the one before.
float spacingFor(float reach, out float nextFactor, out float leaving)
{
    float steps[4] = float[4](1.0, 2.0, 10.0, 30.0);
    float wanted = degrees(reach) / 12.0;
    int i = 0;
    while (i < 3 && wanted > steps[i])
        ++i;
    nextFactor = i < 3 ? steps[i + 1] / steps[i] : 1.0;
    leaving = i < 3 ? smoothstep(0.65, 1.0, wanted / steps[i]) : 0.0;
    return radians(steps[i]);
}

void main()
{
    vec3 eye = osg_ViewMatrixInverse[3].xyz;
    float away = length(eye);
    float height = away - ax_globe.x;
    float sight = acos(clamp(ax_globe.x / away, 0.0, 1.0));
    float eyeLat = asin(clamp(eye.z / away, -1.0, 1.0));
    float eyeLon = atan(eye.y, eye.x);

    // Towards a pole the meridians in sight spread over more longitudes, up to all of them.
    float spread = sin(sight) < cos(eyeLat) ? asin(sin(sight) / cos(eyeLat)) : kPi;

    float lat;
    float lon;
    float line;
    float nextFactor;
    float leaving;
    bool onGlobe;
    if (gl_Vertex.z < 0.5)
    {
        float spacing = spacingFor(max(sight, spread), nextFactor, leaving);
        line = round(eyeLon / spacing) + gl_Vertex.x;
        lon = line * spacing;
        lat = clamp(eyeLat + gl_Vertex.y * sight, -kPi / 2.0, kPi / 2.0);
        float aside = gl_Vertex.x * spacing; // each meridian once
        onGlobe = aside > -kPi + 1e-3 && aside < kPi + 1e-3;
    }
    else
    {
        float spacing = spacingFor(sight, nextFactor, leaving);
        line = round(eyeLat / spacing) + gl_Vertex.x;
        lat = line * spacing;
        lon = eyeLon + gl_Vertex.y * min(spread * 1.02, kPi);
        onGlobe = abs(lat) < kPi / 2.0;
    }

    float n = ax_globe.x / sqrt(1.0 - ax_globe.y * sin(lat) * sin(lat));
    vec3 up = vec3(cos(lat) * cos(lon), cos(lat) * sin(lon), sin(lat));
    vec3 world = vec3(n * up.xy, n * (1.0 - ax_globe.y) * up.z);

    // The difference is small where the eye is near, which keeps the float matrix out of it.
    vec3 toEye = eye - world;
    vec3 view = mat3(gl_ModelViewMatrix) * -toEye;
    gl_Position = gl_ProjectionMatrix * vec4(view, 1.0);
    float lift = max(15000.0, 0.02 * length(toEye));
    vec4 lifted = gl_ProjectionMatrix * vec4(view * (1.0 - min(lift / length(toEye), 0.5)), 1.0);
    gl_Position.z = lifted.z / lifted.w * gl_Position.w;

    float facing = dot(up, normalize(toEye));
    float strength = 0.25 * smoothstep(0.0, 0.12, facing) * smoothstep(60000.0, 160000.0, height);
    // Lines that the next wider spacing lacks leave before it comes.
    bool stays = mod(line, nextFactor) < 0.5;
    alpha = onGlobe ? strength * (stays ? 1.0 : 1.0 - leaving) : 0.0;
}
)";

const char* const kFragmentSource = R"(#version 330 compatibility
in float alpha;
void main()
{
    if (alpha < 0.004)
        discard;
    gl_FragColor = vec4(1.0, 1.0, 1.0, alpha);
}
)";

class NoBound : public osg::Drawable::ComputeBoundingBoxCallback
{
public:
    osg::BoundingBox computeBound(const osg::Drawable&) const override { return {}; }
};

void addLine(osg::Vec3Array& points, float line, float kind, int segments)
{
    for (int i = 0; i < segments; ++i) {
        for (int end : {i, i + 1})
            points.push_back(
                {line, 2.0f * static_cast<float>(end) / static_cast<float>(segments) - 1.0f, kind});
    }
}

osg::Geometry* makeLines()
{
    auto* points = new osg::Vec3Array;
    for (int line = -kLines; line <= kLines; ++line) {
        addLine(*points, static_cast<float>(line), kMeridian, kMeridianSegments);
        addLine(*points, static_cast<float>(line), kParallel, kParallelSegments);
    }
    auto* geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setVertexArray(points);
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, static_cast<int>(points->size())));
    geometry->setComputeBoundingBoxCallback(new NoBound);
    geometry->setCullingActive(false);
    return geometry;
}

} // namespace

GeodeticGraticule::GeodeticGraticule(MapNode* mapNode) : _mapNode(mapNode), _lines(makeLines())
{
    using SA = osg::StateAttribute;
    osg::ref_ptr<const osg::EllipsoidModel> ellipsoid = new osg::EllipsoidModel;
    if (mapNode && mapNode->getMapSRS())
        ellipsoid = mapNode->getMapSRS()->getEllipsoid();
    const double a = ellipsoid->getRadiusEquator();
    const double b = ellipsoid->getRadiusPolar();

    auto* program = new osg::Program;
    program->setName("GeodeticGraticule");
    program->addShader(new osg::Shader(osg::Shader::VERTEX, kVertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, kFragmentSource));
    osg::StateSet* state = _lines->getOrCreateStateSet();
    state->setAttributeAndModes(program, SA::ON | SA::PROTECTED);
    state->addUniform(new osg::Uniform(
        "ax_globe", osg::Vec2(static_cast<float>(a), static_cast<float>((a * a - b * b) / (a * a)))));
    state->setMode(GL_LIGHTING, SA::OFF | SA::PROTECTED);
    state->setAttributeAndModes(
        new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA), SA::ON);
    state->setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0.0, 1.0, false), SA::ON);
    state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
    setCullingActive(false);
}

GeodeticGraticule::~GeodeticGraticule() = default;

MapNode* GeodeticGraticule::getMapNode()
{
    return _mapNode.get();
}

void GeodeticGraticule::traverse(osg::NodeVisitor& nv)
{
    if (auto* cull = nv.asCullVisitor()) {
        const osg::Vec3d eye = osg::Matrixd::inverse(*cull->getModelViewMatrix()).getTrans();
        if (toGeodetic(osg::EllipsoidModel(), eye).height > kFadedBelow)
            _lines->accept(nv);
    }
    osg::Group::traverse(nv);
}

void GeodeticGraticule::resizeGLObjectBuffers(unsigned int maxSize)
{
    _lines->resizeGLObjectBuffers(maxSize);
    osg::Group::resizeGLObjectBuffers(maxSize);
}

void GeodeticGraticule::releaseGLObjects(osg::State* state) const
{
    _lines->releaseGLObjects(state);
    osg::Group::releaseGLObjects(state);
}

} // namespace osgEarth::Util
