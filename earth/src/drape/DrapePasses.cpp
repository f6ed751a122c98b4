#include "drape/DrapePasses.h"
#include "base/SharedWhileUsed.h"
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
// How far lines reach to their sides, in pixels at one metre's distance: the
// farther away the more, and the more, too, the more their width is seen from
// its edge. Lines on level ground would else be thinner than a pixel near the
// horizon, and break up.
const char kWidening[] = R"(#version 330 compatibility
float drapeWidening(vec3 place, vec3 aside)
{
    vec3 across = cross(place, aside);
    float most = 6.0;
    float size = length(place) * length(aside);
    return length(place) * min(most, size / max(length(across), 1e-6 * size + 1e-30));
}
)";
// ax_drapeHeights: lower rim, upper rim and ground, metres above the ellipsoid.
// ax_drapePixel: metres a pixel covers at one metre's distance.
const char kDrapeVertexShader[] = R"(
uniform vec3 ax_drapeHeights;
uniform float ax_drapePixel;
void main()
{
    vec3 ground = gl_Vertex.xyz + gl_Normal * ax_drapeHeights.z;
    vec3 seen = (gl_ModelViewMatrix * vec4(ground, 1.0)).xyz;
    float wide = gl_MultiTexCoord0.w * ax_drapePixel * drapeWidening(seen, mat3(gl_ModelViewMatrix) * gl_MultiTexCoord0.xyz);
    vec3 p = gl_Vertex.xyz + gl_Normal * mix(ax_drapeHeights.x, ax_drapeHeights.y, gl_MultiTexCoord1.x)
           + gl_MultiTexCoord0.xyz * wide;
    gl_Position = gl_ModelViewProjectionMatrix * vec4(p, 1.0);
}
)";
// The same for several shapes. ax_drapeOrigins: their origins as seen by the eye;
// ax_drapeRims: their heights as in ax_drapeHeights. The matrix only turns.
const char kManyVertexShader[] = R"(
uniform vec3 ax_drapeOrigins[AX_SLOTS];
uniform vec3 ax_drapeRims[AX_SLOTS];
uniform float ax_drapePixel;
void main()
{
    int slot = int(gl_MultiTexCoord1.y + 0.5);
    vec3 heights = ax_drapeRims[slot];
    mat3 turn = mat3(gl_ModelViewMatrix);
    vec3 low = ax_drapeOrigins[slot] + turn * gl_Vertex.xyz;
    vec3 up = turn * gl_Normal;
    vec3 aside = turn * gl_MultiTexCoord0.xyz;
    float wide = gl_MultiTexCoord0.w * ax_drapePixel * drapeWidening(low + up * heights.z, aside);
    vec3 p = low + up * mix(heights.x, heights.y, gl_MultiTexCoord1.x) + aside * wide;
    gl_Position = gl_ProjectionMatrix * vec4(p, 1.0);
}
)";
// ax_drapeFrame: lower left and upper right corner, the window from -1 to 1.
const char kFrameVertexShader[] = R"(#version 330 compatibility
uniform vec4 ax_drapeFrame;
void main()
{
    gl_Position = vec4(mix(ax_drapeFrame.xy, ax_drapeFrame.zw, gl_Vertex.xy), 0.0, 1.0);
}
)";
const char kDrapeFragmentShader[] = R"(#version 330 compatibility
uniform vec4 ax_drapeColor;
void main()
{
    gl_FragColor = ax_drapeColor;
}
)";

// Fragment shader of the passes that write no colours.
const char kNoColorShader[] = R"(#version 330 compatibility
void main() {}
)";

osg::ref_ptr<osg::Program> makeProgram(const std::string& vertexShader,
                                       const std::string& fragmentShader = kDrapeFragmentShader)
{
    osg::ref_ptr<osg::Program> made = new osg::Program();
    made->setName("drape");
    made->addShader(new osg::Shader(osg::Shader::VERTEX, vertexShader));
    made->addShader(new osg::Shader(osg::Shader::FRAGMENT, fragmentShader));
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

enum Counted
{
    Behind, // faces behind the ground: right for an eye inside the volume, too
    Before
};

osg::ref_ptr<osg::StateSet> makeMark(osg::Program* program, Counted faces)
{
    osg::ref_ptr<osg::StateSet> mark = makePass(program);
    mark->setAttributeAndModes(new osg::ColorMask(false, false, false, false), kOn);
    mark->setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0.0, 1.0, false), kOn);
    mark->setMode(GL_CULL_FACE, kOff);
    mark->setMode(GL_BLEND, kOff);
    osg::ref_ptr<osg::StencilTwoSided> count = new osg::StencilTwoSided();
    for (const auto face : {osg::StencilTwoSided::FRONT, osg::StencilTwoSided::BACK}) {
        const bool adds = (face == osg::StencilTwoSided::FRONT) == (faces == Before);
        const auto step = adds ? osg::StencilTwoSided::INCR_WRAP : osg::StencilTwoSided::DECR_WRAP;
        const auto keep = osg::StencilTwoSided::KEEP;
        count->setFunction(face, osg::StencilTwoSided::ALWAYS, 0, ~0u);
        count->setOperation(face, keep, faces == Behind ? step : keep, faces == Before ? step : keep);
    }
    mark->setAttributeAndModes(count, kOn);
    return mark;
}

osg::ref_ptr<osg::StateSet> makePaint(osg::Program* program)
{
    osg::ref_ptr<osg::StateSet> paint = makePass(program);
    paint->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), kOn);
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
    return paint;
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
    std::string many = std::string(kWidening) + kManyVertexShader;
    const std::string slots = "AX_SLOTS";
    for (size_t at = many.find(slots); at != std::string::npos; at = many.find(slots))
        many.replace(at, slots.size(), std::to_string(kDrapeSlots));
    const osg::ref_ptr<osg::Program> program = makeProgram(std::string(kWidening) + kDrapeVertexShader);
    const osg::ref_ptr<osg::Program> manyProgram = makeProgram(many, kNoColorShader);
    mark = makeMark(program.get(), Behind);
    markMany = makeMark(manyProgram.get(), Behind);
    markManyBefore = makeMark(manyProgram.get(), Before);
    markManyFlat = makeMark(manyProgram.get(), Before);
    markManyFlat->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), kOn);
    paint = makePaint(program.get());
    paint->setAttributeAndModes(new osg::CullFace(osg::CullFace::FRONT), kOn);
    paintFrame = makePaint(makeProgram(kFrameVertexShader).get());
    paintFrame->setMode(GL_CULL_FACE, kOff);

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
