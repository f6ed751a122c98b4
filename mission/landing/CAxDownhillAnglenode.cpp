#include "mission/landing/CAxDownhillAnglenode.h"
#include "interaction/input/CAxEarthManipulator.h"
#include "mission/landing/AxGroundMarks.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxSceneImage.h"

#include <osg/Group>
#include <osg/Math>
#include <osgEarth/GeoMath>
#include <osgEarth/MapNode>
#include <osgEarthSymbology/Color>
#include <osgEarthSymbology/Geometry>
#include <osgEarthSymbology/IconSymbol>
#include <osgEarthSymbology/LineSymbol>
#include <osgEarthSymbology/TextSymbol>

#include <cmath>

using osgEarth::Symbology::Color;
using osgEarth::Symbology::IconSymbol;
using osgEarth::Symbology::LineSymbol;
using osgEarth::Symbology::Style;
using osgEarth::Symbology::TextSymbol;

namespace {
constexpr double approachMetres = 500.0;
constexpr double arrowMetres = 60.0;
constexpr double arrowHalfAngle = 25.0; // degrees
constexpr float approachPixels = 3.0f;

osg::Vec3d Towards(double degrees, double metres)
{
    const double direction = osg::DegreesToRadians(degrees);
    return {metres * std::sin(direction), metres * std::cos(direction), 0.0};
}

// Beside the handle, on the side that is away from the landing point and what stands there.
Style AngleStyle(bool isLeft)
{
    constexpr short aside = 20;
    Style style = AxGroundTextStyle(Color::White, Color::Black);
    auto* text = style.getOrCreate<TextSymbol>();
    text->alignment() = isLeft ? TextSymbol::ALIGN_RIGHT_CENTER : TextSymbol::ALIGN_LEFT_CENTER;
    text->pixelOffset() = osg::Vec2s(isLeft ? -aside : aside, 0);
    return style;
}

// From where the aircraft comes to the landing point, and the head of an arrow there.
osg::ref_ptr<osgEarth::Symbology::Geometry> ApproachLine(double angle)
{
    osg::ref_ptr<osgEarth::Symbology::LineString> line = new osgEarth::Symbology::LineString;
    line->push_back(Towards(angle + 180.0, approachMetres));
    line->push_back(osg::Vec3d());
    line->push_back(Towards(angle + 180.0 - arrowHalfAngle, arrowMetres));
    line->push_back(osg::Vec3d());
    line->push_back(Towards(angle + 180.0 + arrowHalfAngle, arrowMetres));
    return line;
}
} // namespace

CAxDownhillAnglenode::CAxDownhillAnglenode(CAxEarthViewer* viewer, QObject* parent)
    : QObject(parent), parts(AxPartsOf(viewer))
{
    if (auto* mouse = parts ? qobject_cast<CAxEarthManipulator*>(parts->Mouse()) : nullptr) {
        connect(mouse, &CAxEarthManipulator::mouseLeftBtnDragAngleComputer, this,
                &CAxDownhillAnglenode::slotDrag);
        connect(mouse, QOverload<osg::Vec3d, osg::Vec3d>::of(&CAxEarthManipulator::mouseLeftBtnRelease), this,
                [this] { angleBefore.reset(); });
    }
}

CAxDownhillAnglenode::~CAxDownhillAnglenode()
{
    AxLeaveGroups(line);
    AxLeaveGroups(handle);
    AxLeaveGroups(label);
}

bool CAxDownhillAnglenode::SetLandingPoint(const CAxVector3D& latLngAlt)
{
    const bool isOnGround = std::isnan(latLngAlt.z());
    CAxVector3D place = latLngAlt;
    if (isOnGround)
        place.setZ(0.0);
    if (!parts || !parts->Scene().MapNode() || !AxPlaceOnMap(parts->Scene(), place).isValid())
        return false;
    if (isOnGround) {
        QList<osg::Vec3d> ground = {osg::Vec3d(place.y(), place.x(), 0.0)};
        parts->Scene().GetElevations(ground);
        place.setZ(ground.constFirst().z());
    }
    landing = place;
    hasLanding = true;
    show();
    return true;
}

void CAxDownhillAnglenode::SetAngle(double degrees)
{
    if (!std::isfinite(degrees))
        return;
    const double turned = std::fmod(degrees, 360.0);
    // A tiny angle below 0 becomes 360 in the sum.
    angle = std::fmod(turned < 0.0 ? turned + 360.0 : turned, 360.0);
    show();
}

void CAxDownhillAnglenode::SetVisible(bool shown)
{
    visible = shown;
    showNodes();
}

void CAxDownhillAnglenode::SetHandlesVisible(bool shown)
{
    handlesVisible = shown;
    showNodes();
}

void CAxDownhillAnglenode::showNodes()
{
    const auto set = [](osg::Node* node, bool shown) {
        if (node)
            node->setNodeMask(shown ? ~0u : 0u);
    };
    set(line, visible);
    set(label, visible);
    set(handle, visible && handlesVisible);
}

void CAxDownhillAnglenode::show()
{
    if (!hasLanding || !parts)
        return;
    const AxScene& scene = parts->Scene();
    const osgEarth::GeoPoint place = AxPlaceOnMap(scene, landing);
    if (!line) {
        Style style = AxDrapedStyle(Color::Orange, 0.0f);
        style.getOrCreate<LineSymbol>()->stroke()->width() = approachPixels;
        line = new osgEarth::Annotation::LocalGeometryNode(scene.MapNode(), ApproachLine(angle), style);
        line->setName("AngleComputer-Line");
        label = AxGroundLabel(scene, place, {}, AngleStyle(false));
        label->setName("AngleComputer-Label");
        Style icon;
        icon.getOrCreate<IconSymbol>()->alignment() = IconSymbol::ALIGN_CENTER_CENTER;
        icon.getOrCreate<IconSymbol>()->declutter() = false;
        handle = new osgEarth::Annotation::PlaceNode(
            scene.MapNode(), place,
            AxSharedSceneImage(QStringLiteral(":/images/Normal/Glidepath/approach_handle_ic.png")),
            std::string(), icon);
        handle->setName("AngleComputer-Handle");
        handle->setDynamic(true);
        for (osg::Node* node : {static_cast<osg::Node*>(line.get()), static_cast<osg::Node*>(label.get()),
                                static_cast<osg::Node*>(handle.get())})
            scene.DrawGroup()->addChild(node);
        showNodes();
    }
    line->setPosition(place);
    line->setGeometry(ApproachLine(angle));
    slotAngleLableChange();
}

void CAxDownhillAnglenode::slotAngleLableChange()
{
    if (!label || !parts)
        return;
    const osg::Vec3d end(landing.y(), landing.x(), landing.z());
    const auto along = [&end, this](double metres) {
        osg::Vec3d place = end;
        osgEarth::GeoMath::destination(osg::DegreesToRadians(end.y()), osg::DegreesToRadians(end.x()),
                                       osg::DegreesToRadians(angle + 180.0), metres, place.y(), place.x());
        return osg::Vec3d(osg::RadiansToDegrees(place.x()), osg::RadiansToDegrees(place.y()), end.z());
    };
    QList<osg::Vec3d> ground = {along(approachMetres)};
    parts->Scene().GetElevations(ground);
    const osgEarth::SpatialReference* srs = parts->Scene().MapSRS();
    handle->setPosition({srs, ground[0], osgEarth::ALTMODE_ABSOLUTE});
    label->setPosition({srs, ground[0], osgEarth::ALTMODE_ABSOLUTE});
    // It comes from the west when it flies eastwards.
    label->setStyle(AngleStyle(angle > 0.0 && angle < 180.0));
    label->setText(tr("%1°").arg(QString::number(angle, 'f', 1)).toStdString());
}

void CAxDownhillAnglenode::GiveUpDrag()
{
    if (!angleBefore)
        return;
    SetAngle(*angleBefore);
    angleBefore.reset();
    emit signalDownhillAngle(angle);
}

void CAxDownhillAnglenode::slotDrag(osg::Vec3d lngLatPos)
{
    if (!line || !visible || lngLatPos == osg::Vec3d())
        return;
    if (!angleBefore)
        angleBefore = angle;
    const double from =
        osgEarth::GeoMath::bearing(osg::DegreesToRadians(lngLatPos.y()), osg::DegreesToRadians(lngLatPos.x()),
                                   osg::DegreesToRadians(landing.x()), osg::DegreesToRadians(landing.y()));
    SetAngle(osg::RadiansToDegrees(from));
    emit signalDownhillAngle(angle);
}
