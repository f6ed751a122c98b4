#include "globe/Geodetic.h"
#include "globe/NoBound.h"

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
/// Below this height of the eye nothing is left of the lines, and they are not drawn at all.
constexpr double kFadedBelow = 60e3;
/// Above this height the lines of 1 and 2 degrees have faded.
constexpr double kFineBelow = 4000e3;

constexpr int kFineLines = 12;    // of 1 degree, on each side of the eye
constexpr int kFineSegments = 16; // of each
constexpr int kCoarseSegments = 32;

/// Kinds of lines in the mesh.
constexpr float kFineMeridian = 0.0f;
constexpr float kFineParallel = 1.0f;
constexpr float kCoarseMeridian = 2.0f;
constexpr float kCoarseParallel = 3.0f;

/// One mesh serves every height: x counts lines, y runs along the line from -1
/// to 1, z is the kind. Lines of 10 degrees cover all that is in sight; lines
/// of 1 and 2 degrees surround the point below the eye and come and go with its
/// height. The shader lays the mesh out, bends it to the ellipsoid and pulls it
/// towards the eye in depth only, over any summit.
const char* const kVertexSource = R"(#version 330 compatibility
uniform mat4 osg_ViewMatrixInverse;
uniform vec2 ax_globe; // equatorial radius, first eccentricity squared
out float alpha;
const float kPi = 3.14159265;
const float kDegree = kPi / 180.0;

// How much of the lines of 1 or 2 degrees is shown where lines should be so many degrees apart.
float fineShare(float line, float wanted)
{
    if (mod(line, 10.0) < 0.5)
        return 0.0; // there is a coarse one
    return mod(line, 2.0) < 0.5 ? 1.0 - smoothstep(0.8, 1.6, wanted) : 1.0 - smoothstep(0.4, 0.8, wanted);
}

void main()
{
    vec3 eye = osg_ViewMatrixInverse[3].xyz;
    float away = length(eye);
    float height = away - ax_globe.x;
    float eyeLat = asin(clamp(eye.z / away, -1.0, 1.0));
    float eyeLon = atan(eye.y, eye.x);
    float eyeCos = max(cos(eyeLat), 0.01);
    float sight = acos(clamp(ax_globe.x / away, 0.0, 1.0));
    float spread = sin(sight) < eyeCos ? asin(sin(sight) / eyeCos) : kPi;
    float wanted = 2.6 * height / ax_globe.x; // degrees; six or so lines in a window that looks down

    float line = gl_Vertex.x;
    float along = gl_Vertex.y;
    float lat;
    float lon;
    float share = 1.0;
    if (gl_Vertex.z < 0.5)
    {
        line += round(eyeLon / kDegree);
        lon = line * kDegree;
        lat = clamp(eyeLat + along * 12.0 * kDegree, -80.0 * kDegree, 80.0 * kDegree);
        share = fineShare(line, wanted / eyeCos);
    }
    else if (gl_Vertex.z < 1.5)
    {
        line += round(eyeLat / kDegree);
        lat = line * kDegree;
        lon = eyeLon + along * min(12.0 * kDegree / eyeCos, kPi);
        share = abs(line) < 80.0 ? fineShare(line, wanted) : 0.0;
    }
    else if (gl_Vertex.z < 2.5)
    {
        lon = line * 10.0 * kDegree;
        // Only four of them reach the pole, else it drowns in lines.
        float end = (mod(line, 9.0) < 0.5 ? 90.0 : 80.0) * kDegree;
        lat = clamp(eyeLat + along * sight, -end, end);
    }
    else
    {
        lat = line * 10.0 * kDegree;
        lon = eyeLon + along * min(spread * 1.02, kPi);
    }

    float n = ax_globe.x / sqrt(1.0 - ax_globe.y * sin(lat) * sin(lat));
    vec3 up = vec3(cos(lat) * cos(lon), cos(lat) * sin(lon), sin(lat));
    vec3 world = vec3(n * up.xy, n * (1.0 - ax_globe.y) * up.z);

    // Near the eye the difference is small, so that the matrix's single precision does not show.
    vec3 toEye = eye - world;
    vec3 view = mat3(gl_ModelViewMatrix) * -toEye;
    gl_Position = gl_ProjectionMatrix * vec4(view, 1.0);
    float lift = max(15000.0, 0.02 * length(toEye));
    vec4 lifted = gl_ProjectionMatrix * vec4(view * (1.0 - min(lift / length(toEye), 0.5)), 1.0);
    gl_Position.z = lifted.z / lifted.w * gl_Position.w;

    if (gl_Vertex.z < 1.5)
        share *= 1.0 - smoothstep(6.0, 11.0, acos(clamp(dot(up, eye / away), -1.0, 1.0)) / kDegree);
    float facing = dot(up, normalize(toEye));
    gl_ClipDistance[0] = facing; // the far side is gone before it is drawn
    alpha = 0.25 * share * smoothstep(0.0, 0.12, facing) * smoothstep(60000.0, 160000.0, height);
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

/// Collects lines that share the points of their segments.
struct Mesh
{
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
    osg::ref_ptr<osg::DrawElementsUShort> segments = new osg::DrawElementsUShort(GL_LINES);

    void addLine(int line, float kind, int count)
    {
        for (int i = 0; i <= count; ++i) {
            if (i > 0) {
                segments->push_back(static_cast<unsigned short>(points->size() - 1));
                segments->push_back(static_cast<unsigned short>(points->size()));
            }
            points->push_back({static_cast<float>(line),
                               2.0f * static_cast<float>(i) / static_cast<float>(count) - 1.0f, kind});
        }
    }

    osg::Geometry* geometry() const
    {
        auto* geometry = new osg::Geometry;
        geometry->setUseDisplayList(false);
        geometry->setUseVertexBufferObjects(true);
        geometry->setVertexArray(points);
        geometry->addPrimitiveSet(segments);
        geometry->setComputeBoundingBoxCallback(new NoBound);
        geometry->setCullingActive(false);
        return geometry;
    }
};

osg::Geometry* makeFineLines()
{
    Mesh mesh;
    for (int line = -kFineLines; line <= kFineLines; ++line) {
        mesh.addLine(line, kFineMeridian, kFineSegments);
        mesh.addLine(line, kFineParallel, kFineSegments);
    }
    return mesh.geometry();
}

osg::Geometry* makeCoarseLines()
{
    Mesh mesh;
    for (int line = -18; line < 18; ++line)
        mesh.addLine(line, kCoarseMeridian, kCoarseSegments);
    for (int line = -8; line <= 8; ++line)
        mesh.addLine(line, kCoarseParallel, 2 * kCoarseSegments);
    return mesh.geometry();
}
} // namespace

GeodeticGraticule::GeodeticGraticule(MapNode* mapNode) : _lines(new osg::Group), _fineLines(makeFineLines())
{
    using SA = osg::StateAttribute;
    auto* program = new osg::Program;
    program->setName("GeodeticGraticule");
    program->addShader(new osg::Shader(osg::Shader::VERTEX, kVertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, kFragmentSource));
    _lines->addChild(_fineLines);
    _lines->addChild(makeCoarseLines());
    osg::StateSet* state = _lines->getOrCreateStateSet();
    state->setAttributeAndModes(program, SA::ON | SA::PROTECTED);
    state->setMode(GL_LIGHTING, SA::OFF | SA::PROTECTED);
    state->setAttributeAndModes(
        new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA), SA::ON);
    state->setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0.0, 1.0, false), SA::ON);
    state->setMode(GL_CLIP_DISTANCE0, SA::ON);
    state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
    setCullingActive(false);
    setMapNode(mapNode);
}

GeodeticGraticule::~GeodeticGraticule() = default;

void GeodeticGraticule::setMapNode(MapNode* mapNode)
{
    _mapNode = mapNode;
    osg::ref_ptr<const osg::EllipsoidModel> ellipsoid = new osg::EllipsoidModel;
    if (mapNode && mapNode->getMapSRS())
        ellipsoid = mapNode->getMapSRS()->getEllipsoid();
    const double a = ellipsoid->getRadiusEquator();
    const double b = ellipsoid->getRadiusPolar();
    _lines->getOrCreateStateSet()
        ->getOrCreateUniform("ax_globe", osg::Uniform::FLOAT_VEC2)
        ->set(osg::Vec2(static_cast<float>(a), static_cast<float>((a * a - b * b) / (a * a))));
}

MapNode* GeodeticGraticule::getMapNode()
{
    return _mapNode.get();
}

void GeodeticGraticule::traverse(osg::NodeVisitor& nv)
{
    if (auto* cull = nv.asCullVisitor()) {
        const osg::Vec3d eye = osg::Matrixd::inverse(*cull->getModelViewMatrix()).getTrans();
        const double height = toGeodetic(osg::EllipsoidModel(), eye).height;
        _fineLines->setNodeMask(height < kFineBelow ? ~0u : 0u);
        if (height > kFadedBelow)
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
