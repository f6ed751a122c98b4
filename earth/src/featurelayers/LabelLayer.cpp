#include "featurelayers/LabelLayer.h"
#include "base/SharedWhileUsed.h"
#include "featurelayers/LabelField.h"
#include "terrain/QuadtreeTerrain.h"
#include "text/Fonts.h"
#include "text/GlyphQuads.h"
#include "text/SelfPlacedDrawable.h"
#include <osg/Group>
#include <osg/Program>
#include <osgEarth/MapNode>
#include <osgEarth/ScreenSpaceLayout>
#include <osgUtil/CullVisitor>

namespace osgEarth::Features {
using namespace Symbology;

namespace {
const char kLabelVertexShader[] = R"(#version 330 compatibility
uniform vec2 ax_labelScreen;
void main()
{
    gl_Position = vec4(gl_Vertex.xy / ax_labelScreen * 2.0 - 1.0, 0.0, 1.0);
    gl_TexCoord[0] = gl_MultiTexCoord0;
}
)";
const char kLabelFragmentShader[] = R"(#version 330 compatibility
uniform sampler2D ax_labelLetters;
vec4 ax_letterCover(sampler2D letters, vec2 at);
uniform vec4 ax_labelFill;
uniform vec4 ax_labelHalo;
void main()
{
    vec4 cover = ax_letterCover(ax_labelLetters, gl_TexCoord[0].xy);
    gl_FragColor = vec4(mix(ax_labelHalo.rgb, ax_labelFill.rgb, cover.r),
                        max(cover.a * ax_labelHalo.a, cover.r * ax_labelFill.a));
}
)";

std::shared_ptr<GlyphAtlas> sharedAtlas(const std::string& font, unsigned pixels)
{
    static std::mutex mutex;
    static std::map<std::pair<osgText::Font*, unsigned>, std::weak_ptr<GlyphAtlas>> atlases;
    osgText::Font* found = fontNamed(font);
    std::lock_guard<std::mutex> lock(mutex);
    std::weak_ptr<GlyphAtlas>& slot = atlases[{found, pixels}];
    std::shared_ptr<GlyphAtlas> atlas = slot.lock();
    if (!atlas)
        slot = atlas = std::make_shared<GlyphAtlas>(found, pixels);
    return atlas;
}

/// The letters of all shown labels of a layer as one list of triangles in pixels.
class LabelDrawable : public SelfPlacedDrawable
{
public:
    LabelDrawable()
    {
        setUseDisplayList(false);
        setUseVertexBufferObjects(true);
        setDataVariance(osg::Object::DYNAMIC);
        setCullingActive(false);
        setVertexArray(_quads.corners.get());
        setTexCoordArray(0, _quads.places.get(), osg::Array::BIND_PER_VERTEX);
        addPrimitiveSet(_quads.indices.get());
    }
    void rebuild(const LabelSet& set)
    {
        _quads.corners->clear();
        _quads.places->clear();
        _quads.indices->clear();
        // Less important ones first, so that the others lie on top.
        for (auto shown = set.shown.rbegin(); shown != set.shown.rend(); ++shown) {
            _quads.add(set.atlas->dot(), shown->pixel);
            osg::Vec2f pen = shown->pixel + shown->label->pen;
            for (const unsigned code : shown->label->codes) {
                const GlyphAtlas::Glyph& glyph = set.atlas->glyph(code);
                _quads.add(glyph, pen);
                pen.x() += glyph.advance;
            }
        }
        _quads.corners->dirty();
        _quads.places->dirty();
        _quads.indices->dirty();
        dirtyBound();
    }
    bool empty() const { return _quads.indices->empty(); }

    // It lies on the screen, not in the world, and must not move the clip planes.
    osg::BoundingBox computeBoundingBox() const override { return {}; }
    osg::BoundingSphere computeBound() const override { return {}; }

private:
    GlyphQuads _quads;
};

class LabelLayerNode : public osg::Group
{
public:
    LabelLayerNode(const std::shared_ptr<LabelSet>& set, LabelField* field) : _set(set), _field(field)
    {
        setCullingActive(false);
        const osg::ref_ptr<osg::Program> program = sharedWhileUsed<osg::Program, LabelSet>([] {
            osg::ref_ptr<osg::Program> made = new osg::Program();
            made->setName("labels");
            made->addShader(new osg::Shader(osg::Shader::VERTEX, kLabelVertexShader));
            made->addShader(new osg::Shader(osg::Shader::FRAGMENT, kLabelFragmentShader));
            made->addShader(GlyphAtlas::coverShader());
            return made;
        });
        osg::StateSet* state = getOrCreateStateSet();
        ScreenSpaceLayout::activate(state);
        state->setDataVariance(osg::Object::DYNAMIC);
        state->setAttributeAndModes(program.get());
        state->setTextureAttribute(0, set->atlas->texture());
        state->addUniform(new osg::Uniform("ax_labelLetters", 0));
        state->addUniform(new osg::Uniform("ax_labelFill", set->look.fill));
        state->addUniform(new osg::Uniform("ax_labelHalo", set->look.halo));
        _screen = new osg::Uniform("ax_labelScreen", osg::Vec2f(1.0f, 1.0f));
        _screen->setDataVariance(osg::Object::DYNAMIC);
        state->addUniform(_screen);
    }

    void traverse(osg::NodeVisitor& nv) override
    {
        osgUtil::CullVisitor* cv = nv.asCullVisitor();
        if (!cv || !cv->getViewport() || !cv->getModelViewMatrix() || !cv->getProjectionMatrix())
            return;
        LabelView view;
        view.worldToClip = *cv->getModelViewMatrix() * *cv->getProjectionMatrix();
        view.eye = osg::Vec3d() * osg::Matrixd::inverse(*cv->getModelViewMatrix());
        view.width = static_cast<float>(cv->getViewport()->width());
        view.height = static_cast<float>(cv->getViewport()->height());
        view.frame = nv.getFrameStamp() ? nv.getFrameStamp()->getFrameNumber() : 0u;
        _set->lastSeen = view.frame;
        _field->update(view, groundAbove(nv.getNodePath()));
        if (_set->selection != _drawnSelection) {
            _drawnSelection = _set->selection;
            _drawable->rebuild(*_set);
            _screen->set(osg::Vec2f(view.width, view.height));
        }
        if (!_drawable->empty())
            cv->addDrawableAndDepth(_drawable.get(), cv->getModelViewMatrix(), 0.0f);
    }

    osg::BoundingSphere computeBound() const override { return {}; }
    void releaseGLObjects(osg::State* state) const override
    {
        osg::Group::releaseGLObjects(state);
        _drawable->releaseGLObjects(state);
    }

private:
    static const QuadtreeTerrain* groundAbove(const osg::NodePath& path)
    {
        for (osg::Node* node : path)
            if (const auto* mapNode = dynamic_cast<const MapNode*>(node))
                return QuadtreeTerrain::of(*mapNode);
        return nullptr;
    }

    const std::shared_ptr<LabelSet> _set;
    const osg::ref_ptr<LabelField> _field;
    osg::ref_ptr<LabelDrawable> _drawable = new LabelDrawable();
    osg::ref_ptr<osg::Uniform> _screen;
    unsigned _drawnSelection = 0;
};
} // namespace

osg::ref_ptr<osg::Node> makeLabelLayer(const FeatureList& features, const Style& style,
                                       const osg::observer_ptr<const Map>& map)
{
    const TextSymbol* symbol = style.get<TextSymbol>();
    if (!symbol)
        return new osg::Group();
    auto set = std::make_shared<LabelSet>();
    set->look = lookOf(*symbol);
    set->labels = labelsOf(features, *symbol);
    set->atlas = sharedAtlas(symbol->font().value(), set->look.pixels);
    osg::ref_ptr<const Map> held;
    map.lock(held);
    osg::ref_ptr<LabelField> field = LabelField::of(held.get());
    field->add(set);
    return new LabelLayerNode(set, field.get());
}
} // namespace osgEarth::Features
