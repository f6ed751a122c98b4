#include "interaction/magnifier/AxMagnifier.h"
#include "interaction/magnifier/AxMagnifierItem.h"
#include "interaction/magnifier/AxMagnifierRules.h"
#include "interaction/models/AxModelPick.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/shape/AxDrawnGround.h"
#include "scene/shape/AxViewRay.h"

#include <osgEarth/SpatialReference>
#include <osgViewer/Viewer>

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {
// Over a tower the ground behind it would carry the lens away as the map turns.
std::optional<osg::Vec3d> SeenBy(const AxViewRay& ray, const AxScene& scene)
{
    const std::optional<osg::Vec3d> ground = AxDrawnGround(*scene.MapNode(), ray);
    osg::Group* const models = AxFindModelRoot(scene.View()->getSceneData());
    const auto hit =
        models ? AxPickModelLayer(*models, ray, *scene.MapSRS()->getGeographicSRS()) : std::nullopt;
    if (!hit || (ground && (*ground - ray.eye).length2() < (hit->world - ray.eye).length2()))
        return ground;
    return hit->world;
}
} // namespace

AxMagnifier::AxMagnifier(AxViewerParts& viewer)
    : parts(&viewer), map(viewer.Widget()), item(new AxMagnifierItem(*this))
{
}

AxMagnifier::~AxMagnifier()
{
    if (map && map->viewport())
        map->viewport()->removeEventFilter(this);
    delete item;
}

QGraphicsItem* AxMagnifier::Item() const
{
    return item;
}

QSizeF AxMagnifier::MapSize() const
{
    return map && map->viewport() ? QSizeF(map->viewport()->size()) : QSizeF();
}

bool AxMagnifier::Look(const osg::Vec2d& from, const osg::Vec2d& to)
{
    if (!parts || !map || !parts->Scene().MapNode() || MapSize().isEmpty() || !from.valid() || !to.valid())
        return false;
    const QSizeF room = MapSize();
    const QSizeF dragged(0.5 * std::abs(to.x() - from.x()) * room.width(),
                         0.5 * std::abs(to.y() - from.y()) * room.height());
    const AxMagnifierRules::Lens lens = AxMagnifierRules::LensFor(dragged, room);
    inWindow = (from + to) * 0.5;
    const auto ray = AxViewRay::Through(*parts->Scene().View()->getCamera(), inWindow.x(), inWindow.y());
    ground = ray ? SeenBy(*ray, parts->Scene()) : std::nullopt;
    wanted = lens.size;
    factor = lens.factor;
    const QRectF part = AxMagnifierRules::PartAround(inWindow, lens.size, factor, room);
    const QRectF shown(0.5 * (1.0 + part.left()) * room.width(), 0.5 * (1.0 - part.bottom()) * room.height(),
                       0.5 * part.width() * room.width(), 0.5 * part.height() * room.height());
    corner = AxMagnifierRules::FreeCorner(lens.size, shown, room);
    grip.reset();
    if (!isOpen)
        map->viewport()->installEventFilter(this);
    isOpen = true;
    tell();
    return true;
}

bool AxMagnifier::Close()
{
    if (!isOpen)
        return false;
    isOpen = false;
    grip.reset();
    // The rest of a press that closed it is still nobody else's.
    if (map && map->viewport() && !isTaken)
        map->viewport()->removeEventFilter(this);
    tell();
    return true;
}

void AxMagnifier::SetFactor(double times)
{
    if (!isOpen || !std::isfinite(times))
        return;
    const double bound = std::clamp(times, AxMagnifierRules::leastFactor, AxMagnifierRules::mostFactor);
    if (bound == factor)
        return;
    factor = bound;
    tell();
}

QRectF AxMagnifier::Frame() const
{
    const QSizeF size = AxMagnifierRules::SizeOn(MapSize(), wanted);
    return {AxMagnifierRules::Within(corner, size, MapSize()), size};
}

std::optional<osg::Vec2d> AxMagnifier::middle() const
{
    if (!isOpen || !parts)
        return std::nullopt;
    if (!ground)
        return inWindow;
    const osg::Camera& camera = *parts->Scene().View()->getCamera();
    const auto ray = AxViewRay::Through(camera, 0.0, 0.0);
    const auto seen = ray ? ray->Project(*ground) : std::nullopt;
    if (!seen || AxIsBehindGlobe(ray->eye, *ground))
        return std::nullopt;
    const osg::Viewport& port = *camera.getViewport();
    const osg::Vec2d place(2.0 * seen->window.x() / port.width() - 1.0,
                           2.0 * seen->window.y() / port.height() - 1.0);
    if (std::abs(place.x()) > 1.0 || std::abs(place.y()) > 1.0)
        return std::nullopt;
    return place;
}

std::optional<QRectF> AxMagnifier::Part() const
{
    const auto place = middle();
    if (!place)
        return std::nullopt;
    return AxMagnifierRules::PartAround(*place, Frame().size(), factor, MapSize());
}

void AxMagnifier::tell()
{
    if (map)
        item->SetRoom(QRectF(QPointF(), MapSize()));
    item->setVisible(isOpen);
    item->update();
    emit changed();
}

// The bar, or whatever else lies over the lens, keeps its mouse.
bool AxMagnifier::isUnder(const QPointF& place) const
{
    if (!isOpen || !Frame().contains(place))
        return false;
    const QGraphicsItem* top = map->itemAt(place.toPoint());
    return !top || top == item;
}

bool AxMagnifier::press(const QPointF& place)
{
    isTaken = true;
    if (AxMagnifierItem::CrossIn(Frame()).contains(place))
        Close();
    else
        grip = place - Frame().topLeft();
    return true;
}

void AxMagnifier::letGo()
{
    isTaken = false;
    grip.reset();
    if (!isOpen)
        map->viewport()->removeEventFilter(this);
}

// What the lens takes never reaches the map, so nothing is picked, moved or zoomed through it.
bool AxMagnifier::eventFilter(QObject* watched, QEvent* event)
{
    if (!map || watched != map->viewport())
        return QObject::eventFilter(watched, event);
    const QEvent::Type type = event->type();
    if (type == QEvent::Resize) {
        item->SetRoom(QRectF(QPointF(), MapSize()));
    } else if (type == QEvent::Wheel) {
        const auto* wheel = static_cast<QWheelEvent*>(event);
        if (!isUnder(wheel->position()))
            return false;
        const QPoint turned = wheel->angleDelta();
        SetFactor(AxMagnifierRules::Turned(factor, turned.y() != 0 ? turned.y() : turned.x()));
        return true;
    } else if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        // A button that is held belongs to what it was pressed on.
        const bool isFirst = mouse->buttons() == mouse->button();
        isTaken = isTaken && !isFirst;
        return isTaken || (isFirst && isUnder(mouse->localPos()) && press(mouse->localPos()));
    } else if (type == QEvent::MouseMove) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        // The release may have gone to a window that came up meanwhile.
        if (mouse->buttons() == Qt::NoButton)
            letGo();
        if (grip && isTaken) {
            corner = AxMagnifierRules::Within(mouse->localPos() - *grip, Frame().size(), MapSize());
            tell(); // a listener may end the viewer
            return true;
        }
        return isTaken || (mouse->buttons() == Qt::NoButton && isUnder(mouse->localPos()));
    } else if (type == QEvent::MouseButtonRelease && isTaken) {
        if (static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton)
            letGo();
        return true;
    }
    return false;
}
