#include "mission/aircraft/CAxUavNode.h"
#include "mission/aircraft/AutoScaleContainer.h"
#include "mission/aircraft/AxMotionSmoother.h"
#include "mission/aircraft/AxPhotoPoints.h"
#include "mission/aircraft/AxReplayLine.h"
#include "mission/aircraft/AxTrail.h"
#include "mission/aircraft/AxUavModel.h"
#include "mission/aircraft/AxUavPanel.h"
#include "mission/aircraft/AxVideoFootprint.h"
#include "scene/AxBlockObject.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/base/AxProcessLocale.h"
#include "scene/base/AxViewerLog.h"
#include "scene/shape/AxDrawnGround.h"

#include <AxAlgorthm/AxConstants.h>
#include <AxAlgorthm/AxMath.h>
#include <AxData/CAxBlockManager.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/Depth>
#include <osg/PositionAttitudeTransform>
#include <osgEarth/GeoTransform>
#include <osgEarth/MapNode>
#include <osgEarthSymbology/AltitudeSymbol>
#include <osgEarthSymbology/LineSymbol>
#include <osgEarthSymbology/PointSymbol>
#include <osgViewer/Viewer>

#include <QLocale>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

using osgEarth::GeoPoint;
using osgEarth::Annotation::FeatureNode;

namespace {
constexpr float trailWidth = 2.0f;
const osg::Vec4f trailRed(1.0f, 0.0f, 0.0f, 1.0f);
// How large an aircraft is drawn that is far away, and from how near it has its true size, pixels.
constexpr double modelPixels = 150.0;
constexpr double largestScale = 2e5;
constexpr int modelBin = 30; // over trails and links of labels, below panels
// The part of the depth buffer that is before everything else, so that no ground hides an aircraft that
// is drawn larger than it is.
constexpr double nearestDepth = 0.1;
// Sizes of the focal length in a picture: zoom 1 has 5 mm, a pixel 2.883 micrometres.
constexpr double focalMillimetres = 5.0;
constexpr double micrometresPerMillimetre = 1000.0;
constexpr double pixelMicrometres = 2.883;
// Rays to the relief are dear; between two outlines, milliseconds.
constexpr int footprintPause = 200;

double Now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool IsOnGlobe(double longitude, double latitude, double altitude)
{
    return std::abs(longitude) <= 360.0 && std::abs(latitude) <= 90.0 && std::isfinite(altitude);
}

osg::Vec3d WorldOf(const CAxVector3D& place)
{
    return AxGlobe::WorldOf({place.x(), place.y(), place.z()});
}

CAxVector3D LiftedBy(double metres, const CAxVector3D& place)
{
    return {place.x(), place.y(), place.z() + metres};
}

osgEarth::Symbology::Style DefaultStyle()
{
    using namespace osgEarth::Symbology;
    Style style;
    auto* line = style.getOrCreate<LineSymbol>();
    line->stroke()->color() = Color(1.0f, 0.85f, 0.0f, 1.0f);
    line->stroke()->width() = 2.0f;
    auto* point = style.getOrCreate<PointSymbol>();
    point->fill()->color() = Color(0.0f, 1.0f, 0.0f, 1.0f);
    point->size() = 10.0f;
    auto* altitude = style.getOrCreate<AltitudeSymbol>();
    altitude->clamping() = AltitudeSymbol::CLAMP_NONE;
    altitude->verticalScale() = NumericExpression(1.0);
    return style;
}

void TakeFromParents(osg::Node* node)
{
    const osg::ref_ptr<osg::Node> kept = node;
    while (kept && kept->getNumParents() > 0)
        kept->getParent(0)->removeChild(kept);
}
} // namespace

/// Moves the aircraft with each update traversal, until it is destroyed.
class CAxUavNode::Motion : public osg::NodeCallback
{
public:
    explicit Motion(CAxUavNode* node) : aircraft(node) {}
    void operator()(osg::Node* node, osg::NodeVisitor* visitor) override
    {
        if (aircraft)
            aircraft->advance();
        traverse(node, visitor);
    }
    CAxUavNode* aircraft;
};

struct CAxUavNode::State
{
    QPointer<AxViewerParts> viewer;
    QPointer<QObject> signalObject;
    const osgEarth::Symbology::Style style = DefaultStyle();
    EPlaneType type = PlaneFixedWing;
    int blockType = -1;
    bool flying = false;
    bool interpolated = true;
    bool landed = false;
    bool planeVisible = true;
    bool panelVisible = true;
    bool trailVisible = true;
    bool lost = false;
    double lostSeconds = 0.0;
    QString title;

    // The model; null before CreatePlane().
    osg::ref_ptr<osgEarth::MapNode> map;
    osg::ref_ptr<AutoScaleContainer> root;
    osg::ref_ptr<osgEarth::GeoTransform> geo;
    osg::ref_ptr<osg::PositionAttitudeTransform> attitude;
    osg::ref_ptr<osg::Node> followed;
    osg::ref_ptr<osg::Uniform> grey;
    osg::ref_ptr<Motion> motion;
    AxUavPanel panel;
    double bottom = 0.0; // of the model below its middle, metres
    std::string name;

    std::optional<CAxVector3D> position; // as received
    double yaw = 0.0;                    // radians, as received
    std::array<double, 3> angles{};
    AxMotionSmoother smoother;
    bool isMoving = false;
    double nextLook = 0.0;        // at the ground below
    std::optional<double> ground; // as seen last, metres; no value where it is not known
    /// From the place that was received up to where the model is drawn, metres.
    double Lift() const
    {
        if (!position || !ground)
            return 0.0;
        return landed ? *ground + bottom - position->z() : std::max(0.0, *ground - position->z());
    }

    AxTrail trail;
    AxPhotoPoints photos;
    osg::ref_ptr<FeatureNode> replay;
    osg::ref_ptr<CAxTrailLingCallBack> replayCallback;
    int pathIndex = 0;
    osg::ref_ptr<AxVideoFootprint> footprint;
    QTimer footprintClock; // runs while a further outline has to wait
    bool isFootprintDue = false;
    double cameraAngle = 0.0;
    qint8 zoom = 0;
    bool videoFlag = false;
};

CAxUavNode::CAxUavNode(CAxEarthViewer* viewer, QObject* signalObject, bool hasPanel)
    : d(std::make_unique<State>())
{
    static int made = 0;
    d->name = "Uav-" + std::to_string(++made);
    d->viewer = AxPartsOf(viewer);
    d->signalObject = signalObject;
    d->panelVisible = hasPanel;
    d->footprintClock.setSingleShot(true);
    connect(&d->footprintClock, &QTimer::timeout, this, [this] {
        if (std::exchange(d->isFootprintDue, false))
            tellFootprint();
    });
    if (d->viewer)
        connect(d->viewer->Mouse(), SIGNAL(mouseLeftBtnMove(osg::Vec3d, osg::Vec3d)), this,
                SLOT(slotMouseMoved(osg::Vec3d, osg::Vec3d)));
}

CAxUavNode::~CAxUavNode()
{
    if (d->motion)
        d->motion->aircraft = nullptr;
    RemovePicPoint();
    RemoveAllTrailLine();
    TakeFromParents(d->footprint);
    TakeFromParents(d->root);
}

osg::Node* CAxUavNode::CreatePlane(EPlaneType type, const GeoPoint& point, osgEarth::MapNode* mapNode)
{
    if (!mapNode)
        return nullptr;
    AxSetProcessLocale();
    d->type = type;
    d->map = mapNode;
    const osg::ref_ptr<osg::Node> model = AxReadUavModel(type);
    osg::ComputeBoundsVisitor bounds;
    model->accept(bounds);
    d->bottom = bounds.getBoundingBox().valid() ? -static_cast<double>(bounds.getBoundingBox().zMin()) : 0.0;

    if (!d->root) {
        d->root = new AutoScaleContainer;
        d->root->setName(d->name);
        d->motion = new Motion(this);
        d->root->addUpdateCallback(d->motion);
    }
    const osg::ref_ptr<osgEarth::GeoTransform> before = d->geo;
    if (before)
        d->root->removeChild(before);
    d->geo = new osgEarth::GeoTransform;
    d->geo->setTerrain(mapNode->getTerrain());
    d->attitude = new osg::PositionAttitudeTransform;
    // A camera that follows it stays with it, and where it was until a place is told.
    if (!d->followed) {
        d->followed = new osg::Node;
        d->followed->setInitialBound(osg::BoundingSphere(osg::Vec3(), 1e-3f));
    }
    TakeFromParents(d->followed);
    TakeFromParents(d->panel.Node());
    if (before && before->getPosition().isValid())
        d->geo->setPosition(before->getPosition());
    if (!d->attitude->containsNode(model))
        d->attitude->addChild(model);
    d->attitude->addChild(d->followed);
    if (!d->geo->containsNode(d->attitude))
        d->geo->addChild(d->attitude);
    d->geo->addChild(d->panel.Node());
    if (!d->root->containsNode(d->geo))
        d->root->addChild(d->geo);
    d->grey = new osg::Uniform("linkLost", d->lost ? 1.0f : 0.0f);
    osg::StateSet* state = d->attitude->getOrCreateStateSet();
    state->addUniform(d->grey);
    state->setMode(GL_LIGHTING, osg::StateAttribute::ON);
    state->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
    d->root->SetScaled(d->geo, d->attitude, 2.0 * static_cast<double>(model->getBound().radius()));
    d->root->SetPixels(modelPixels);
    d->root->SetLimits(1.0, largestScale);
    ResetRenderSort();
    d->smoother = AxMotionSmoother();
    d->position.reset();
    d->ground.reset();
    if (before)
        turn();
    if (point.isValid() && d->geo->setPosition(point)) {
        const GeoPoint there = point.transform(mapNode->getMapSRS()->getGeographicSRS());
        d->position = CAxVector3D(there.x(), there.y(), there.z());
    }
    updateText();
    apply();
    return d->root;
}

EPlaneType CAxUavNode::GetPlaneType() const
{
    return d->type;
}

osg::Node* CAxUavNode::GetNode() const
{
    return d->root;
}

osg::Node* CAxUavNode::GetFollowedNode() const
{
    return d->followed;
}

// Place and attitude

void CAxUavNode::SetPosition(double longitude, double latitude, double altitude)
{
    if (!d->geo || !IsOnGlobe(longitude, latitude, altitude))
        return;
    d->position = CAxVector3D(longitude, latitude, altitude);
    d->ground = AxLoadedHeight(*d->map, longitude, latitude);
    d->smoother.TellPlace({longitude, latitude, altitude + d->Lift()}, Now());
    d->isMoving = true;
    place();
    updateText();
    ResetRenderSort();
    if (d->flying)
        CreateFlightPath(trailWidth, trailRed);
    apply();
}

CAxVector3D CAxUavNode::GetPosition() const
{
    return d->position.value_or(CAxVector3D());
}

bool CAxUavNode::HasPosition() const
{
    return d->position.has_value();
}

CAxVector3D CAxUavNode::GetDrawnPosition() const
{
    const std::optional<osg::Vec3d> drawn = d->interpolated ? d->smoother.PlaceAt(Now()) : std::nullopt;
    return drawn ? CAxVector3D(drawn->x(), drawn->y(), drawn->z()) : LiftedBy(d->Lift(), GetPosition());
}

double CAxUavNode::GetDrawnHeading() const
{
    const auto drawn = d->interpolated ? d->smoother.AttitudeAt(Now()) : std::nullopt;
    return Radian2Angle(drawn ? (*drawn)[2] : d->yaw);
}

void CAxUavNode::SetAttitude(double roll, double pitch, double yaw)
{
    if (!std::isfinite(roll) || !std::isfinite(pitch) || !std::isfinite(yaw))
        return;
    d->yaw = yaw;
    d->angles = {roll, pitch, yaw};
    d->smoother.TellAttitude(d->angles, Now());
    d->isMoving = true;
    turn();
}

/// The place that was received, but not below the ground, and on it when it has landed.
void CAxUavNode::place()
{
    if (!d->geo || !d->position)
        return;
    const osgEarth::SpatialReference* srs = d->map->getMapSRS()->getGeographicSRS();
    const CAxVector3D& at = *d->position;
    d->geo->setPosition(d->landed && d->ground
                            ? GeoPoint(srs, at.x(), at.y(), d->bottom, osgEarth::ALTMODE_RELATIVE)
                            : GeoPoint(srs, at.x(), at.y(), at.z() + d->Lift(), osgEarth::ALTMODE_ABSOLUTE));
}

/// Finer ground, or none, may be in memory since the place was received.
void CAxUavNode::lookAtGround()
{
    if (!d->geo || !d->position)
        return;
    const double before = d->Lift();
    d->ground = AxLoadedHeight(*d->map, d->position->x(), d->position->y());
    const double change = d->Lift() - before;
    if (change == 0.0)
        return;
    d->smoother.Lift(change);
    place();
}

void CAxUavNode::turn()
{
    if (!d->attitude)
        return;
    const auto [roll, pitch, yaw] = d->angles;
    osg::Quat aboutNose, aboutWings, aboutUp;
    aboutNose.makeRotate(roll, osg::Vec3d(0.0, 1.0, 0.0));
    aboutWings.makeRotate(pitch, osg::Vec3d(1.0, 0.0, 0.0));
    aboutUp.makeRotate(yaw, osg::Vec3d(0.0, 0.0, -1.0));
    d->attitude->setAttitude(aboutNose * aboutWings * aboutUp);
    d->attitude->dirtyBound();
}

/// Draws the aircraft on its way from what was received before.
void CAxUavNode::advance()
{
    const double now = Now();
    if (now >= d->nextLook) {
        constexpr double lookSeconds = 1.0;
        d->nextLook = now + lookSeconds;
        lookAtGround();
    }
    if (!d->isMoving || !d->geo || !d->attitude)
        return;
    const bool settled = !d->interpolated || d->smoother.IsSettled(now);
    d->isMoving = !settled;
    const auto angles = d->smoother.AttitudeAt(now);
    if (angles && d->interpolated)
        d->angles = *angles;
    turn();
    osg::Vec3d offset;
    std::optional<osg::Vec3d> head;
    const std::optional<osg::Vec3d> drawn = d->smoother.PlaceAt(now);
    if (!settled && drawn && d->position) {
        // In the frame of the place that was received; on the ground only along it.
        const osg::Vec3d world = AxGlobe::WorldOf(*drawn);
        const osg::Vec3d there = WorldOf(LiftedBy(d->Lift(), *d->position));
        offset = osg::Matrixd::transform3x3(world - there, osg::Matrixd::inverse(d->geo->getMatrix()));
        if (d->landed)
            offset.z() = 0.0;
        else if (d->flying)
            head = world;
    }
    d->attitude->setPosition(offset);
    d->panel.Node()->setPosition(offset);
    d->trail.SetHead(head);
}

void CAxUavNode::SetLanded(bool landed)
{
    if (landed == d->landed)
        return;
    const double before = d->Lift();
    d->landed = landed;
    d->smoother.Lift(d->Lift() - before);
    d->isMoving = true;
    place();
}

void CAxUavNode::SetInterpolation(bool interpolated)
{
    d->interpolated = interpolated;
    d->smoother.Jump();
    d->isMoving = true;
}

bool CAxUavNode::IsInterpolation() const
{
    return d->interpolated;
}

void CAxUavNode::slotPositionChanged(double longitude, double latitude, double altitude, quint64)
{
    if (!IsOnGlobe(longitude, latitude, altitude))
        return;
    const double height = d->viewer ? d->viewer->Scene().GetHAE(longitude, latitude, altitude) : altitude;
    SetPosition(longitude, latitude, std::isfinite(height) ? height : altitude);
    tellFootprint();
}

void CAxUavNode::slotAttitudeChanged(double roll, double pitch, double yaw, quint64)
{
    SetAttitude(roll, pitch, yaw);
}

// What is shown

void CAxUavNode::apply() const
{
    if (!d->geo)
        return;
    d->geo->setNodeMask(d->planeVisible && d->position ? ~0u : 0u);
    d->panel.Node()->setNodeMask(d->panelVisible ? ~0u : 0u);
    const osg::Node::NodeMask lines = d->trailVisible ? ~0u : 0u;
    if (d->trail.Node())
        d->trail.Node()->setNodeMask(lines);
    if (d->replay)
        d->replay->setNodeMask(lines);
}

void CAxUavNode::SetPlaneVisbled(bool visible)
{
    d->planeVisible = visible;
    apply();
}

void CAxUavNode::SetPanelVisible(bool visible)
{
    d->panelVisible = visible;
    updateText();
    apply();
}

void CAxUavNode::SetTrailVisible(bool visible)
{
    d->trailVisible = visible;
    apply();
}

bool CAxUavNode::IsTrailVisible() const
{
    return d->trailVisible;
}

void CAxUavNode::ResetRenderSort()
{
    d->panel.ResetRenderSort();
    osg::StateSet* state = d->attitude ? d->attitude->getOrCreateStateSet() : nullptr;
    if (!state || state->getBinNumber() == modelBin)
        return;
    state->setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0.0, nearestDepth));
    state->setRenderBinDetails(modelBin, "RenderBin");
}

void CAxUavNode::updateText()
{
    // Laying out letters is most of what a message costs.
    if (!d->panelVisible)
        return;
    QStringList lines;
    if (!d->title.isEmpty())
        lines += d->title;
    const CAxVector3D at = GetPosition();
    lines += tr("longitude:") + AxPanelNumber(at.x()) + tr("degree");
    lines += tr("latitude:") + AxPanelNumber(at.y()) + tr("degree");
    if (d->lost)
        lines += tr("no link for %1 s").arg(QLocale::c().toString(std::floor(d->lostSeconds), 'f', 0));
    d->panel.SetText(lines.join(QLatin1Char('\n')));
}

void CAxUavNode::SetTitle(const QString& title)
{
    d->title = title;
    updateText();
}

void CAxUavNode::SetLinkLost(bool lost, double seconds)
{
    d->lost = lost;
    d->lostSeconds = std::isfinite(seconds) ? std::max(0.0, seconds) : 0.0;
    if (d->grey)
        d->grey->set(lost ? 1.0f : 0.0f);
    updateText();
}

void CAxUavNode::SetFlightMode(bool flying)
{
    d->flying = flying;
}

bool CAxUavNode::GetFlightMode() const
{
    return d->flying;
}

void CAxUavNode::SetBlockType(int type)
{
    d->blockType = type;
    if (d->footprint && type != CAxBlock::VideoBlock)
        d->footprint->Clear();
}

int CAxUavNode::GetBlockType() const
{
    return d->blockType;
}

void CAxUavNode::SetSignalObject(QObject* object)
{
    d->signalObject = object;
}

QObject* CAxUavNode::GetSignalObject() const
{
    return d->signalObject;
}

// Trail and replayed flight

void CAxUavNode::CreateFlightPath(float width, const osg::Vec4f& color)
{
    if (!d->root || !d->position)
        return;
    const bool isNew = !d->trail.Node();
    d->trail.Append(WorldOf(*d->position), width, color, d->name + "-Traj");
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
    TakeFromParents(d->replay);
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
    if (!group || !d->photos.Add(index, WorldOf(at), d->name + "-PicPoints"))
        return;
    group->addChild(d->photos.Node());
    group->addChild(d->photos.Label());
}

void CAxUavNode::AddCurrPicPoint(int index, double longitude, double latitude)
{
    if (IsOnGlobe(longitude, latitude, 0.0))
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
                             areNumbers[3] && IsOnGlobe(numbers[0], numbers[1], numbers[2]);
        if (isPhoto)
            addPhoto(index, CAxVector3D(numbers[0], numbers[1], numbers[2]));
        else
            ++refused;
    }
    if (refused > 0)
        qCWarning(axViewerLog) << refused << "of" << points.size()
                               << "photo points are no \"index,longitude,latitude,altitude\"";
}

void CAxUavNode::RemovePicPoint()
{
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
    d->photos.Hover(near, near ? tr("photo %1").arg(QString::number(d->photos.Index(*near))) : QString());
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
    sight.heading = Radian2Angle(d->yaw);
    sight.cameraAngle = d->cameraAngle;
    const osg::ref_ptr<osgEarth::MapNode> map = d->map;
    d->footprint->Add(sight, [map](double longitude, double latitude) {
        return map ? AxLoadedHeight(*map, longitude, latitude) : std::nullopt;
    });
}
