#include "viewer/AxSceneWalk.h"
#include "analysis/CAxDrapeableNode.h"
#include "interaction/marks/AxMarkGeometry.h"
#include "mission/aircraft/AutoScaleContainer.h"
#include "mission/aircraft/AxPhotoPoints.h"
#include "mission/aircraft/AxTrailGeometry.h"
#include "mission/aircraft/AxVideoFootprint.h"
#include "scene/shape/AxWorldGeometry.h"

#include <osg/AutoTransform>
#include <osg/Billboard>
#include <osg/ClipNode>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/ImageStream>
#include <osg/LightSource>
#include <osg/LOD>
#include <osg/MatrixTransform>
#include <osg/PagedLOD>
#include <osg/PositionAttitudeTransform>
#include <osg/Program>
#include <osg/ProxyNode>
#include <osg/ShapeDrawable>
#include <osg/Switch>
#include <osg/Texture>
#include <osgEarth/DrapeableNode>
#include <osgEarth/ScreenSpaceLayout>
#include <osgEarthAnnotation/AnnotationEditing>
#include <osgEarthAnnotation/AnnotationNode>
#include <osgEarthAnnotation/Draggers>
#include <osgEarthUtil/Sky>
#include <osgText/Text>
#include <osgViewer/Viewer>

#include <cstring>
#include <string_view>
#include <typeinfo>

using osgEarth::ScreenSpaceLayout;
using osgEarth::ScreenSpaceLayoutData;
using osgEarth::Util::SkyNode;

namespace {
constexpr std::uint64_t oddMultiplier = 0x9E3779B97F4A7C15ull;
// Copies of attributes that are in no scene any more are kept up to this many.
constexpr std::size_t mostUnseenCopies = 1000;

template <typename... Classes> bool IsOneOf(const std::type_info& type)
{
    return ((type == typeid(Classes)) || ...);
}

bool IsOfMapEngine(const std::type_info& type)
{
    return std::string_view(type.name()).find("osgEarth") != std::string_view::npos;
}

// Of the engine that comes with the viewer, whose header the viewer cannot see: a tile's own drawing is its
// first child, its quarters are the second. Those of osgEarth 2.8 are no PagedLOD.
bool IsBundledTile(const osg::Object& object)
{
    return IsOfMapEngine(typeid(object)) &&
           std::string_view(typeid(object).name()).find("TileNode") != std::string_view::npos &&
           dynamic_cast<const osg::PagedLOD*>(&object);
}

// The same of lines that a feature layer draws: its own drawing is the first child, the second holds finer
// squares, which come as a whole when the camera is near. Thousands are kept where somebody has flown about.
bool IsBundledLines(const osg::Object& object)
{
    return IsOfMapEngine(typeid(object)) &&
           std::string_view(typeid(object).name()).find("LineSquare") != std::string_view::npos;
}
} // namespace

/// How a class is looked at.
enum class AxSceneWalk::Kind
{
    Plain,      // one of OSG's own, which shows what its setters say
    Engine,     // one of the map engine's or the viewer's own
    Tile,       // of the terrain: what it draws is replaced and never changed
    Lines,      // of a feature layer, the same
    Annotation, // with everything below it
    Sky,        // does not show its parts
    Text,       // shows all that it is made of
    Unknown
};

struct AxSceneWalk::Known
{
    // By address, because std::type_index hashes and compares names. A class that two libraries have stands
    // here twice.
    std::unordered_map<const std::type_info*, Kind> kinds;
};

AxSceneWalk::AxSceneWalk() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), known(std::make_unique<Known>()) {}

AxSceneWalk::~AxSceneWalk() = default;

AxSceneWalk::Kind AxSceneWalk::kindOf(const osg::Object& object)
{
    const std::type_info& type = typeid(object);
    const auto found = known->kinds.find(&type);
    if (found != known->kinds.end())
        return found->second;
    Kind kind = Kind::Unknown;
    if (dynamic_cast<const SkyNode*>(&object))
        kind = Kind::Sky;
    else if (dynamic_cast<const osgEarth::Annotation::Dragger*>(&object) ||
             dynamic_cast<const osgEarth::Annotation::AnnotationEditor*>(&object))
        kind = Kind::Unknown; // handles are made while they are culled, from what the mouse is over
    else if (IsOneOf<CAxDrapeableNode, AxMarkGeometry, AxWorldGeometry, AutoScaleContainer, AxPhotoGeometry,
                     AxTrailGeometry, AxVideoFootprint>(type))
        kind = Kind::Engine;
    else if (IsBundledTile(object))
        kind = Kind::Tile;
    else if (IsBundledLines(object))
        kind = Kind::Lines;
    else if (IsOfMapEngine(type))
        kind = dynamic_cast<const osgEarth::Annotation::AnnotationNode*>(&object) ? Kind::Annotation
                                                                                  : Kind::Engine;
    else if (IsOneOf<osg::Node, osg::Group, osg::Geode, osg::MatrixTransform, osg::PositionAttitudeTransform,
                     osg::AutoTransform, osg::Switch, osg::LOD, osg::PagedLOD, osg::ProxyNode, osg::Billboard,
                     osg::LightSource, osg::ClipNode, osg::Camera, osg::Geometry, osg::ShapeDrawable>(type))
        kind = Kind::Plain;
    else if (IsOneOf<osgText::Text>(type))
        kind = Kind::Text;
    known->kinds[&type] = kind;
    return kind;
}

void AxSceneWalk::mix(std::uint64_t value)
{
    hash = (hash ^ value) * oddMultiplier;
    hash ^= hash >> 29;
}

void AxSceneWalk::mix(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    mix(bits);
}

template <typename Vector> void AxSceneWalk::mixVector(const Vector& vector)
{
    for (int i = 0; i < Vector::num_components; ++i)
        mix(static_cast<double>(vector[i]));
}

void AxSceneWalk::mixMatrix(const osg::Matrixd& matrix)
{
    for (int i = 0; i < 16; ++i)
        mix(matrix.ptr()[i]);
}

void AxSceneWalk::changes(const osg::Object& object)
{
    if (!changeable)
        changeable = &object;
}

// OSG itself declares static what it finds without an update callback in a scene that a view is given, so the
// word counts only where a class is unknown, and not against what is seen to run.
void AxSceneWalk::mayChange(const osg::Object& object)
{
    if (object.getDataVariance() != osg::Object::STATIC)
        changes(object);
}

void AxSceneWalk::Look(osgViewer::Viewer& viewer)
{
    hash = 0;
    changeable = nullptr;
    annotations = 0;
    ++look;
    osg::Camera& camera = *viewer.getCamera();
    const osg::GraphicsContext* window = camera.getGraphicsContext();
    context = window && window->getState() ? window->getState()->getContextID() : 0;
    // Statistics, slaves: whatever draws into the window beside the view.
    if (window)
        for (const osg::Camera* other : window->getCameras())
            if (other != &camera && other->getNodeMask() != 0)
                changes(*other);
    // The one that fits the clip planes to the globe.
    if (camera.getCullCallback() && camera.getCullCallback()->getNestedCallback())
        changes(*camera.getCullCallback());
    visitCamera(camera);
    mix(static_cast<std::uint64_t>(viewer.getLightingMode()));
    if (viewer.getLight())
        visit(*viewer.getLight());
    mix(static_cast<std::uint64_t>(ScreenSpaceLayout::getDeclutteringEnabled()));
    mix(static_cast<std::uint64_t>(ScreenSpaceLayout::getOptions().maxObjects().value()));
    mix(static_cast<std::uint64_t>(ScreenSpaceLayout::getOptions().snapToPixel().value()));
    setTraversalMask(camera.getCullMask());
    for (unsigned i = 0; i < camera.getNumChildren(); ++i)
        camera.getChild(i)->accept(*this);
    forgetUnseen();
    mix(attributeChanges);
}

void AxSceneWalk::forgetUnseen()
{
    if (copies.size() < mostUnseenCopies)
        return;
    std::size_t unseen = 0;
    for (const auto& entry : copies)
        unseen += entry.second.look != look;
    if (unseen < mostUnseenCopies)
        return;
    for (auto entry = copies.begin(); entry != copies.end();)
        entry = entry->second.look == look ? std::next(entry) : copies.erase(entry);
}

// Nodes

AxSceneWalk::Kind AxSceneWalk::visit(osg::Node& node)
{
    const Kind kind = kindOf(node);
    mix(&node);
    mix(static_cast<std::uint64_t>(node.getNodeMask()));
    if (const osg::StateSet* state = node.getStateSet())
        visit(*state);
    const bool isAnnotated = kind == Kind::Annotation || annotations > 0;
    if (kind == Kind::Unknown)
        mayChange(node);
    // An annotation has one of the engine's, for the horizon.
    if (node.getCullCallback() && !isAnnotated)
        changes(node);
    // Annotations and texts mean by it that they may be moved or written anew, which is seen.
    if (node.getDataVariance() == osg::Object::DYNAMIC && !isAnnotated && kind != Kind::Text)
        mayChange(node);
    return kind;
}

void AxSceneWalk::visitChildren(const osg::Group& group, int depth)
{
    mix(static_cast<std::uint64_t>(group.getNumChildren()));
    for (unsigned i = 0; i < group.getNumChildren(); ++i) {
        mix(group.getChild(i));
        if (const osg::Group* below = depth > 1 ? group.getChild(i)->asGroup() : nullptr)
            visitChildren(*below, depth - 1);
    }
}

void AxSceneWalk::apply(osg::Node& node)
{
    const Kind kind = visit(node);
    if (kind == Kind::Lines)
        return visitChildren(*node.asGroup(), 2);
    if (kind == Kind::Sky) {
        auto& sky = static_cast<SkyNode&>(node);
        mix(sky.getEphemeris());
        mix(static_cast<std::uint64_t>(sky.getDateTime().asTimeStamp()));
        mix(static_cast<std::uint64_t>(sky.getSunVisible() | sky.getMoonVisible() << 1 |
                                       sky.getStarsVisible() << 2 | sky.getAtmosphereVisible() << 3));
        visit(*sky.getSunLight());
    }
    annotations += kind == Kind::Annotation;
    traverse(node);
    annotations -= kind == Kind::Annotation;
}

void AxSceneWalk::apply(osg::Transform& node)
{
    if (const auto* matrix = node.asMatrixTransform()) {
        mixMatrix(matrix->getMatrix());
    } else {
        osg::Matrixd local;
        node.computeLocalToWorldMatrix(local, this);
        mixMatrix(local);
    }
    mix(static_cast<std::uint64_t>(node.getReferenceFrame()));
    apply(static_cast<osg::Node&>(node));
}

void AxSceneWalk::visitCamera(const osg::Camera& camera)
{
    mixMatrix(camera.getViewMatrix());
    mixMatrix(camera.getProjectionMatrix());
    mixVector(camera.getClearColor());
    mix(static_cast<std::uint64_t>(camera.getClearMask()));
    mix(static_cast<std::uint64_t>(camera.getCullMask()));
    mix(static_cast<std::uint64_t>(camera.getRenderOrder()));
    if (const osg::Viewport* viewport = camera.getViewport())
        for (const double side : {viewport->x(), viewport->y(), viewport->width(), viewport->height()})
            mix(side);
    if (const osg::StateSet* state = camera.getStateSet())
        visit(*state);
    if (camera.getInitialDrawCallback() || camera.getPreDrawCallback() || camera.getPostDrawCallback() ||
        camera.getFinalDrawCallback())
        changes(camera);
}

void AxSceneWalk::apply(osg::Camera& node)
{
    visitCamera(node);
    apply(static_cast<osg::Transform&>(node));
}

void AxSceneWalk::apply(osg::LightSource& node)
{
    if (const osg::Light* light = node.getLight())
        visit(*light);
    apply(static_cast<osg::Node&>(node));
}

void AxSceneWalk::apply(osg::Switch& node)
{
    for (const bool value : node.getValueList())
        mix(static_cast<std::uint64_t>(value));
    apply(static_cast<osg::Node&>(node));
}

// Most of what a scene consists of lies below tiles.
void AxSceneWalk::apply(osg::LOD& node)
{
    if (kindOf(node) == Kind::Tile && !node.getCullCallback() && !node.getStateSet()) {
        const unsigned count = node.getNumChildren();
        mix(&node);
        mix(static_cast<std::uint64_t>(node.getNodeMask()) << 32 | count);
        if (count > 0)
            mix(node.getChild(0));
        for (unsigned i = 1; i < count; ++i)
            node.getChild(i)->accept(*this);
        return;
    }
    mixVector(node.getCenter());
    mix(static_cast<double>(node.getRadius()));
    for (const auto& [nearest, farthest] : node.getRangeList()) {
        mix(static_cast<double>(nearest));
        mix(static_cast<double>(farthest));
    }
    apply(static_cast<osg::Node&>(node));
}

// Drawables

void AxSceneWalk::visit(osg::Drawable& drawable, Kind kind)
{
    if (drawable.getDrawCallback())
        changes(drawable);
    if (const auto* layout = dynamic_cast<const ScreenSpaceLayoutData*>(drawable.getUserData())) {
        mix(static_cast<double>(layout->getPriority()));
        mixVector(layout->getPixelOffset());
    }
#ifdef OSG_GL_DISPLAYLISTS_AVAILABLE
    // Zero from dirtyDisplayList() to the next drawing.
    if (kind == Kind::Plain && drawable.getUseDisplayList())
        mix(static_cast<std::uint64_t>(drawable.getDisplayList(context)));
#endif
}

void AxSceneWalk::apply(osg::Drawable& drawable)
{
    const Kind kind = visit(static_cast<osg::Node&>(drawable));
    visit(drawable, kind);
    const auto* text = dynamic_cast<const osgText::TextBase*>(&drawable);
    if (!text)
        return;
    for (const unsigned letter : text->getText())
        mix(static_cast<std::uint64_t>(letter));
    mix(text->getFont());
    mixVector(text->getPosition());
    mixVector(text->getRotation().asVec4());
    mixVector(text->getColor());
    mixVector(text->getBoundingBoxColor());
    for (const float size : {text->getCharacterHeight(), text->getCharacterAspectRatio(),
                             text->getMaximumWidth(), text->getMaximumHeight(), text->getLineSpacing()})
        mix(static_cast<double>(size));
    for (const unsigned way :
         {static_cast<unsigned>(text->getCharacterSizeMode()), static_cast<unsigned>(text->getAlignment()),
          static_cast<unsigned>(text->getLayout()), text->getDrawMode(), text->getFontWidth(),
          text->getFontHeight()})
        mix(static_cast<std::uint64_t>(way));
    if (const auto* plain = dynamic_cast<const osgText::Text*>(text)) {
        mixVector(plain->getBackdropColor());
        mix(static_cast<std::uint64_t>(plain->getBackdropType()));
        mix(static_cast<double>(plain->getBackdropHorizontalOffset()));
        mix(static_cast<double>(plain->getBackdropVerticalOffset()));
    }
}

void AxSceneWalk::visit(const osg::BufferData* data)
{
    mix(data);
    if (!data)
        return;
    mix(static_cast<std::uint64_t>(data->getModifiedCount()));
    // What was declared out of date by its buffer only.
    const osg::GLBufferObject* buffer = data->getBufferObject() ? data->getGLBufferObject(context) : nullptr;
    mix(static_cast<std::uint64_t>(buffer && buffer->isDirty()));
}

void AxSceneWalk::apply(osg::Geometry& geometry)
{
    const Kind kind = visit(static_cast<osg::Node&>(geometry));
    visit(geometry, kind);
    for (const osg::Array* array :
         {geometry.getVertexArray(), geometry.getNormalArray(), geometry.getColorArray(),
          geometry.getSecondaryColorArray(), geometry.getFogCoordArray()}) {
        visit(array);
        mix(static_cast<std::uint64_t>(array ? array->getBinding() : 0));
    }
    for (const auto& arrays : {&geometry.getTexCoordArrayList(), &geometry.getVertexAttribArrayList()})
        for (const auto& array : *arrays)
            visit(array.get());
    for (const auto& primitives : geometry.getPrimitiveSetList()) {
        visit(primitives.get());
        mix(static_cast<std::uint64_t>(primitives->getMode()));
        mix(static_cast<std::uint64_t>(primitives->getNumIndices()));
        mix(static_cast<std::uint64_t>(primitives->getNumInstances()));
        if (const auto* run = dynamic_cast<const osg::DrawArrays*>(primitives.get()))
            mix(static_cast<std::uint64_t>(run->getFirst()));
    }
    const bool isCopied = geometry.getUseVertexBufferObjects() ||
                          (geometry.getSupportsDisplayList() && geometry.getUseDisplayList());
    if (!isCopied && kind == Kind::Plain && annotations == 0)
        changes(geometry);
}

// States

void AxSceneWalk::visit(const osg::StateSet& state)
{
    mix(&state);
    for (const auto& [mode, value] : state.getModeList())
        mix(static_cast<std::uint64_t>(mode) << 32 | value);
    for (const auto& [key, attribute] : state.getAttributeList()) {
        mix(static_cast<std::uint64_t>(attribute.second));
        visit(*attribute.first);
    }
    for (const auto& modes : state.getTextureModeList())
        for (const auto& [mode, value] : modes)
            mix(static_cast<std::uint64_t>(mode) << 32 | value);
    for (const auto& attributes : state.getTextureAttributeList())
        for (const auto& [key, attribute] : attributes) {
            mix(static_cast<std::uint64_t>(attribute.second));
            visit(*attribute.first);
        }
    for (const auto& [name, uniform] : state.getUniformList()) {
        mix(uniform.first.get());
        mix(static_cast<std::uint64_t>(uniform.first->getModifiedCount()) << 32 | uniform.second);
    }
    for (const auto& [name, value] : state.getDefineList()) {
        mix(static_cast<std::uint64_t>(std::hash<std::string>()(name)));
        mix(static_cast<std::uint64_t>(std::hash<std::string>()(value.first)) + value.second);
    }
    mix(static_cast<std::uint64_t>(state.getRenderBinMode()) << 32 |
        static_cast<std::uint32_t>(state.getBinNumber()));
    mix(static_cast<std::uint64_t>(state.getNestRenderBins()));
}

void AxSceneWalk::visit(const osg::StateAttribute& attribute)
{
    mix(&attribute);
    if (const osg::Texture* texture = attribute.asTexture()) {
        for (unsigned i = 0; i < texture->getNumImages(); ++i) {
            const osg::Image* image = texture->getImage(i);
            mix(image);
            if (!image)
                continue;
            mix(static_cast<std::uint64_t>(image->getModifiedCount()));
            // A film goes on by itself.
            if (dynamic_cast<const osg::ImageStream*>(image))
                changes(*image);
        }
        mix(static_cast<std::uint64_t>(texture->getFilter(osg::Texture::MIN_FILTER)) << 32 |
            static_cast<std::uint64_t>(texture->getFilter(osg::Texture::MAG_FILTER)));
        return;
    }
    if (const auto* program = dynamic_cast<const osg::Program*>(&attribute)) {
        for (unsigned i = 0; i < program->getNumShaders(); ++i) {
            mix(program->getShader(i));
            mix(static_cast<std::uint64_t>(program->getShader(i)->getShaderSource().size()));
        }
        return;
    }
    Copy& before = copies[&attribute];
    before.look = look;
    if (before.copy && attribute.compare(*before.copy) == 0)
        return;
    attributeChanges += before.copy.valid();
    before.copy = static_cast<osg::StateAttribute*>(attribute.clone(osg::CopyOp::SHALLOW_COPY));
}
