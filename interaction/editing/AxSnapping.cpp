#include "interaction/editing/AxSnapping.h"
#include "interaction/editing/AxEditedShape.h"
#include "scene/AxEditAids.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxViewRay.h"

#include <osgViewer/Viewer>

namespace {
// Objects may come and go while one is drawn, and 2,000 blocks are not gathered with every move of the mouse.
constexpr qint64 oldestTargetsMs = 500;

} // namespace

void AxAddSnapTargets(AxSnapTargets& targets, const AxObjectBook& objects, const AxEditedShape* except)
{
    for (CAxHandleAdapter* object : objects.All()) {
        const AxEditedShapeRef other(object);
        if (!other || other.operator->() == except || !other->IsVisible())
            continue;
        const std::vector<osg::Vec3d>& points = other->GetAnchor();
        for (const osg::Vec3d& point : points)
            targets.AddVertex(point);
        const AxShapeKind kind = other->ShapeKind();
        if (kind.edges == AxShapeKind::Edges::None)
            continue;
        for (const auto& [from, to] : AxEditRules::EdgesOf(static_cast<int>(points.size()), kind.IsClosed()))
            targets.AddEdge(points[std::size_t(from)], points[std::size_t(to)]);
    }
}

AxSnapView AxSnapViewOf(const AxViewRay& view, const osg::Vec2d& target, const osg::Vec3d& place)
{
    AxSnapView screen;
    screen.target = target;
    screen.metresPerPixel = view.pixelSize * (AxGlobe::WorldOf(place) - view.eye).length();
    screen.project = [view](const osg::Vec3d& point) -> std::optional<osg::Vec2d> {
        const auto seen = view.Project(point);
        if (!seen || AxIsBehindGlobe(view.eye, point))
            return std::nullopt;
        return seen->window;
    };
    return screen;
}

osg::Vec3d AxDrawingSnap::Find(AxViewerParts& viewer, const AxEditedShape& drawn, const osg::Vec3d& place)
{
    const osg::Camera* camera = viewer.Scene().View()->getCamera();
    const auto view = camera ? AxViewRay::Through(*camera, 0.0, 0.0) : std::nullopt;
    const auto under = view ? view->Project(AxGlobe::WorldOf(place)) : std::nullopt;
    if (!under || !viewer.Objects().Aids().snap)
        return place;
    if (!age.isValid() || age.hasExpired(oldestTargetsMs)) {
        age.start();
        targets.Clear();
        AxAddSnapTargets(targets, viewer.Objects(), &drawn);
    }
    const auto found = targets.Find(place, AxSnapViewOf(*view, under->window, place));
    if (!found)
        return place;
    QList<osg::Vec3d> onGround{*found};
    viewer.Scene().GetElevations(onGround);
    return onGround.front();
}
