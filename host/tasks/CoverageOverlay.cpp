#include "host/tasks/CoverageOverlay.h"
#include "host/tasks/CoverageReport.h"
#include "host/tasks/SceneImage.h"
#include "viewer/CAxEarthViewer.h"

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/Program>
#include <osg/Texture2D>

namespace {
// The viewer draws areas of blocks in the first of these bins and routes in the one after it. A bin within
// the first one is drawn after what it holds itself.
constexpr int areaBin = 10;
constexpr int afterAreas = 1;

// The drawn ground lies beside the true one by up to 0.4 percent of its distance. Drawn 1 percent nearer to
// the eye, on the same lines of sight, the picture is hidden by hills before it and not by its own ground.
const char* const vertexShader = R"(#version 330 compatibility
out vec2 place;
void main()
{
    vec4 seen = gl_ModelViewMatrix * gl_Vertex;
    gl_Position = gl_ProjectionMatrix * vec4(0.99 * seen.xyz, seen.w);
    place = gl_MultiTexCoord0.xy;
}
)";
const char* const fragmentShader = R"(#version 330 compatibility
uniform sampler2D picture;
const float opacity = 0.8;
in vec2 place;
void main()
{
    vec4 color = opacity * texture(picture, place);
    if (color.a < 0.01)
        discard;
    gl_FragColor = color;
}
)";

osg::ref_ptr<osg::Texture2D> TextureOf(const QImage& picture)
{
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(SceneImageOf(picture));
    texture->setResizeNonPowerOfTwoHint(false);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::NEAREST);
    return texture;
}

osg::ref_ptr<osg::StateSet> StateFor(const QImage& picture)
{
    osg::ref_ptr<osg::Program> program = new osg::Program;
    program->addShader(new osg::Shader(osg::Shader::VERTEX, vertexShader));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, fragmentShader));
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    state->setRenderBinDetails(afterAreas, "RenderBin");
    state->setAttributeAndModes(program);
    state->setTextureAttributeAndModes(0, TextureOf(picture));
    state->addUniform(new osg::Uniform("picture", 0));
    // The picture's colours have their alpha in them.
    state->setAttributeAndModes(new osg::BlendFunc(osg::BlendFunc::ONE, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
    state->setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0.0, 1.0, true));
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setMode(GL_CULL_FACE, osg::StateAttribute::OFF);
    return state;
}

osg::ref_ptr<osg::Geometry> MeshOf(const CoverageGround& ground, const osg::Vec3d& origin)
{
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec2Array> inPicture = new osg::Vec2Array;
    osg::ref_ptr<osg::DrawElementsUInt> triangles = new osg::DrawElementsUInt(GL_TRIANGLES);
    const auto width = static_cast<unsigned>(ground.columns);
    for (int row = 0; row < ground.rows; ++row)
        for (int column = 0; column < ground.columns; ++column) {
            const auto here = static_cast<unsigned>(points->size());
            points->push_back(osg::Vec3(ground.places[here] - origin));
            inPicture->push_back({static_cast<float>(column) / static_cast<float>(ground.columns - 1),
                                  static_cast<float>(row) / static_cast<float>(ground.rows - 1)});
            if (column > 0 && row > 0)
                for (const unsigned corner :
                     {here - width - 1, here - width, here, here - width - 1, here, here - 1})
                    triangles->push_back(corner);
        }
    osg::ref_ptr<osg::Geometry> mesh = new osg::Geometry;
    mesh->setUseVertexBufferObjects(true);
    mesh->setVertexArray(points);
    mesh->setTexCoordArray(0, inPicture);
    mesh->addPrimitiveSet(triangles);
    return mesh;
}
} // namespace

CoverageOverlay::CoverageOverlay(CAxEarthViewer* earthViewer) : viewer(earthViewer) {}

CoverageOverlay::~CoverageOverlay()
{
    Clear();
}

void CoverageOverlay::Paint(const CoverageGround& ground, const QImage& picture)
{
    Clear();
    if (!viewer || !viewer->GetBoundGroup() || picture.isNull())
        return;
    const osg::Vec3d origin = ground.places[ground.places.size() / 2];
    osg::ref_ptr<osg::Geode> painted = new osg::Geode;
    painted->addDrawable(MeshOf(ground, origin));
    painted->setStateSet(StateFor(picture));
    osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform(osg::Matrixd::translate(origin));
    place->addChild(painted);
    place->getOrCreateStateSet()->setRenderBinDetails(areaBin, "DepthSortedBin");
    place->setName("Coverage");
    node = place;
    SetVisible(isVisible);
    viewer->GetBoundGroup()->addChild(node);
}

void CoverageOverlay::Clear()
{
    if (node && viewer && viewer->GetBoundGroup())
        viewer->GetBoundGroup()->removeChild(node);
    node = nullptr;
}

void CoverageOverlay::SetVisible(bool visible)
{
    isVisible = visible;
    if (node)
        node->setNodeMask(visible ? ~0U : 0U);
}
