// The part of a set of mark points that stands on the ground and hears the mouse.
#include "interaction/marks/AxMarkCommand.h"
#include "interaction/marks/AxMarkDialog.h"
#include "interaction/marks/AxMarkGeometry.h"
#include "interaction/marks/AxMarkHeights.h"
#include "interaction/marks/AxMarkHit.h"
#include "interaction/marks/AxMarkMouse.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxToolInHand.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/shape/AxDrawnGround.h"
#include "scene/shape/AxOutlinesInFrame.h"
#include "scene/shape/AxShapeClamp.h"
#include "scene/shape/AxViewRay.h"

#include <osgEarth/MapNode>
#include <osgEarth/Terrain>

#include <QElapsedTimer>
#include <QGraphicsView>

#include <cmath>
#include <utility>

namespace {
// Of each frame's time.
constexpr qint64 layBudgetNs = 1500000;
// Less than that is no change of the ground, metres.
constexpr double sameHeight = 0.01;
} // namespace

/// Whether the ground has changed since it was asked last: laying down thousands takes a while, in which
/// further tiles arrive.
class CAxOsgDrawPointSet::Ground : public osgEarth::TerrainCallback
{
public:
    explicit Ground(osgEarth::Terrain* of) : terrain(of)
    {
        if (of)
            of->addTerrainCallback(this);
    }
    void Leave()
    {
        osg::ref_ptr<osgEarth::Terrain> known;
        if (terrain.lock(known))
            known->removeTerrainCallback(this);
    }
    void onTileAdded(const osgEarth::TileKey&, osg::Node*, osgEarth::TerrainCallbackContext&) override
    {
        hasChanged = true;
    }
    bool hasChanged = true;

private:
    const osg::observer_ptr<osgEarth::Terrain> terrain;
};

CAxOsgDrawPointSet::CAxOsgDrawPointSet(CAxEarthViewer* viewer, QObject* parent)
    : CAxHandleAdapter(viewer, parent), geometry(new AxMarkGeometry), mouse(new AxMarkMouse(this)),
      heights(std::make_unique<AxMarkHeights>())
{
    SetBlockType(CAxBlock::MarkPointBlock);
    d->featureNode->setCullingActive(false);
    d->featureNode->addDrawable(geometry);
    d->featureNode->addEventCallback(mouse);
    JoinScene();
    connect(heights.get(), &AxMarkHeights::Answered, this, &CAxOsgDrawPointSet::takeHeights);
    if (!d->viewer)
        return;
    const QObject* host = d->viewer->Widget();
    connect(this, SIGNAL(signalResetList()), host, SIGNAL(signalResetBlockMarkPointListPage()));
    connect(host, SIGNAL(signalCurrentBlock(QString)), this, SLOT(onCurrentChanged(QString)));
    connect(host, SIGNAL(signalMultiSelectBlock(QStringList)), this, SLOT(onSelectedChanged(QStringList)));
    osgEarth::MapNode* map = d->viewer->Scene().MapNode();
    osgEarth::Terrain* terrain = map ? map->getTerrain() : nullptr;
    ground = new Ground(terrain);
    clamp = std::make_unique<AxShapeClamp>(terrain, [this] { return layOnGround(); });
}

CAxOsgDrawPointSet::~CAxOsgDrawPointSet()
{
    d->featureNode->removeEventCallback(mouse);
    if (ground)
        ground->Leave();
}

void CAxOsgDrawPointSet::SetAdapterVisible(bool visible, QString)
{
    d->visible = visible;
    SetFeatureNodeVisible(visible);
}

// On the ground

osg::Vec3d CAxOsgDrawPointSet::placeOf(const AxProjectMark& mark) const
{
    QList<osg::Vec3d> place{{mark.longitude, mark.latitude, mark.altitude}};
    if (d->viewer)
        d->viewer->Scene().GetElevations(place);
    return place.front();
}

void CAxOsgDrawPointSet::rebuild(const QSet<QString>& moved)
{
    // Those that stay keep the ground they stand on.
    std::vector<osg::Vec3d> places;
    std::vector<osg::Vec3d> normals;
    places.reserve(static_cast<std::size_t>(marks.size()));
    for (const AxProjectMark& mark : qAsConst(marks)) {
        const int before = moved.contains(mark.id) ? -1 : IndexOf(mark.id);
        places.push_back(before < 0 ? placeOf(mark) : d->anchors[static_cast<std::size_t>(before)]);
        normals.push_back(AxGlobe::NormalAt(places.back()));
    }
    indices.clear();
    for (int i = 0; i < marks.size(); ++i)
        indices.insert(marks[i].id, i);
    d->anchors = std::move(places);
    worlds.clear();
    for (const osg::Vec3d& place : d->anchors)
        worlds.push_back(AxGlobe::WorldOf(place));
    if (!dragged.isEmpty() && !Find(dragged))
        endDragging();
    if (clamp) {
        clamp->SetExtent(normals);
        clamp->Ask();
    }
    QStringList left;
    for (const QString& id : qAsConst(selected))
        if (Find(id))
            left += id;
    const bool isSelectedGone = left.size() < selected.size();
    selected = left;
    draw();
    if (isSelectedGone)
        emit selectedMarkChanged(SelectedMark());
}

void CAxOsgDrawPointSet::draw()
{
    QStringList names;
    for (const AxProjectMark& mark : qAsConst(marks))
        names += mark.name;
    std::vector<osg::Vec3d> shown = worlds;
    if (const int index = IndexOf(dragged); index >= 0 && dragTo)
        shown[static_cast<std::size_t>(index)] = AxGlobe::WorldOf(*dragTo);
    QSet<int> chosen;
    for (const QString& id : qAsConst(selected))
        chosen.insert(IndexOf(id));
    geometry->SetMarks(shown, names, chosen);
}

bool CAxOsgDrawPointSet::layOnGround()
{
    if (!d->viewer || marks.isEmpty())
        return true;
    if (std::exchange(ground->hasChanged, false))
        toBeLaid = static_cast<std::size_t>(marks.size());
    QElapsedTimer clock;
    clock.start();
    bool isChanged = false;
    for (; toBeLaid > 0 && clock.nsecsElapsed() < layBudgetNs; --toBeLaid) {
        laidLast = (laidLast + 1) % d->anchors.size();
        osg::Vec3d& place = d->anchors[laidLast];
        const double height = placeOf(marks[static_cast<int>(laidLast)]).z();
        if (std::abs(height - place.z()) < sameHeight)
            continue;
        place.z() = height;
        worlds[laidLast] = AxGlobe::WorldOf(place);
        isChanged = true;
    }
    if (isChanged)
        draw();
    return toBeLaid == 0;
}

void CAxOsgDrawPointSet::askHeights(const QVector<AxProjectMark>& of)
{
    osgEarth::MapNode* map = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    QVector<AxMarkHeight> places;
    for (const AxProjectMark& mark : of)
        if (mark.followsGround)
            places += AxMarkHeight{mark.id, mark.longitude, mark.latitude, mark.altitude};
    heights->Ask(map ? map->getMap() : nullptr, places);
}

void CAxOsgDrawPointSet::ReadHeightsAgain()
{
    askHeights(marks);
}

void CAxOsgDrawPointSet::takeHeights(const QVector<AxMarkHeight>& found)
{
    const Running self(this);
    bool isChanged = false;
    for (const AxMarkHeight& place : found) {
        const int index = IndexOf(place.id);
        // It may have been moved meanwhile.
        if (index < 0 || marks[index].longitude != place.longitude ||
            marks[index].latitude != place.latitude || marks[index].altitude == place.altitude ||
            !marks[index].followsGround)
            continue;
        marks[index].altitude = place.altitude;
        isChanged = true;
    }
    if (!isChanged)
        return;
    emit signalResetList();
    if (self.IsWanted())
        emit marksChanged();
}

// The mouse

void CAxOsgDrawPointSet::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    const Running self(this);
    if (d->operation != OperationDrawing || !d->viewer)
        return;
    // Between two clicks nothing is going on, so that the last one can be undone.
    if (d->viewer->Objects().Find(d->handleID) == this)
        d->operation = OperationIdle;
    if (d->viewer->Tools().Tool() != ToolMarkPoint || worldCoordPos == osg::Vec3d())
        return;
    const osg::Vec3d place = AxExactPlace(lngLatPos, worldCoordPos);
    const QString id = AddMark(place.x(), place.y());
    if (self.IsWanted() && !id.isEmpty())
        SelectMark(id);
}

QString CAxOsgDrawPointSet::MarkUnder(const AxViewRay& ray) const
{
    const auto hit = AxDrawnMark(ray, worlds, geometry->Looks());
    return hit ? marks[hit->index].id : QString();
}

QString CAxOsgDrawPointSet::MarkUnderDoubleClick(const AxViewRay& ray) const
{
    if (!mouse->IsFree())
        return {};
    const QString seen = MarkUnder(ray);
    const auto hit = seen.isEmpty() ? AxNearestMark(ray, worlds) : std::nullopt;
    return hit ? marks[hit->index].id : seen;
}

QString CAxOsgDrawPointSet::HoveredMark() const
{
    return mouse->Hovered();
}

void CAxOsgDrawPointSet::ForgetPointer(AxViewerParts& parts, double at)
{
    for (CAxHandleAdapter* object : parts.Objects().OfKind(CAxBlock::MarkPointBlock))
        if (auto* set = qobject_cast<CAxOsgDrawPointSet*>(object))
            set->mouse->ForgetPointer(at);
}

CAxOsgDrawPointSet* CAxOsgDrawPointSet::UnderMouse(AxViewerParts& parts)
{
    for (CAxHandleAdapter* object : parts.Objects().OfKind(CAxBlock::MarkPointBlock))
        if (auto* set = qobject_cast<CAxOsgDrawPointSet*>(object); set && !set->HoveredMark().isEmpty())
            return set;
    return nullptr;
}

CAxOsgDrawPointSet* CAxOsgDrawPointSet::ForDelete(AxViewerParts& parts, QStringList& ids)
{
    if (CAxOsgDrawPointSet* set = UnderMouse(parts)) {
        const QString hovered = set->HoveredMark();
        ids = set->selected.contains(hovered) ? set->selected : QStringList(hovered);
        return set;
    }
    for (CAxHandleAdapter* object : parts.Objects().OfKind(CAxBlock::MarkPointBlock))
        if (auto* set = qobject_cast<CAxOsgDrawPointSet*>(object);
            set && set->IsVisible() && !set->selected.isEmpty()) {
            ids = set->selected;
            return set;
        }
    return nullptr;
}

QStringList CAxOsgDrawPointSet::MarksIn(const osg::Matrixd& toClip, const osg::Vec3d& eye,
                                        const AxPictureFrame& frame) const
{
    QStringList met;
    for (std::size_t i = 0; i < worlds.size(); ++i) {
        const osg::Vec4d clip = osg::Vec4d(worlds[i], 1.0) * toClip;
        if (!(clip.w() > 0.0))
            continue;
        const double x = clip.x() / clip.w();
        const double y = clip.y() / clip.w();
        if (x >= frame.low.x() && x <= frame.high.x() && y >= frame.low.y() && y <= frame.high.y() &&
            !AxIsBehindGlobe(eye, worlds[i]))
            met += marks[static_cast<int>(i)].id;
    }
    return met;
}

osg::Vec3d CAxOsgDrawPointSet::WorldOf(const QString& id) const
{
    const int index = IndexOf(id);
    return index < 0 ? osg::Vec3d() : worlds[static_cast<std::size_t>(index)];
}

bool CAxOsgDrawPointSet::BeginDrag(const QString& id)
{
    if (!Find(id) || !dragged.isEmpty())
        return false;
    dragged = id;
    dragTo.reset();
    beforeDrag = std::exchange(d->operation, OperationMovePoint);
    d->editIndex = IndexOf(id);
    // Escape is for the current object. Not while the scene is walked.
    QMetaObject::invokeMethod(
        this,
        [this, id] {
            const bool isCurrent = d->viewer && d->viewer->Objects().Current() == this;
            if (dragged == id && !(isCurrent && selected.contains(id)))
                SelectMark(id);
        },
        Qt::QueuedConnection);
    return true;
}

void CAxOsgDrawPointSet::DragTo(const AxViewRay& ray)
{
    const int index = IndexOf(dragged);
    osgEarth::MapNode* map = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    const auto world = map && index >= 0 ? AxDrawnGround(*map, ray) : std::nullopt;
    osgEarth::GeoPoint point;
    // Over space it waits where it is.
    if (!world || !point.fromWorld(d->viewer->Scene().MapSRS(), *world))
        return;
    AxProjectMark there = marks[index];
    there.longitude = point.x();
    there.latitude = point.y();
    dragTo = placeOf(there);
    geometry->SetPlace(index, AxGlobe::WorldOf(*dragTo));
}

void CAxOsgDrawPointSet::endDragging()
{
    if (dragged.isEmpty())
        return;
    dragged.clear();
    dragTo.reset();
    d->editIndex = -1;
    d->operation = beforeDrag;
}

void CAxOsgDrawPointSet::FinishDrag()
{
    const AxProjectMark* mark = Find(dragged);
    const std::optional<osg::Vec3d> place = dragTo;
    endDragging();
    if (!mark || !place)
        return;
    AxProjectMark moved = *mark;
    moved.longitude = place->x();
    moved.latitude = place->y();
    EditMark(moved);
}

bool CAxOsgDrawPointSet::CancelHandle()
{
    if (dragged.isEmpty())
        return false;
    endDragging();
    draw();
    return true;
}

void CAxOsgDrawPointSet::ResponseDoubleClickOnPoint(int index, osg::Vec3d)
{
    if (index >= 0 && index < marks.size())
        ShowInformation(marks[index].id);
}

void CAxOsgDrawPointSet::ShowInformation(const QString& id)
{
    if (!d->viewer || !Find(id))
        return;
    const Running self(this);
    SelectMark(id);
    if (self.IsWanted() && d->viewer)
        AxShowMarkDialog(*this, id, d->viewer->Widget());
}
