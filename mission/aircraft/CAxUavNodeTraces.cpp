// What an aircraft leaves on the map: trail, replayed line, photo points, and what its video camera sees.
#include "mission/aircraft/CAxUavNodeState.h"
#include "scene/AxBlockObject.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/base/AxViewerLog.h"
#include "scene/shape/AxDrawnGround.h"

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxMath.h>
#include <AxData/CAxBlockManager.h>

#include <osgViewer/Viewer>

#include <utility>

namespace {
// Sizes of the focal length in a picture: zoom 1 has 5 mm, a pixel 2.883 micrometres.
constexpr double focalMillimetres = 5.0;
constexpr double micrometresPerMillimetre = 1000.0;
constexpr double pixelMicrometres = 2.883;
// Rays to the relief are dear; between two outlines, milliseconds.
constexpr int footprintPause = 200;
} // namespace

// Trail and replayed flight

void CAxUavNode::CreateFlightPath(float width, const osg::Vec4f& color)
{
    if (!d->root || !d->position)
        return;
    const bool isNew = !d->trail.Node();
    d->trail.Append(AxUavWorldOf(*d->position), width, color, d->name + "-Traj");
    if (isNew && d->trail.Node())
        d->root->addChild(d->trail.Node());
}

void CAxUavNode::ClearAllTrailLine()
{
    d->trail.Clear();
    SetPathIndexMask(0);
}

void CAxUavNode::RemoveAllTrailLine()
{
    d->trail.Remove();
    AxTakeFromParents(d->replay);
    d->replay = nullptr;
    d->replayCallback = nullptr;
    d->pathIndex = 0;
}

int CAxUavNode::GetTrailVertexCount() const
{
    return d->trail.Count();
}

void CAxUavNode::CreateReplayFlightLine(const std::vector<CAxVector3D>& points)
{
    RemoveAllTrailLine();
    osg::Group* group = d->viewer ? d->viewer->Scene().DrawGroup() : nullptr;
    if (!group || points.empty())
        return;
    d->replayCallback = new CAxTrailLingCallBack(points);
    d->replay = AxMakeReplayLine(d->viewer->Scene().MapNode(), d->style, d->replayCallback);
    if (!d->replay)
        return;
    d->replay->setName(d->name + "-Replay");
    group->addChild(d->replay);
    apply();
}

void CAxUavNode::SetPathIndexMask(int index)
{
    if (!d->replayCallback)
        return;
    index = qBound(0, index, d->replayCallback->Count());
    if (index == d->pathIndex)
        return;
    d->pathIndex = index;
    d->replayCallback->SetIndex(index);
    emit CurIndexChanged(index);
}

int CAxUavNode::GetPathIndexMask() const
{
    return d->pathIndex;
}

// Photos

void CAxUavNode::addPhoto(int index, const CAxVector3D& at)
{
    osg::Group* group = d->viewer ? d->viewer->Scene().DrawGroup() : nullptr;
    if (!group || !d->photos.Add(index, AxUavWorldOf(at), d->name + "-PicPoints"))
        return;
    group->addChild(d->photos.Node());
    group->addChild(d->photos.Label());
}

void CAxUavNode::AddCurrPicPoint(int index, double longitude, double latitude)
{
    if (!AxIsUavPlace(longitude, latitude, 0.0))
        return;
    if (!d->pointsOfPhotos.empty())
        d->photos.ShowThrough(index);
    else
        addPhoto(index, CAxVector3D(longitude, latitude, d->position ? d->position->z() : 0.0));
}

void CAxUavNode::slotAddPicPoint(int index, double longitude, double latitude)
{
    AddCurrPicPoint(index, longitude, latitude);
}

void CAxUavNode::CreateReplayPicPoint(const QStringList& points)
{
    RemovePicPoint();
    int refused = 0;
    for (const QString& point : points) {
        const QStringList parts = point.split(QLatin1Char(','));
        bool areNumbers[4] = {};
        const int index = parts.value(0).trimmed().toInt(&areNumbers[0]);
        double numbers[3] = {};
        for (int i = 0; i < 3; ++i)
            numbers[i] = parts.value(i + 1).trimmed().toDouble(&areNumbers[i + 1]);
        const bool isPhoto = parts.size() == 4 && areNumbers[0] && areNumbers[1] && areNumbers[2] &&
                             areNumbers[3] && AxIsUavPlace(numbers[0], numbers[1], numbers[2]);
        if (isPhoto)
            addPhoto(index, CAxVector3D(numbers[0], numbers[1], numbers[2]));
        else
            ++refused;
    }
    if (refused > 0)
        qCWarning(axViewerLog) << refused << "of" << points.size()
                               << "photo points are no \"index,longitude,latitude,altitude\"";
}

void CAxUavNode::SetReplayPhotos(const std::vector<AxReplayPhoto>& photos)
{
    RemovePicPoint();
    std::vector<std::size_t> points = {0};
    points.reserve(photos.size() + 1);
    for (const AxReplayPhoto& photo : photos) {
        if (AxIsUavPlace(photo.place.x(), photo.place.y(), photo.place.z()))
            addPhoto(photo.index, photo.place);
        points.push_back(static_cast<std::size_t>(d->photos.Count()));
    }
    d->pointsOfPhotos = std::move(points);
    ShowReplayPhotosTo(0);
}

void CAxUavNode::ShowReplayPhotosTo(int count)
{
    if (d->pointsOfPhotos.empty())
        return;
    const int all = static_cast<int>(d->pointsOfPhotos.size()) - 1;
    d->photos.ShowFirst(d->pointsOfPhotos[static_cast<std::size_t>(qBound(0, count, all))]);
}

void CAxUavNode::RemovePicPoint()
{
    d->pointsOfPhotos.clear();
    d->photos.Remove();
}

void CAxUavNode::VisibleAllPicPoint()
{
    d->photos.ShowAll();
}

void CAxUavNode::SetShootPointVisible(bool visible)
{
    d->photos.SetVisible(visible);
}

int CAxUavNode::GetPicPointCount() const
{
    return d->photos.Count();
}

void CAxUavNode::slotMouseMoved(osg::Vec3d, osg::Vec3d worldCoordPos)
{
    if (!d->viewer || d->photos.Count() == 0)
        return;
    const std::optional<std::size_t> near =
        worldCoordPos == osg::Vec3d()
            ? std::nullopt
            : d->photos.Near(worldCoordPos, *d->viewer->Scene().View()->getCamera());
    d->hoverView = d->viewer->Scene().View()->getCamera()->getViewMatrix();
    d->photos.Hover(near, near ? tr("photo %1").arg(QString::number(d->photos.Index(*near))) : QString());
}

void CAxUavNode::ForgetPointer()
{
    d->photos.Hover(std::nullopt, QString());
}

// Video

void CAxUavNode::slotVideoData(quint16 angle, qint8 zoom, quint8, quint8 flag)
{
    d->cameraAngle = qrealToIntNumber(angle * DVAngleFactor);
    d->zoom = zoom;
    d->videoFlag = flag == 1;
    osg::Group* group = d->viewer ? d->viewer->Scene().DrawGroup() : nullptr;
    if (!d->footprint && group) {
        d->footprint = new AxVideoFootprint;
        d->footprint->setName(d->name + "-Footprint");
        group->addChild(d->footprint);
    }
    if (d->footprint)
        d->footprint->SetShown(d->videoFlag);
}

void CAxUavNode::SetCameraHeading(std::optional<double> degrees)
{
    if (degrees == d->cameraHeading || (degrees && !std::isfinite(*degrees)))
        return;
    d->cameraHeading = degrees;
    tellFootprint();
}

/// Some five times a second at most, and always for the newest place in the end.
void CAxUavNode::tellFootprint()
{
    if (!d->footprint)
        return;
    d->isFootprintDue = d->footprintClock.isActive();
    if (d->isFootprintDue)
        return;
    updateFootprint();
    d->footprintClock.start(footprintPause);
}

void CAxUavNode::updateFootprint()
{
    if (!d->footprint || !d->viewer || !d->position)
        return;
    CAxHandleAdapter* current = d->viewer->Objects().Current();
    CAxBlock* shown = AxBlockOf(current);
    CAxBlock* block = shown ? CAxBlockManager::instance().GetBlock(shown->GetBlockID()) : nullptr;
    const int type = block ? static_cast<int>(block->GetBlockType()) : d->blockType;
    if (type != CAxBlock::VideoBlock) {
        d->footprint->Clear();
        return;
    }
    AxVideoSight sight;
    sight.camera = *d->position;
    // Without a block, over what is below the aircraft.
    const std::optional<double> ground =
        d->map ? AxLoadedHeight(*d->map, sight.camera.x(), sight.camera.y()) : std::nullopt;
    sight.height = block ? block->GetTaskPara()->GetAirLineParam()->GetRelativeFlyHeight()
                         : sight.camera.z() - ground.value_or(0.0);
    sight.scale = d->zoom * focalMillimetres * micrometresPerMillimetre / pixelMicrometres;
    sight.heading = d->cameraHeading.value_or(Radian2Angle(d->yaw));
    sight.cameraAngle = d->cameraAngle;
    const osg::ref_ptr<osgEarth::MapNode> map = d->map;
    d->footprint->Add(sight, [map](double longitude, double latitude) {
        return map ? AxLoadedHeight(*map, longitude, latitude) : std::nullopt;
    });
}
