#include "host/tasks/ProfileMarker.h"
#include "host/tasks/SceneImage.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/MapNode>
#include <osgEarthAnnotation/PlaceNode>
#include <osgEarthSymbology/IconSymbol>
#include <osgEarthSymbology/Style>

#include <QImage>
#include <QPainter>

using osgEarth::Annotation::PlaceNode;
using osgEarth::Symbology::IconSymbol;

namespace {
constexpr int markerSize = 19; // pixels
constexpr float markerPriority = 1000.0F;

osg::ref_ptr<osg::Image> Ring()
{
    QImage ring(markerSize, markerSize, QImage::Format_RGBA8888);
    ring.fill(Qt::transparent);
    QPainter painter(&ring);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF around(3.0, 3.0, markerSize - 6.0, markerSize - 6.0);
    // Seen on bright ground and on dark.
    for (const auto& [color, width] : {std::pair{QColor(Qt::black), 5.0}, {QColor(Qt::white), 2.5}}) {
        painter.setPen(QPen(color, width));
        painter.drawEllipse(around);
    }
    painter.end();
    return SceneImageOf(ring);
}
} // namespace

ProfileMarker::ProfileMarker(CAxEarthViewer* earthViewer) : viewer(earthViewer) {}

ProfileMarker::~ProfileMarker()
{
    Hide();
}

void ProfileMarker::Show(double longitude, double latitude, double altitude)
{
    if (!viewer || !viewer->getMapNode())
        return;
    const osgEarth::GeoPoint place(viewer->getSRS()->getGeographicSRS(), longitude, latitude, altitude,
                                   osgEarth::ALTMODE_ABSOLUTE);
    if (node) {
        node->setPosition(place);
        return;
    }
    osgEarth::Symbology::Style style;
    auto* icon = style.getOrCreate<IconSymbol>();
    icon->alignment() = IconSymbol::ALIGN_CENTER_CENTER;
    icon->declutter() = false;
    node = new PlaceNode(viewer->getMapNode(), place, Ring(), std::string(), style);
    node->setName("Profile marker");
    node->setDynamic(true);
    node->setPriority(markerPriority);
    viewer->GetBoundGroup()->addChild(node);
}

void ProfileMarker::Hide()
{
    if (node && viewer && viewer->GetBoundGroup())
        viewer->GetBoundGroup()->removeChild(node);
    node = nullptr;
}
