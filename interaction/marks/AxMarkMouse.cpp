#include "interaction/marks/AxMarkMouse.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"
#include "scene/shape/AxViewRay.h"

#include <osgViewer/View>
#include <osgViewer/Viewer>

#include <utility>

using osgGA::GUIEventAdapter;

namespace {
// What a hand shakes while it clicks, pixels.
constexpr double dragFrom = 3.0;
// A release that belongs to an overlay comes from a corner.
constexpr int placedEvents =
    GUIEventAdapter::MOVE | GUIEventAdapter::PUSH | GUIEventAdapter::DOUBLECLICK | GUIEventAdapter::DRAG;

osg::Vec2d PixelOf(const GUIEventAdapter& ea)
{
    return {static_cast<double>(ea.getX()), static_cast<double>(ea.getY())};
}
} // namespace

AxMarkMouse::AxMarkMouse(CAxOsgDrawPointSet* marks) : set(marks) {}

bool AxMarkMouse::IsFree() const
{
    AxViewerParts* parts = set ? set->Parts() : nullptr;
    if (!parts || set->IsLeaving() || !set->IsVisible() || !parts->Tools().MayPick())
        return false;
    const EToolType tool = parts->Tools().Tool();
    const CAxHandleAdapter* current = parts->Objects().Current();
    const bool isBusy = parts->Tools().IsBusy() && current != set;
    return !isBusy && (tool == ToolNavigate || tool == ToolSelect || tool == ToolMarkPoint);
}

bool AxMarkMouse::mayDrag(const QString& id) const
{
    // While browsing the map is dragged, and an icon comes easily under the mouse: only the selected one
    // moves.
    return set->Parts()->Tools().Tool() != ToolNavigate || set->SelectedMarks().contains(id);
}

bool AxMarkMouse::handle(const GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, osg::Object*,
                         osg::NodeVisitor*)
{
    auto* view = dynamic_cast<osgViewer::View*>(&aa);
    if (!view || !set)
        return false;
    const osg::Camera& camera = *view->getCamera();
    const bool isHandled = ea.getHandled();
    if ((ea.getEventType() & placedEvents) && ea.getTime() > leftAt)
        pointer = isHandled ? std::nullopt
                            : std::optional(osg::Vec2d(static_cast<double>(ea.getXnormalized()),
                                                       static_cast<double>(ea.getYnormalized())));
    switch (ea.getEventType()) {
    case GUIEventAdapter::MOVE:
    case GUIEventAdapter::PUSH:
        break;
    case GUIEventAdapter::DRAG:
        return !isHandled && drag(ea, camera);
    case GUIEventAdapter::RELEASE:
        return ea.getButton() == GUIEventAdapter::LEFT_MOUSE_BUTTON && release(ea) && !isHandled;
    default:
        return false;
    }
    // No button is held: the release went elsewhere.
    if (ea.getEventType() == GUIEventAdapter::MOVE && isHeld)
        release(ea);
    if (isHandled || ea.getEventType() != GUIEventAdapter::PUSH ||
        ea.getButton() != GUIEventAdapter::LEFT_MOUSE_BUTTON || !IsFree())
        return false;
    const auto ray = AxViewRay::Through(camera, static_cast<double>(ea.getXnormalized()),
                                        static_cast<double>(ea.getYnormalized()));
    pressed = ray ? set->MarkUnder(*ray) : QString();
    return !pressed.isEmpty() && push(ea, *ray);
}

QString AxMarkMouse::Hovered() const
{
    if (!pointer || !set)
        return {};
    if (isHeld)
        return pressed;
    if (!IsFree())
        return {};
    const osg::Camera& camera = *set->Parts()->Scene().View()->getCamera();
    const auto ray = AxViewRay::Through(camera, pointer->x(), pointer->y());
    return ray ? set->MarkUnder(*ray) : QString();
}

bool AxMarkMouse::push(const GUIEventAdapter& ea, const AxViewRay& ray)
{
    pressedAt = PixelOf(ea);
    isDragged = false;
    isHeld = mayDrag(pressed);
    isToggle =
        (ea.getModKeyMask() & GUIEventAdapter::MODKEY_CTRL) != 0 || set->Parts()->Tools().IsMultiSelect();
    const auto foot = ray.Project(set->WorldOf(pressed));
    grip = foot ? ray.window - foot->window : osg::Vec2d();
    return isHeld;
}

bool AxMarkMouse::drag(const GUIEventAdapter& ea, const osg::Camera& camera)
{
    if (!isHeld || !(ea.getButtonMask() & GUIEventAdapter::LEFT_MOUSE_BUTTON))
        return isHeld;
    if (!isDragged && (PixelOf(ea) - pressedAt).length() < dragFrom)
        return true;
    if (!isDragged && !set->BeginDrag(pressed))
        return true;
    isDragged = true;
    const osg::Viewport* window = camera.getViewport();
    if (!window)
        return true;
    const double x = static_cast<double>(ea.getXnormalized()) - 2.0 * grip.x() / window->width();
    const double y = static_cast<double>(ea.getYnormalized()) - 2.0 * grip.y() / window->height();
    if (const auto ray = AxViewRay::Through(camera, x, y))
        set->DragTo(*ray);
    return true;
}

bool AxMarkMouse::release(const GUIEventAdapter& ea)
{
    const bool wasHeld = std::exchange(isHeld, false);
    const bool wasDragged = std::exchange(isDragged, false);
    const QString id = std::exchange(pressed, QString());
    if (id.isEmpty())
        return false;
    if (wasDragged)
        QMetaObject::invokeMethod(
            set, [marks = set.data()] { marks->FinishDrag(); }, Qt::QueuedConnection);
    else if ((PixelOf(ea) - pressedAt).length() < dragFrom)
        // After the click of the map itself, which leaves nothing selected.
        QMetaObject::invokeMethod(
            set,
            [marks = set.data(), id, toggles = isToggle] {
                QStringList ids = marks->SelectedMarks();
                if (!toggles)
                    return marks->SelectMark(id);
                if (!ids.removeOne(id))
                    ids += id;
                marks->SelectMarks(ids);
            },
            Qt::QueuedConnection);
    return wasHeld;
}
