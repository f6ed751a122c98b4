#include "mission/routes/CAxTaskLable.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxSceneImage.h"
#include "scene/base/AxShortName.h"

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/LineWidth>
#include <osg/observer_ptr>
#include <osg/Texture2D>
#include <osgEarth/MapNode>
#include <osgEarth/Registry>
#include <osgEarth/ScreenSpaceLayout>
#include <osgEarthAnnotation/GeoPositionNode>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthSymbology/BBoxSymbol>
#include <osgEarthSymbology/Color>
#include <osgEarthSymbology/TextSymbol>

#include <QHash>
#include <QPointer>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>

using osgEarth::Annotation::GeoPositionNode;
using osgEarth::Annotation::LabelNode;
using osgEarth::Symbology::BBoxSymbol;
using osgEarth::Symbology::Color;
using osgEarth::Symbology::Style;
using osgEarth::Symbology::TextSymbol;

namespace {
// Pixels round the place where the label hangs, y upwards.
constexpr float lableHalfWidth = 64.0f;
constexpr float lableNameHeight = 24.0f;
constexpr float lableNameMiddle = -12.0f;
constexpr float lableFirstButton = -44.0f;
constexpr float lableButtonStep = -32.0f;
constexpr float lableButtonHalf = 16.0f; // as large as its picture, whose rim is empty
constexpr float lableMargin = 8.0f;
constexpr float lableRim = 1.0f;
constexpr float lableTextSize = 13.0f;
constexpr int lableMostLetters = 32;
constexpr int linkBin = 16; // over routes and their areas, below what is laid out on the screen
const osg::Vec4f lablePanelColor(0.2941177f, 0.2666667f, 0.3921569f, 0.9f);
const osg::Vec4f lableWhite(1.0f, 1.0f, 1.0f, 1.0f);
// Sets the panel off from dark ground.
const osg::Vec4f lableRimColor(1.0f, 1.0f, 1.0f, 0.6f);

QString LableImage(int button, const char* state)
{
    return QStringLiteral(":/images/Normal/map_airline_show/lineares_flight_lean_mis%1_but_%2.png")
        .arg(QString::number(button), QLatin1String(state));
}

Style NameStyle()
{
    Style style;
    auto* text = style.getOrCreate<TextSymbol>();
    text->font() = "msyh.ttc";
    text->size() = lableTextSize;
    text->alignment() = TextSymbol::ALIGN_CENTER_CENTER;
    text->pixelOffset() = osg::Vec2s(0, static_cast<short>(lableNameMiddle));
    text->fill()->color() = Color(lableWhite);
    text->halo()->color() = Color(lableWhite.r(), lableWhite.g(), lableWhite.b(), 0.0f);
    text->declutter() = false;
    return style;
}

/// By its kind, drawables of other labels are told from those of this one.
class LableGeode : public osg::Geode
{
public:
    LableGeode() { setDataVariance(STATIC); } // does nothing of its own that a look would not see
};

// FLT_MAX: one label is never shown in part.
void LayOut(osg::Drawable* drawable)
{
    drawable->setCullingActive(false);
    osgEarth::ScreenSpaceLayoutData::getOrCreate(drawable)->setPriority(FLT_MAX);
}

void AddRectangle(osg::Geometry& geometry, float left, float bottom, float right, float top,
                  const osg::Vec4f& color)
{
    auto& points = static_cast<osg::Vec3Array&>(*geometry.getVertexArray());
    auto& colors = static_cast<osg::Vec4Array&>(*geometry.getColorArray());
    for (const osg::Vec3f& corner : {osg::Vec3f(left, bottom, 0.0f), osg::Vec3f(right, bottom, 0.0f),
                                     osg::Vec3f(right, top, 0.0f), osg::Vec3f(left, top, 0.0f)}) {
        points.push_back(corner);
        colors.push_back(color);
    }
}

// One for the links of all labels, so that OpenGL changes no state between them.
osg::ref_ptr<osg::StateSet> LinkState(float width)
{
    static QHash<int, osg::observer_ptr<osg::StateSet>> known;
    osg::ref_ptr<osg::StateSet> state;
    osg::observer_ptr<osg::StateSet>& shared = known[static_cast<int>(width)];
    if (shared.lock(state))
        return state;
    state = new osg::StateSet;
    state->setAttributeAndModes(new osg::LineWidth(width));
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
    state->setAttributeAndModes(
        new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
    state->setMode(GL_BLEND, osg::StateAttribute::ON);
    // Behind the routes, rims before what they surround.
    state->setRenderBinDetails(linkBin - static_cast<int>(width), "RenderBin");
    shared = state.get();
    return state;
}

osg::ref_ptr<osg::Geometry> LinkLine(const osg::Vec3d& to, const osg::Vec4f& color, float width)
{
    osg::ref_ptr<osg::Geometry> line = new osg::Geometry;
    line->setUseDisplayList(false);
    line->setUseVertexBufferObjects(true);
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
    points->push_back(osg::Vec3f());
    points->push_back(osg::Vec3f(to));
    line->setVertexArray(points);
    line->setColorArray(new osg::Vec4Array(1, &color), osg::Array::BIND_OVERALL);
    line->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, 2));
    line->setStateSet(LinkState(width));
    return line;
}
} // namespace

struct CAxTaskLable::Parts
{
    QPointer<AxViewerParts> viewer;
    osg::ref_ptr<osg::Group> root = new osg::Group;
    osg::ref_ptr<GeoPositionNode> anchor; ///< null without a map
    osg::ref_ptr<osg::Geode> geode = new LableGeode;
    osg::ref_ptr<osg::Geode> link = new osg::Geode;
    std::array<osg::ref_ptr<osg::Geometry>, 3> buttons;
    std::array<QString, 3> images; ///< that the buttons show
    osg::ref_ptr<osg::Geometry> panel;
    osg::ref_ptr<LabelNode> name; ///< null without a map
    osg::Drawable* nameDrawable() const
    {
        osg::Geode* text = name ? name->getPositionAttitudeTransform()->getChild(0)->asGeode() : nullptr;
        return text && text->getNumDrawables() > 0 ? text->getDrawable(0) : nullptr;
    }
    bool areButtonsShown = true;
    int hovered = 1; ///< button 1 starts marked
    int pressed = 0;
    int chosen = 0;
};

CAxTaskLable::CAxTaskLable(CAxEarthViewer* viewer, const QString& name, const osgEarth::GeoPoint& position,
                           const osgEarth::GeoPoint& link)
    : d(std::make_unique<Parts>())
{
    d->viewer = AxPartsOf(viewer);
    const std::string nodeName = name.toLocal8Bit().toStdString();
    d->root->setName(nodeName);
    d->geode->setName(nodeName);
    d->geode->setCullingActive(false);
    d->link->setName("TaskLable-Link");

    // Of drawables at one place the mouse meets the first, which is drawn last: buttons, name, panel.
    for (int i = 0; i < 3; ++i) {
        const auto n = static_cast<std::size_t>(i);
        const float middle = lableFirstButton + static_cast<float>(i) * lableButtonStep;
        osg::ref_ptr<osg::Geometry> button = osg::createTexturedQuadGeometry(
            {-lableButtonHalf, middle - lableButtonHalf, 0.0f}, {2.0f * lableButtonHalf, 0.0f, 0.0f},
            {0.0f, 2.0f * lableButtonHalf, 0.0f});
        button->setName("TaskLable-Mis" + std::to_string(i + 1));
        button->setUseDisplayList(false);
        button->setUseVertexBufferObjects(true);
        button->setColorArray(new osg::Vec4Array(1, &lableWhite), osg::Array::BIND_OVERALL);
        LayOut(button);
        d->geode->addDrawable(button);
        d->buttons[n] = button;
    }
    showStates();
    ResetRenderSort();
    drawPanel();

    if (!d->viewer)
        return;
    if (osgEarth::MapNode* mapNode = d->viewer->Scene().MapNode()) {
        d->name = new LabelNode(mapNode, position, std::string(), osgEarth::Symbology::Style());
        d->root->addChild(d->name);
        d->anchor = new GeoPositionNode(mapNode, position);
        d->anchor->getPositionAttitudeTransform()->addChild(d->link);
        d->anchor->getPositionAttitudeTransform()->addChild(d->geode);
        d->root->addChild(d->anchor);
        UpdateLinkLine(link);
        UpdateTxt(name);
        // Where the engine draws by programs alone, textures need one.
        osgEarth::Registry::shaderGenerator().run(d->geode);
    }
    const QObject* mouse = d->viewer->Mouse();
    connect(mouse, SIGNAL(mouseMoveSignal(osg::Drawable*)), this, SLOT(slotMouseHov(osg::Drawable*)));
    connect(mouse, SIGNAL(mouseLeftBtnPress(osg::Drawable*)), this,
            SLOT(slotMouseLeftBtnPress(osg::Drawable*)));
    connect(mouse, SIGNAL(mouseLeftBtnClickSignal(osg::Drawable*)), this,
            SLOT(slotMouseLeftBtnRelease(osg::Drawable*)));
    connect(mouse, SIGNAL(mouseLeftBtnMove(osg::Vec3d, osg::Vec3d)), this,
            SLOT(slotMouseMoving(osg::Vec3d, osg::Vec3d)));
}

CAxTaskLable::~CAxTaskLable()
{
    RemoveFromScene();
}

void CAxTaskLable::AddToScene()
{
    osg::Group* group = d->viewer ? d->viewer->Scene().DrawGroup() : nullptr;
    if (group && !group->containsNode(d->root))
        group->addChild(d->root);
}

void CAxTaskLable::RemoveFromScene()
{
    while (d->root->getNumParents() > 0)
        d->root->getParent(0)->removeChild(d->root);
}

osg::Node* CAxTaskLable::GetRootNode() const
{
    return d->root;
}

void CAxTaskLable::UpdateLinkLine(const osgEarth::GeoPoint& link)
{
    osg::Matrixd toLocal;
    osg::Vec3d end;
    d->link->removeDrawables(0, d->link->getNumDrawables());
    if (!d->anchor || !d->anchor->getPosition().createWorldToLocal(toLocal) || !link.toWorld(end))
        return;
    // White on a dark rim is seen on any ground.
    d->link->addDrawable(LinkLine(end * toLocal, osg::Vec4f(0.1f, 0.1f, 0.15f, 0.8f), 4.0f));
    d->link->addDrawable(LinkLine(end * toLocal, lableWhite, 2.0f));
}

void CAxTaskLable::SetLinkVisible(bool visible)
{
    d->link->setNodeMask(visible ? ~0u : 0u);
}

void CAxTaskLable::UpdateTxt(const QString& text)
{
    if (!d->name)
        return;
    d->name->setText(AxShortName(text, lableMostLetters).toStdString());
    drawPanel();
}

// Without buttons the panel is a part of the name, so that the labels of many routes are drawn in one go.
void CAxTaskLable::drawPanel()
{
    if (d->panel)
        d->geode->removeDrawable(d->panel);
    d->panel = nullptr;
    Style style = NameStyle();
    float half = lableHalfWidth;
    if (d->name) {
        d->name->setStyle(style);
        if (const osg::Drawable* name = d->nameDrawable()) {
            const osg::BoundingBox box = name->getBoundingBox();
            half = std::max(half, 0.5f * (box.xMax() - box.xMin()) + lableMargin);
        }
    }
    if (!d->areButtonsShown) {
        auto* plate = style.getOrCreate<BBoxSymbol>();
        plate->fill()->color() = Color(lablePanelColor);
        plate->border()->color() = Color(lableRimColor);
        plate->margin() = 0.0f;
        plate->leastSize() = osg::Vec2f(2.0f * half, lableNameHeight);
        if (d->name)
            d->name->setStyle(style);
    }
    if (osg::Drawable* name = d->nameDrawable())
        name->setName("TaskLable-Name");
    if (!d->areButtonsShown)
        return;
    osg::ref_ptr<osg::Geometry> panel = new osg::Geometry;
    panel->setName("TaskLable-Panel");
    panel->setUseDisplayList(false);
    panel->setUseVertexBufferObjects(true);
    panel->setVertexArray(new osg::Vec3Array);
    panel->setColorArray(new osg::Vec4Array, osg::Array::BIND_PER_VERTEX);
    const float bottom = lableFirstButton + 2.5f * lableButtonStep - 4.0f;
    AddRectangle(*panel, -half - lableRim, bottom - lableRim, -half, lableRim, lableRimColor);
    AddRectangle(*panel, half, bottom - lableRim, half + lableRim, lableRim, lableRimColor);
    AddRectangle(*panel, -half, bottom - lableRim, half, bottom, lableRimColor);
    AddRectangle(*panel, -half, 0.0f, half, lableRim, lableRimColor);
    AddRectangle(*panel, -half, bottom, half, 0.0f, lablePanelColor);
    panel->addPrimitiveSet(
        new osg::DrawArrays(GL_QUADS, 0, static_cast<int>(panel->getVertexArray()->getNumElements())));
    LayOut(panel);
    if (d->anchor)
        osgEarth::Registry::shaderGenerator().run(panel);
    // A new drawable: the layout puts those that it drew before on top, and name and buttons may be new.
    d->geode->addDrawable(panel);
    d->panel = panel;
}

void CAxTaskLable::SetImgVisible(bool visible)
{
    for (const auto& button : d->buttons)
        button->setNodeMask(visible ? 0xffffffu : 0u);
    if (d->areButtonsShown == visible)
        return;
    d->areButtonsShown = visible;
    drawPanel();
}

void CAxTaskLable::ShowChosen(int button)
{
    ResetCheckMark(true);
    d->chosen = button;
    showStates();
}

void CAxTaskLable::ResetRenderSort()
{
    // One for all labels, so that OpenGL changes less between them.
    static osg::observer_ptr<osg::StateSet> known;
    osg::ref_ptr<osg::StateSet> state;
    if (!known.lock(state)) {
        state = new osg::StateSet;
        osgEarth::ScreenSpaceLayout::activate(state);
        known = state.get();
    }
    d->geode->setStateSet(state);
}

int CAxTaskLable::buttonOf(const osg::Drawable* drawable) const
{
    if (!drawable || drawable->getNumParents() == 0 || !d->areButtonsShown)
        return 0;
    const osg::Node* parent = drawable->getParent(0);
    // Two tasks may share a name or have none, which is that of many nodes.
    const bool isNamesake = !d->root->getName().empty() && parent->getName() == d->root->getName() &&
                            !dynamic_cast<const LableGeode*>(parent);
    if (parent != d->geode && drawable != d->nameDrawable() && !isNamesake)
        return 0;
    if (drawable == d->buttons[0])
        return 1;
    return drawable == d->buttons[1] ? 2 : 3;
}

void CAxTaskLable::ResetMark(int button)
{
    d->hovered = button;
    d->pressed = 0; // the mouse moves freely: a press that ended elsewhere is over
}

void CAxTaskLable::ResetCheckMark(bool released)
{
    d->pressed = 0;
    d->hovered = 0;
    if (released)
        d->chosen = 0;
}

void CAxTaskLable::showStates()
{
    // The pointer covers the mark of the button chosen before, a press that of the pointer.
    const auto state = [this](int number) {
        if (number == d->pressed)
            return "pre";
        if (number == d->hovered)
            return "hov";
        return number == d->chosen ? "pre" : "nor";
    };
    for (int number = 1; number <= 3; ++number) {
        const auto i = static_cast<std::size_t>(number - 1);
        const QString wanted = LableImage(number, state(number));
        if (d->images[i] == wanted)
            continue;
        d->images[i] = wanted;
        osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(AxSceneImage(wanted));
        texture->setName(wanted.toStdString());
        texture->setResizeNonPowerOfTwoHint(false);
        texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
        osg::StateSet* look = d->buttons[i]->getOrCreateStateSet();
        look->setDataVariance(osg::Object::DYNAMIC);
        look->setTextureAttributeAndModes(0, texture);
    }
}

void CAxTaskLable::slotMouseHov(osg::Drawable* drawable)
{
    const int button = buttonOf(drawable);
    if (button == 0)
        return;
    ResetMark(button);
    showStates();
}

void CAxTaskLable::slotMouseLeftBtnPress(osg::Drawable* drawable)
{
    const int button = buttonOf(drawable);
    if (button == 0)
        return;
    ResetCheckMark(false);
    d->pressed = button;
    showStates();
}

void CAxTaskLable::slotMouseLeftBtnRelease(osg::Drawable* drawable)
{
    const int button = buttonOf(drawable);
    if (button == 0)
        return;
    ShowChosen(button);
    // Last: who hears it may delete the label.
    emit PressedBtnSignal(button, QString::fromLocal8Bit(d->root->getName().c_str()));
}

void CAxTaskLable::slotMouseMoving(osg::Vec3d, osg::Vec3d) {}
