#include "host/tasks/WarningMarks.h"
#include "host/tasks/PlanWarnings.h"
#include "host/tasks/SceneImage.h"
#include "viewer/CAxEarthViewer.h"

#include <osg/Group>
#include <osgEarth/MapNode>
#include <osgEarthAnnotation/PlaceNode>
#include <osgEarthSymbology/IconSymbol>
#include <osgEarthSymbology/Style>

#include <QImage>
#include <QPainter>

using osgEarth::Annotation::PlaceNode;
using osgEarth::Symbology::IconSymbol;

namespace {
constexpr std::size_t mostMarks = 120;
constexpr int warningSize = 22; // pixels
constexpr float worstPriority = 900.0F;

osg::ref_ptr<osg::Image> WarningSign()
{
    QImage sign(warningSize, warningSize, QImage::Format_RGBA8888);
    sign.fill(Qt::transparent);
    QPainter painter(&sign);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal side = warningSize;
    painter.setPen(QPen(Qt::white, 1.5));
    painter.setBrush(QColor(208, 32, 32));
    painter.drawPolygon(
        QPolygonF(QVector<QPointF>{{side / 2.0, 1.5}, {side - 1.5, side - 2.0}, {1.5, side - 2.0}}));
    // Drawn and not written: it needs no font.
    painter.setPen(QPen(Qt::white, 2.2, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(QPointF(side / 2.0, 8.0), QPointF(side / 2.0, 14.5));
    painter.drawLine(QPointF(side / 2.0, 16.0), QPointF(side / 2.0, 18.2));
    painter.end();
    return SceneImageOf(sign);
}
} // namespace

WarningMarks::WarningMarks(CAxEarthViewer* earthViewer) : viewer(earthViewer) {}

WarningMarks::~WarningMarks()
{
    Hide();
}

void WarningMarks::Show(const std::vector<AxPlanWarning>& warnings)
{
    Hide();
    if (!viewer || !viewer->getMapNode())
        return;
    osgEarth::Symbology::Style style;
    auto* icon = style.getOrCreate<IconSymbol>();
    icon->alignment() = IconSymbol::ALIGN_CENTER_BOTTOM;
    icon->declutter() = false; // a danger is seen, whatever else is there
    osg::ref_ptr<osg::Image> sign;
    float priority = worstPriority;
    for (const AxPlanWarning& warning : PlanWarnings::WorstFirst(warnings)) {
        if (!PlanWarnings::IsDanger(warning) || (marks && marks->getNumChildren() == mostMarks))
            break;
        if (!marks) {
            marks = new osg::Group;
            marks->setName("Warning marks");
            sign = WarningSign();
        }
        const osgEarth::GeoPoint place(viewer->getSRS()->getGeographicSRS(), warning.place.x(),
                                       warning.place.y(), 0.0, osgEarth::ALTMODE_RELATIVE);
        osg::ref_ptr<PlaceNode> mark = new PlaceNode(viewer->getMapNode(), place, sign, std::string(), style);
        mark->setPriority(priority--);
        marks->addChild(mark);
    }
    if (marks)
        viewer->GetBoundGroup()->addChild(marks);
}

void WarningMarks::Hide()
{
    if (marks && viewer && viewer->GetBoundGroup())
        viewer->GetBoundGroup()->removeChild(marks);
    marks = nullptr;
}
