#include "mission/aircraft/AxUavModel.h"
#include "mission/aircraft/CAxUavNodeState.h"
#include "scene/AxScene.h"
#include "scene/base/AxProcessLocale.h"
#include "scene/base/AxViewerLog.h"
#include "scene/shape/AxDrawnGround.h"

#include <AxAlgorthm/AxMath.h>
#include <AxData/CAxBlock.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/Depth>
#include <osgEarthSymbology/AltitudeSymbol>
#include <osgEarthSymbology/LineSymbol>
#include <osgEarthSymbology/PointSymbol>

#include <QLocale>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

using osgEarth::GeoPoint;

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

double Now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
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
} // namespace

void CAxUavNode::Motion::operator()(osg::Node* node, osg::NodeVisitor* visitor)
{
    if (aircraft)
        aircraft->advance();
    traverse(node, visitor);
}

CAxUavNode::CAxUavNode(CAxEarthViewer* viewer, QObject* signalObject, bool hasPanel)
    : d(std::make_unique<State>(DefaultStyle()))
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
    AxTakeFromParents(d->footprint);
    AxTakeFromParents(d->root);
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
    AxTakeFromParents(d->followed);
    AxTakeFromParents(d->panel.Node());
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
    d->grey = new osg::Uniform("linkLost", d->lost || d->positionLost ? 1.0f : 0.0f);
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
    if (!d->geo || !AxIsUavPlace(longitude, latitude, altitude))
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
    // The camera has gone on below a mouse that stands.
    if (d->photos.IsHovered() && d->viewer &&
        d->viewer->Scene().View()->getCamera()->getViewMatrix() != d->hoverView)
        ForgetPointer();
    if (!d->isMoving || !d->geo || !d->attitude)
        return;
    const bool settled = !d->interpolated || d->smoother.IsSettled(now);
    d->isMoving = !settled;
    const auto angles = d->smoother.AttitudeAt(now);
    if (angles)
        d->angles = *angles;
    turn();
    osg::Vec3d offset;
    std::optional<osg::Vec3d> head;
    const std::optional<osg::Vec3d> drawn = d->smoother.PlaceAt(now);
    if (!settled && drawn && d->position) {
        // In the frame of the place that was received; on the ground only along it.
        const osg::Vec3d world = AxGlobe::WorldOf(*drawn);
        const osg::Vec3d there = AxUavWorldOf(LiftedBy(d->Lift(), *d->position));
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
    Jump();
}

void CAxUavNode::Jump()
{
    d->smoother.Jump();
    d->isMoving = true;
}

bool CAxUavNode::IsInterpolation() const
{
    return d->interpolated;
}

void CAxUavNode::slotPositionChanged(double longitude, double latitude, double altitude, quint64)
{
    if (!AxIsUavPlace(longitude, latitude, altitude))
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
    d->panel.Node()->setNodeMask(d->panelVisible || isLostLabelShown() ? ~0u : 0u);
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
    if (!d->panelVisible && !isLostLabelShown())
        return;
    QStringList lines;
    if (!d->title.isEmpty())
        lines += d->title;
    const CAxVector3D at = GetPosition();
    if (d->panelVisible) {
        lines += tr("longitude:") + AxPanelNumber(at.x()) + tr("degree");
        lines += tr("latitude:") + AxPanelNumber(at.y()) + tr("degree");
    }
    const auto whole = [](double seconds) { return QLocale::c().toString(std::floor(seconds), 'f', 0); };
    if (d->lost)
        lines += tr("no link for %1 s").arg(whole(d->lostSeconds));
    else if (d->positionLost)
        lines += tr("no position for %1 s").arg(whole(d->positionLostSeconds));
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
    showLost();
}

void CAxUavNode::SetPositionLost(bool lost, double seconds)
{
    d->positionLost = lost;
    d->positionLostSeconds = std::isfinite(seconds) ? std::max(0.0, seconds) : 0.0;
    showLost();
}

bool CAxUavNode::isLostLabelShown() const
{
    return d->lostLabel && (d->lost || d->positionLost);
}

void CAxUavNode::SetLostLabel(bool shown)
{
    d->lostLabel = shown;
    showLost();
}

void CAxUavNode::showLost()
{
    apply();
    if (d->grey)
        d->grey->set(d->lost || d->positionLost ? 1.0f : 0.0f);
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
