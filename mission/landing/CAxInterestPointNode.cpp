#include "mission/landing/CAxInterestPointNode.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "mission/landing/AxGroundMarks.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <osg/Group>
#include <osgEarth/MapNode>
#include <osgEarthSymbology/Color>

#include <utility>

using osgEarth::Symbology::Color;

namespace {
constexpr double discMetres = 40.0;
constexpr float interestAlpha = 0.4f;
} // namespace

CAxInterestPointNode::CAxInterestPointNode(CAxEarthViewer* viewer, QObject* parent)
    : QObject(parent), parts(AxPartsOf(viewer))
{
    auto* mouse = parts ? qobject_cast<CAxEarthManipulator*>(parts->Mouse()) : nullptr;
    if (!mouse)
        return;
    connect(mouse, &CAxEarthManipulator::mouseLeftBtnDragInterestPoint, this,
            &CAxInterestPointNode::slotDrag);
    connect(mouse, QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnRelease), this,
            &CAxInterestPointNode::slotRelease);
}

CAxInterestPointNode::~CAxInterestPointNode()
{
    AxLeaveGroups(circle);
    AxLeaveGroups(label);
}

bool CAxInterestPointNode::SetPosition(const CAxVector3D& latLngAlt)
{
    if (!parts || !parts->Scene().MapNode() || !AxPlaceOnMap(parts->Scene(), latLngAlt).isValid())
        return false;
    position = latLngAlt;
    isDragged = false;
    show(latLngAlt);
    return true;
}

void CAxInterestPointNode::SetVisible(bool visible)
{
    isDragged = false;
    for (osg::Node* node : {static_cast<osg::Node*>(circle.get()), static_cast<osg::Node*>(label.get())})
        if (node)
            node->setNodeMask(visible ? ~0u : 0u);
}

void CAxInterestPointNode::show(const CAxVector3D& latLngAlt)
{
    const osgEarth::GeoPoint place = AxPlaceOnMap(parts->Scene(), latLngAlt);
    if (!circle) {
        circle = new osgEarth::Annotation::CircleNode(parts->Scene().MapNode(), place,
                                                      osgEarth::Distance(discMetres, osgEarth::Units::METERS),
                                                      AxDrapedStyle(Color::Yellow, interestAlpha));
        circle->setName("InterestPoint-Circle");
        label = AxGroundLabel(parts->Scene(), place, {}, AxGroundTextStyle(Color::Yellow, Color::Black));
        label->setName("InterestPoint-Label");
        parts->Scene().DrawGroup()->addChild(circle);
        parts->Scene().DrawGroup()->addChild(label);
    }
    circle->setPosition(place);
    label->setPosition(place);
    label->setText(
        (tr("Elevation Marker") + QLatin1Char('\n') + tr("%1 m").arg(QString::number(latLngAlt.z(), 'f', 1)))
            .toStdString());
}

void CAxInterestPointNode::slotDrag(osg::Vec3d lngLatPos)
{
    if (!circle || circle->getNodeMask() == 0 || lngLatPos == osg::Vec3d())
        return;
    dragged = CAxVector3D(lngLatPos.y(), lngLatPos.x(), lngLatPos.z());
    isDragged = true;
    show(dragged);
}

void CAxInterestPointNode::GiveUpDrag()
{
    if (std::exchange(isDragged, false))
        show(position);
}

void CAxInterestPointNode::slotRelease()
{
    if (!std::exchange(isDragged, false))
        return;
    show(position);
    emit dropped(dragged.y(), dragged.x(), dragged.z());
}
