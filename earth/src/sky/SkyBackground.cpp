#include "sky/SkyBackground.h"

#include "globe/Geodetic.h"
#include "globe/NoBound.h"
#include "sky/StarField.h"

#include <algorithm>
#include <cmath>
#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Geometry>
#include <osg/Program>
#include <vector>

namespace osgEarth::Util {
namespace {
// Drawn in this order, all before bin 0.
constexpr int kStarsBin = -1003;
constexpr int kBodiesBin = -1002;
constexpr int kAtmosphereBin = -1001;

constexpr unsigned kStarCount = 1800;

// Heights of the eye, metres, that agree with the fades in the shaders below.
constexpr double kStarsFrom = 15e3;
constexpr double kRimFrom = 20e3;
constexpr double kDomeOpaqueTo = 15e3;
constexpr double kDomeTo = 120e3;

/// Height of the eye over the ellipsoid, in a space in which the ellipsoid is a sphere.
const char* const kEyeSource = R"(#version 330 compatibility
uniform mat4 osg_ViewMatrixInverse;
uniform vec2 ax_globe; // equatorial radius, and what stretches the polar one to it
vec3 ax_eye() { return osg_ViewMatrixInverse[3].xyz * vec3(1.0, 1.0, ax_globe.y); }
vec4 ax_atInfinity(vec3 direction)
{
    vec4 clip = gl_ProjectionMatrix * vec4(direction, 0.0);
    clip.z = 0.0;
    return clip;
}
)";

const char* const kStarSource = R"(
out vec4 color;
void main()
{
    float height = length(ax_eye()) - ax_globe.x;
    float shown = smoothstep(15000.0, 80000.0, height);
    gl_Position = ax_atInfinity(mat3(gl_ModelViewMatrix) * gl_Vertex.xyz);
    gl_PointSize = 1.0 + 1.2 * gl_Color.a;
    color = vec4(gl_Color.rgb, (0.25 + 0.75 * gl_Color.a) * shown);
}
)";

const char* const kBodySource = R"(
out vec4 color;
void main()
{
    gl_Position = ax_atInfinity(mat3(gl_ModelViewMatrix) * gl_Vertex.xyz);
    color = gl_Color;
}
)";

// x: azimuth; y: height in metres at which the line of sight passes the globe.
const char* const kRimSource = R"(
out vec4 color;
void main()
{
    vec3 eye = ax_eye();
    float away = length(eye);
    vec3 up = eye / away;
    vec3 side = normalize(abs(up.z) < 0.9 ? cross(vec3(0.0, 0.0, 1.0), up) : cross(vec3(1.0, 0.0, 0.0), up));
    vec3 front = cross(up, side);
    float fromNadir = min((ax_globe.x + gl_Vertex.y) / away, 1.0);
    vec3 direction = (side * cos(gl_Vertex.x) + front * sin(gl_Vertex.x)) * fromNadir -
                     up * sqrt(1.0 - fromNadir * fromNadir);
    gl_Position = ax_atInfinity(mat3(gl_ModelViewMatrix) * (direction / vec3(1.0, 1.0, ax_globe.y)));
    float shown = smoothstep(20000.0, 120000.0, away - ax_globe.x);
    color = vec4(gl_Color.rgb, gl_Color.a * shown);
}
)";

// x: azimuth; y: elevation above the horizon, radians; z: height in metres at which this part of the sky has
// faded.
const char* const kDomeSource = R"(
out vec4 color;
void main()
{
    vec3 eye = ax_eye();
    float away = length(eye);
    float height = max(away - ax_globe.x, 0.0);
    vec3 up = eye / away;
    vec3 side = normalize(abs(up.z) < 0.9 ? cross(vec3(0.0, 0.0, 1.0), up) : cross(vec3(1.0, 0.0, 0.0), up));
    vec3 front = cross(up, side);
    float dip = acos(min(ax_globe.x / away, 1.0));
    float elevation = mix(-dip, 1.5707963, clamp(gl_Vertex.y / 1.5707963, -1.0, 1.0));
    vec3 direction = (side * cos(gl_Vertex.x) + front * sin(gl_Vertex.x)) * cos(elevation) + up * sin(elevation);
    gl_Position = ax_atInfinity(mat3(gl_ModelViewMatrix) * (direction / vec3(1.0, 1.0, ax_globe.y)));
    // High up the sky grows dark from the zenith down; the band above the horizon stays to the last.
    bool low = gl_Vertex.z > 115000.0;
    float dark = low ? 0.0 : 0.45 * smoothstep(3000.0, 30000.0, height);
    float fade = smoothstep((low ? 0.4 : 0.25) * gl_Vertex.z, gl_Vertex.z, height);
    color = vec4(gl_Color.rgb * (1.0 - dark), gl_Color.a * (1.0 - fade));
}
)";

const char* const kColorSource = R"(#version 330 compatibility
in vec4 color;
void main() { gl_FragColor = color; }
)";

/// Draws a node only while the eye is between two heights above the ellipsoid, metres.
class ShownBetween : public osg::NodeCallback
{
public:
    ShownBetween(const osg::EllipsoidModel& ellipsoid, double from, double to)
        : _ellipsoid(ellipsoid), _from(from), _to(to)
    {
    }

    void operator()(osg::Node* node, osg::NodeVisitor* nv) override
    {
        const double height = toGeodetic(_ellipsoid, nv->getEyePoint()).height;
        if (height >= _from && height < _to)
            traverse(node, nv);
    }

private:
    const osg::EllipsoidModel _ellipsoid;
    const double _from;
    const double _to;
};

osg::Geometry* makeGeometry(osg::Vec3Array* points, osg::Vec4Array* colors, osg::PrimitiveSet* primitives)
{
    auto* geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setVertexArray(points);
    geometry->setColorArray(colors, osg::Array::BIND_PER_VERTEX);
    geometry->addPrimitiveSet(primitives);
    geometry->setComputeBoundingBoxCallback(new NoBound);
    geometry->setCullingActive(false);
    return geometry;
}

void setUp(osg::Node& node, const char* name, const char* vertexSource, int bin)
{
    auto* program = new osg::Program;
    program->setName(name);
    program->addShader(new osg::Shader(osg::Shader::VERTEX, std::string(kEyeSource) + vertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, kColorSource));
    osg::StateSet* state = node.getOrCreateStateSet();
    state->setAttributeAndModes(program, osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
    state->setRenderBinDetails(bin, "RenderBin");
}

void setGlobe(osg::Node& node, const osg::EllipsoidModel& ellipsoid)
{
    const auto a = static_cast<float>(ellipsoid.getRadiusEquator());
    const auto b = static_cast<float>(ellipsoid.getRadiusPolar());
    node.getOrCreateStateSet()->addUniform(new osg::Uniform("ax_globe", osg::Vec2(a, a / b)));
}

/// One circle of a band: the second and third coordinate of its points, and their colour.
struct Circle
{
    float y;
    float z;
    osg::Vec4 color;
};

osg::Geometry* makeBands(const std::vector<Circle>& circles, unsigned segments)
{
    auto* points = new osg::Vec3Array;
    auto* colors = new osg::Vec4Array;
    auto* triangles = new osg::DrawElementsUShort(GL_TRIANGLES);
    const auto around = static_cast<unsigned short>(segments + 1);
    for (const Circle& circle : circles) {
        for (unsigned i = 0; i <= segments; ++i) {
            points->push_back({static_cast<float>(2.0 * osg::PI * i / segments), circle.y, circle.z});
            colors->push_back(circle.color);
        }
    }
    for (unsigned short ring = 0; ring + 1u < circles.size(); ++ring) {
        for (unsigned short i = 0; i < segments; ++i) {
            const auto a = static_cast<unsigned short>(ring * around + i);
            const auto b = static_cast<unsigned short>(a + around);
            for (int corner : {+a, a + 1, +b, +b, a + 1, b + 1})
                triangles->push_back(static_cast<unsigned short>(corner));
        }
    }
    return makeGeometry(points, colors, triangles);
}

osg::Group* gate(osg::Node* node, const osg::EllipsoidModel& ellipsoid, double from, double to)
{
    auto* group = new osg::Group;
    group->addChild(node);
    group->setCullCallback(new ShownBetween(ellipsoid, from, to));
    return group;
}

struct Halo
{
    double degrees; ///< radius
    osg::Vec4 color;
};

osg::MatrixTransform* makeDisc(const char* name, const std::vector<Halo>& rings)
{
    constexpr unsigned kCorners = 24;
    auto* points = new osg::Vec3Array;
    auto* colors = new osg::Vec4Array;
    auto* triangles = new osg::DrawElementsUShort(GL_TRIANGLES);
    double inner = 0.0;
    osg::Vec4 innerColor = rings.front().color;
    for (const Halo& ring : rings) {
        const double outer = std::tan(osg::DegreesToRadians(ring.degrees));
        const auto first = static_cast<unsigned short>(points->size());
        for (unsigned i = 0; i <= kCorners; ++i) {
            const double angle = 2.0 * osg::PI * i / kCorners;
            const osg::Vec3d rim(std::cos(angle), std::sin(angle), 0.0);
            points->push_back(rim * inner + osg::Vec3d(0, 0, 1));
            colors->push_back(innerColor);
            points->push_back(rim * outer + osg::Vec3d(0, 0, 1));
            colors->push_back(ring.color);
        }
        for (unsigned i = 0; i < kCorners; ++i) {
            for (unsigned corner : {0u, 1u, 2u, 2u, 1u, 3u})
                triangles->push_back(static_cast<unsigned short>(first + 2 * i + corner));
        }
        inner = outer;
        innerColor = ring.color;
    }
    auto* place = new osg::MatrixTransform;
    place->setName(name);
    place->addChild(makeGeometry(points, colors, triangles));
    setUp(*place, name, kBodySource, kBodiesBin);
    return place;
}
} // namespace

osg::Group* makeBackground()
{
    using SA = osg::StateAttribute;
    auto* group = new osg::Group;
    group->setName("SkyBackground");
    group->setCullingActive(false);
    osg::StateSet* state = group->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, SA::OFF | SA::PROTECTED);
    state->setMode(GL_DEPTH_TEST, SA::OFF | SA::PROTECTED);
    state->setMode(GL_CULL_FACE, SA::OFF | SA::PROTECTED);
    state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), SA::OFF | SA::PROTECTED);
    // Alpha has blend factors of its own that keep the window opaque.
    state->setAttributeAndModes(
        new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA),
        SA::ON | SA::PROTECTED);
    return group;
}

osg::MatrixTransform* makeStars(const osg::EllipsoidModel& ellipsoid)
{
    auto* points = new osg::Vec3Array;
    auto* colors = new osg::Vec4Array;
    for (const Star& star : makeStarField(kStarCount)) {
        points->push_back(star.direction);
        // A little of the colour that stars have, cooler for some, warmer for others.
        const float warmth = 0.12f * std::sin(static_cast<float>(points->size()));
        colors->push_back(
            {1.0f - std::max(0.0f, -warmth), 0.96f, 1.0f - std::max(0.0f, warmth), star.brightness});
    }
    const auto count = static_cast<int>(points->size());
    auto* turn = new osg::MatrixTransform;
    turn->setName("Stars");
    turn->addChild(makeGeometry(points, colors, new osg::DrawArrays(GL_POINTS, 0, count)));
    setUp(*turn, "Stars", kStarSource, kStarsBin);
    setGlobe(*turn, ellipsoid);
    turn->setCullCallback(new ShownBetween(ellipsoid, kStarsFrom, 1e12));
    turn->getOrCreateStateSet()->setMode(GL_VERTEX_PROGRAM_POINT_SIZE, osg::StateAttribute::ON);
    return turn;
}

osg::MatrixTransform* makeSun()
{
    // The disc is drawn at twice its true size, else it is a mere speck in a 30 degree view.
    return makeDisc("Sun", {{0.53, {1.0f, 0.98f, 0.9f, 1.0f}},
                            {0.75, {1.0f, 0.95f, 0.8f, 0.45f}},
                            {3.0, {1.0f, 0.9f, 0.7f, 0.0f}}});
}

osg::MatrixTransform* makeMoon()
{
    return makeDisc("Moon", {{0.48, {0.82f, 0.82f, 0.8f, 1.0f}}, {0.54, {0.82f, 0.82f, 0.8f, 0.0f}}});
}

osg::Node* makeAtmosphere(const osg::EllipsoidModel& ellipsoid)
{
    auto* group = new osg::Group;
    group->setName("Atmosphere");
    setGlobe(*group, ellipsoid);

    // The rim begins a little below the globe's edge, so that no gap shows between them.
    osg::Node* rim = makeBands({{-60e3f, 0.0f, {0.62f, 0.80f, 1.0f, 0.85f}},
                                {0.0f, 0.0f, {0.62f, 0.80f, 1.0f, 0.80f}},
                                {20e3f, 0.0f, {0.45f, 0.68f, 1.0f, 0.55f}},
                                {55e3f, 0.0f, {0.30f, 0.54f, 0.98f, 0.24f}},
                                {130e3f, 0.0f, {0.15f, 0.30f, 0.80f, 0.0f}}},
                               96);
    rim->setName("Rim");
    setUp(*rim, "Rim", kRimSource, kAtmosphereBin);
    group->addChild(gate(rim, ellipsoid, kRimFrom, 1e12));

    const auto circle = [](double degrees, float fadedAt, const osg::Vec4& color) {
        return Circle{static_cast<float>(osg::DegreesToRadians(degrees)), fadedAt, color};
    };
    osg::Node* dome = makeBands(
        {circle(-6.0, 120e3f, {0.80f, 0.88f, 0.95f, 1.0f}), circle(0.0, 120e3f, {0.80f, 0.88f, 0.95f, 1.0f}),
         circle(4.0, 110e3f, {0.66f, 0.81f, 0.94f, 1.0f}), circle(12.0, 90e3f, {0.50f, 0.71f, 0.91f, 1.0f}),
         circle(30.0, 70e3f, {0.36f, 0.60f, 0.87f, 1.0f}), circle(60.0, 60e3f, {0.27f, 0.51f, 0.81f, 1.0f}),
         circle(90.0, 60e3f, {0.25f, 0.48f, 0.79f, 1.0f})},
        16);
    dome->setName("Dome");
    setUp(*dome, "Dome", kDomeSource, kAtmosphereBin);
    group->addChild(gate(dome, ellipsoid, kDomeOpaqueTo, kDomeTo));
    // Near the ground the daylight dome is opaque. Blending is half of its cost, so it is off there.
    osg::Node* day = gate(dome, ellipsoid, -1e12, kDomeOpaqueTo);
    day->getOrCreateStateSet()->setMode(GL_BLEND, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    group->addChild(day);
    return group;
}
} // namespace osgEarth::Util
