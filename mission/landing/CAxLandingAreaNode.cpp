#include "mission/landing/CAxLandingAreaNode.h"
#include "interaction/objects/AxLandingReach.h"
#include "mission/landing/AxGroundMarks.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <osg/Group>
#include <osgEarth/MapNode>
#include <osgEarthSymbology/Color>

#include <cmath>

using osgEarth::Angle;
using osgEarth::Distance;
using osgEarth::Units;
using osgEarth::Symbology::Color;

namespace {
constexpr double acceptedKilometres = axLandingReach / 1000.0;
constexpr float discAlpha = 0.3f;
} // namespace

CAxLandingAreaNode::CAxLandingAreaNode(CAxEarthViewer* viewer, QObject* parent)
    : QObject(parent), parts(AxPartsOf(viewer))
{
    if (!parts || !parts->Scene().MapNode())
        return;
    circle = new osgEarth::Annotation::CircleNode(
        parts->Scene().MapNode(), AxPlaceOnMap(parts->Scene(), CAxVector3D(0.0, 0.0, 0.0)),
        Distance(acceptedKilometres, Units::KILOMETERS), AxDrapedStyle(Color::Green, discAlpha),
        Angle(0.0, Units::DEGREES), Angle(360.0, Units::DEGREES));
}

CAxLandingAreaNode::~CAxLandingAreaNode()
{
    AxLeaveGroups(circle);
    AxLeaveGroups(label);
}

void CAxLandingAreaNode::CreateMarker(const CAxVector3D& pos)
{
    osg::Group* drawn = parts && circle ? parts->Scene().DrawGroup() : nullptr;
    if (!drawn)
        return;
    if (!label) {
        label = AxGroundLabel(parts->Scene(), circle->getPosition(),
                              tr("Please set the landing point in this range"),
                              AxGroundTextStyle(Color::Red, Color::White));
        drawn->addChild(circle);
        drawn->addChild(label);
    }
    UpDateMarkerPos(pos);
    SetVisible(true);
}

void CAxLandingAreaNode::UpDateMarkerPos(const CAxVector3D& pos)
{
    if (!parts || !circle)
        return;
    const osgEarth::GeoPoint place = AxPlaceOnMap(parts->Scene(), pos);
    if (!place.isValid())
        return;
    circle->setPosition(place);
    if (!label)
        return;
    // The centre of an object has no altitude, and below a mountain nobody reads the prompt.
    QList<osg::Vec3d> ground = {place.vec3d()};
    parts->Scene().GetElevations(ground);
    label->setPosition({place.getSRS(), ground.front(), osgEarth::ALTMODE_ABSOLUTE});
}

void CAxLandingAreaNode::SetRadius(double r)
{
    if (circle && std::isfinite(r) && r > 0.0)
        circle->setRadius(Distance(r, Units::KILOMETERS));
}

void CAxLandingAreaNode::SetVisible(bool visible)
{
    const osg::Node::NodeMask mask = visible ? 1 : 0;
    if (circle)
        circle->setNodeMask(mask);
    if (label)
        label->setNodeMask(mask);
}

bool CAxLandingAreaNode::IsVisible() const
{
    return label && circle->getNodeMask() != 0;
}
