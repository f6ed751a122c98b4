#include "mission/aircraft/AxPhotoPoints.h"
#include "mission/aircraft/AxGeocentricDrawing.h"
#include "scene/base/AxFonts.h"
#include "scene/base/AxWgs84.h"
#include "scene/shape/AxStateOverGround.h"

#include <osg/Point>
#include <osg/Viewport>

#include <algorithm>
#include <cmath>

namespace {
constexpr float photoPixels = 10.0f;
constexpr double hoverPixels = 9.0;  // from the middle of a point
constexpr double farAway = 200000.0; // metres
constexpr int photoBin = 15;         // over the trail, below models
constexpr int photoLabelBin = 41;    // over panels
const osg::Vec4 photoColor(0.0f, 1.0f, 0.0f, 1.0f);
constexpr float photoTextSize = 13.0f;

void TakeOut(osg::Node& node)
{
    while (node.getNumParents() > 0)
        node.getParent(0)->removeChild(&node);
}
} // namespace

AxPhotoGeometry::AxPhotoGeometry() : points(new osg::Vec3Array), rest(new osg::Vec4bArray)
{
    setUseDisplayList(false);
    setSupportsDisplayList(false);
    setUseVertexBufferObjects(true);
    setVertexArray(points);
    rest->setNormalize(true);
    setVertexAttribArray(AxGeocentric::restAttribute, rest, osg::Array::BIND_PER_VERTEX);
    setColorArray(new osg::Vec4Array(1, &photoColor), osg::Array::BIND_OVERALL);
    const osg::ref_ptr<osg::StateSet> state = AxGeocentric::State(photoBin);
    state->setAttributeAndModes(new osg::Point(photoPixels));
    state->setMode(GL_POINT_SMOOTH, osg::StateAttribute::ON);
    setStateSet(state);
}

void AxPhotoGeometry::Append(const osg::Vec3d& world)
{
    points->push_back(AxGeocentric::High(world));
    rest->push_back(AxGeocentric::Rest(world));
    points->dirty();
    rest->dirty();
    dirtyBound();
}

void AxPhotoGeometry::accept(osg::NodeVisitor& visitor)
{
    if (!visitor.validNodeMask(*this))
        return;
    const AxGeocentric::ClipPlanesKept kept(visitor.asCullVisitor());
    osg::Geometry::accept(visitor);
}

void AxPhotoGeometry::drawImplementation(osg::RenderInfo& info) const
{
    AxGeocentric::SetUniforms(*info.getState());
    osg::Geometry::drawImplementation(info);
}

void CAxPicPointCallback::Add(int index)
{
    const bool areAllShown = shown == indices.size();
    indices.push_back(index);
    if (areAllShown)
        ShowFirst(indices.size());
}

void CAxPicPointCallback::ShowFirst(std::size_t count)
{
    count = std::min(count, indices.size());
    if (count != shown)
        isBuilt = false;
    shown = count;
}

void CAxPicPointCallback::SetVisible(bool visible)
{
    if (visible != isVisible)
        isBuilt = false;
    isVisible = visible;
}

void CAxPicPointCallback::operator()(osg::Node* node, osg::NodeVisitor* visitor)
{
    osg::Geometry* geometry = node->asDrawable() ? node->asDrawable()->asGeometry() : nullptr;
    if (geometry && !isBuilt) {
        isBuilt = true;
        geometry->removePrimitiveSet(0, geometry->getNumPrimitiveSets());
        if (isVisible && shown > 0)
            geometry->addPrimitiveSet(new osg::DrawArrays(GL_POINTS, 0, static_cast<int>(shown)));
    }
    traverse(node, visitor);
}

AxPhotoPoints::AxPhotoPoints() : label(new osg::AutoTransform), letters(new osgText::Text)
{
    label->setName("PicPoint-Label");
    label->setAutoRotateMode(osg::AutoTransform::ROTATE_TO_SCREEN);
    label->setAutoScaleToScreen(true);
    label->setNodeMask(0);
    osg::ref_ptr<osg::Geode> held = new osg::Geode;
    held->setCullingActive(false);
    letters->setFont(AxSceneFont());
    letters->setCharacterSize(photoTextSize);
    letters->setFontResolution(static_cast<unsigned>(photoTextSize), static_cast<unsigned>(photoTextSize));
    letters->setAxisAlignment(osgText::Text::XY_PLANE);
    letters->setAlignment(osgText::Text::CENTER_BOTTOM);
    letters->setPosition({0.0f, photoPixels, 0.0f});
    letters->setColor(osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f));
    letters->setDrawMode(osgText::Text::TEXT | osgText::Text::FILLEDBOUNDINGBOX);
    letters->setBoundingBoxColor(osg::Vec4(0.1f, 0.1f, 0.1f, 0.8f));
    letters->setBoundingBoxMargin(0.3f);
    letters->setDataVariance(osg::Object::DYNAMIC);
    held->addDrawable(letters);
    label->addChild(held);
    const osg::ref_ptr<osg::StateSet> state = AxStateOverGround();
    state->setRenderBinDetails(photoLabelBin, "TraversalOrderBin");
    label->setStateSet(state);
}

bool AxPhotoPoints::Add(int index, const osg::Vec3d& world, const std::string& name)
{
    const bool isFirst = !geode;
    if (isFirst) {
        geode = new osg::Geode;
        geode->setName(name);
        geometry = new AxPhotoGeometry;
        callback = new CAxPicPointCallback;
        callback->SetVisible(isVisible);
        geometry->setUpdateCallback(callback);
        geode->addDrawable(geometry);
    }
    geometry->Append(world);
    callback->Add(index);
    places.push_back(world);
    return isFirst;
}

void AxPhotoPoints::ShowAll()
{
    isVisible = true;
    if (!geode)
        return;
    geometry->removePrimitiveSet(0, geometry->getNumPrimitiveSets());
    callback->SetVisible(true);
    callback->ShowFirst(places.size());
    callback->Rebuild();
}

void AxPhotoPoints::ShowFirst(std::size_t count)
{
    if (callback)
        callback->ShowFirst(count);
    if (hovered && *hovered >= count)
        Hover(std::nullopt, QString());
}

void AxPhotoPoints::ShowThrough(int index)
{
    for (std::size_t i = callback ? callback->Shown() : places.size(); i < places.size(); ++i)
        if (callback->Index(i) == index)
            return ShowFirst(i + 1);
}

void AxPhotoPoints::SetVisible(bool visible)
{
    isVisible = visible;
    if (callback)
        callback->SetVisible(visible);
    if (!visible)
        Hover(std::nullopt, QString());
}

void AxPhotoPoints::Remove()
{
    Hover(std::nullopt, QString());
    TakeOut(*label);
    if (geode)
        TakeOut(*osg::ref_ptr<osg::Geode>(geode));
    geode = nullptr;
    geometry = nullptr;
    callback = nullptr;
    places.clear();
}

std::optional<std::size_t> AxPhotoPoints::Near(const osg::Vec3d& world, const osg::Camera& camera) const
{
    if (!isVisible || Count() == 0 || !camera.getViewport())
        return std::nullopt;
    const osg::Matrixd toWindow =
        camera.getViewMatrix() * camera.getProjectionMatrix() * camera.getViewport()->computeWindowMatrix();
    const osg::Vec3d eye = osg::Matrixd::inverse(camera.getViewMatrix()).getTrans();
    const osg::Vec3d pointer = world * toWindow;
    std::optional<std::size_t> nearest;
    double least = hoverPixels;
    for (std::size_t i = 0; i < callback->Shown(); ++i) {
        // Neither behind the eye nor, far away, behind the globe.
        const osg::Vec3d sight = places[i] - eye;
        if (sight * (world - eye) <= 0.0 || (sight.length() > farAway && sight * places[i] > 0.0))
            continue;
        const osg::Vec3d there = places[i] * toWindow;
        const double away = std::hypot(there.x() - pointer.x(), there.y() - pointer.y());
        if (away < least) {
            least = away;
            nearest = i;
        }
    }
    return nearest;
}

void AxPhotoPoints::Hover(std::optional<std::size_t> point, const QString& text)
{
    hovered = point && *point < places.size() ? point : std::nullopt;
    if (!hovered) {
        label->setNodeMask(0);
        return;
    }
    label->setPosition(places[*point]);
    letters->setText(text.toStdWString().c_str());
    label->setNodeMask(~0u);
}
