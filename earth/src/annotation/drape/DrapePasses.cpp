#include "DrapePasses.h"
#include "annotation/SharedWhileUsed.h"
#include <array>
#include <atomic>
#include <osg/BlendFunc>
#include <osg/ColorMask>
#include <osg/CullFace>
#include <osg/Depth>
#include <osg/Program>
#include <osg/Stencil>
#include <osg/StencilTwoSided>

#ifndef GL_DEPTH_CLAMP
#define GL_DEPTH_CLAMP 0x864F
#endif
#ifndef GL_STENCIL_BITS
#define GL_STENCIL_BITS 0x0D57
#endif

namespace osgEarth {
namespace {
// ax_drapeHeights: lower rim, upper rim and ground, metres above the ellipsoid.
// ax_drapePixel: metres a pixel covers at one metre's distance.
const char kVertexShader[] = R"(#version 330 compatibility
uniform vec3 ax_drapeHeights;
uniform float ax_drapePixel;
void main()
{
    vec3 ground = gl_Vertex.xyz + gl_Normal * ax_drapeHeights.z;
    vec3 seen = (gl_ModelViewMatrix * vec4(ground, 1.0)).xyz;
    float wide = gl_MultiTexCoord0.w * ax_drapePixel * length(seen);
    vec3 p = gl_Vertex.xyz + gl_Normal * mix(ax_drapeHeights.x, ax_drapeHeights.y, gl_MultiTexCoord1.x)
           + gl_MultiTexCoord0.xyz * wide;
    gl_Position = gl_ModelViewProjectionMatrix * vec4(p, 1.0);
}
)";
const char kFragmentShader[] = R"(#version 330 compatibility
uniform vec4 ax_drapeColor;
void main()
{
    gl_FragColor = ax_drapeColor;
}
)";

osg::ref_ptr<osg::Program> makeProgram()
{
    osg::ref_ptr<osg::Program> made = new osg::Program();
    made->setName("drape");
    made->addShader(new osg::Shader(osg::Shader::VERTEX, kVertexShader));
    made->addShader(new osg::Shader(osg::Shader::FRAGMENT, kFragmentShader));
    return made;
}

const unsigned kOn = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;
const unsigned kOff =
    osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;

osg::ref_ptr<osg::StateSet> makePass(osg::Program* program)
{
    osg::ref_ptr<osg::StateSet> pass = new osg::StateSet();
    pass->setRenderBinDetails(kDrapeBin, "TraversalOrderBin");
    pass->setNestRenderBins(false);
    pass->setAttributeAndModes(program, kOn);
    pass->setMode(GL_LIGHTING, kOff);
    // The volume is cut neither by the near nor by the far plane.
    pass->setMode(GL_DEPTH_CLAMP, kOn);
    return pass;
}

constexpr unsigned kMostContexts = 64;
std::array<std::atomic<bool>, kMostContexts>& stencilKnown()
{
    static std::array<std::atomic<bool>, kMostContexts> known{};
    return known;
}
} // namespace

osg::ref_ptr<DrapePasses> DrapePasses::shared()
{
    return sharedWhileUsed<DrapePasses, DrapePasses>([] { return new DrapePasses(); });
}

DrapePasses::DrapePasses()
{
    const osg::ref_ptr<osg::Program> program = makeProgram();
    mark = makePass(program.get());
    mark->setAttributeAndModes(new osg::ColorMask(false, false, false, false), kOn);
    mark->setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0.0, 1.0, false), kOn);
    mark->setMode(GL_CULL_FACE, kOff);
    mark->setMode(GL_BLEND, kOff);
    // Counting the faces behind the ground works with the eye inside the volume too.
    osg::ref_ptr<osg::StencilTwoSided> count = new osg::StencilTwoSided();
    count->setFunction(osg::StencilTwoSided::FRONT, osg::StencilTwoSided::ALWAYS, 0, ~0u);
    count->setFunction(osg::StencilTwoSided::BACK, osg::StencilTwoSided::ALWAYS, 0, ~0u);
    count->setOperation(osg::StencilTwoSided::FRONT, osg::StencilTwoSided::KEEP,
                        osg::StencilTwoSided::DECR_WRAP, osg::StencilTwoSided::KEEP);
    count->setOperation(osg::StencilTwoSided::BACK, osg::StencilTwoSided::KEEP,
                        osg::StencilTwoSided::INCR_WRAP, osg::StencilTwoSided::KEEP);
    mark->setAttributeAndModes(count, kOn);

    paint = makePass(program.get());
    paint->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), kOn);
    paint->setAttributeAndModes(new osg::CullFace(osg::CullFace::FRONT), kOn);
    paint->setAttributeAndModes(new osg::ColorMask(true, true, true, true), kOn);
    paint->setAttributeAndModes(
        new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA), kOn);
    // The two-sided attribute again, so that it replaces the first pass' one.
    osg::ref_ptr<osg::StencilTwoSided> take = new osg::StencilTwoSided();
    for (const auto face : {osg::StencilTwoSided::FRONT, osg::StencilTwoSided::BACK}) {
        take->setFunction(face, osg::StencilTwoSided::NOTEQUAL, 0, ~0u);
        take->setOperation(face, osg::StencilTwoSided::KEEP, osg::StencilTwoSided::ZERO,
                           osg::StencilTwoSided::ZERO);
    }
    paint->setAttributeAndModes(take, kOn);

    clear = new osg::StateSet();
    clear->setRenderBinDetails(kDrapeBin, "TraversalOrderBin");
    clear->setNestRenderBins(false);
    clear->setMode(GL_SCISSOR_TEST, kOff);
}

StencilClear::StencilClear()
{
    setSupportsDisplayList(false);
    setUseDisplayList(false);
    setCullingActive(false);
}

void StencilClear::drawImplementation(osg::RenderInfo& info) const
{
    const unsigned id = info.getContextID();
    if (id >= kMostContexts)
        return;
    GLint bits = 0;
    glGetIntegerv(GL_STENCIL_BITS, &bits);
    stencilKnown()[id] = bits > 0;
    if (bits > 0) {
        glStencilMask(~0u);
        glClearStencil(0);
        glClear(GL_STENCIL_BUFFER_BIT);
    }
}

void StencilClear::forgetContext(unsigned contextId)
{
    if (contextId < kMostContexts)
        stencilKnown()[contextId] = false;
}

bool StencilClear::contextHasStencil(unsigned contextId)
{
    return contextId < kMostContexts && stencilKnown()[contextId];
}
} // namespace osgEarth
