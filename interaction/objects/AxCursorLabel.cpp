#include "interaction/objects/AxCursorLabel.h"
#include "scene/AxScene.h"
#include "scene/shape/AxBlockArea.h"
#include "scene/shape/AxLabelInside.h"
#include "scene/shape/AxRingInPlane.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxUnits.h>
#include <AxBaseUI/AxPolygonTest.h>

#include <osgEarth/MapNode>
#include <osgEarthSymbology/TextSymbol>

#include <QCoreApplication>
#include <QStringList>

using osgEarth::Annotation::LabelNode;
using osgEarth::Symbology::TextSymbol;

namespace {
QString Tr(const char* text)
{
    return QCoreApplication::translate("CAxHandleAdapter", text);
}

// Over the vertices that have been drawn already.
osgEarth::Symbology::Style Beside(const osgEarth::Symbology::Style& style)
{
    osgEarth::Symbology::Style beside = style;
    auto* symbol = beside.getOrCreate<TextSymbol>();
    symbol->alignment() = TextSymbol::ALIGN_LEFT_BOTTOM;
    symbol->pixelOffset() = osg::Vec2s(14, 10);
    symbol->declutter() = false;
    return beside;
}
} // namespace

void AxCursorLabel::Show(const AxScene& scene, const osgEarth::Symbology::Style& style,
                         const osg::Vec3d& lngLatPos, const QString& text)
{
    // Not the draw group itself: a handle in it may be dragged, and with it that group's children be walked.
    osg::Group* const group = scene.ObjectGroup();
    if (!group)
        return;
    const osgEarth::GeoPoint place(scene.MapSRS()->getGeographicSRS(), lngLatPos, osgEarth::ALTMODE_ABSOLUTE);
    if (label) {
        label->setPosition(place);
        label->setText(text.toStdString());
        AxKeepLabelInside(*label);
        return;
    }
    label = new LabelNode(scene.MapNode(), place, text.toStdString(), Beside(style));
    AxKeepLabelInside(*label);
    label->setDynamic(true);
    parent = group;
    parent->addChild(label);
}

void AxCursorLabel::Hide()
{
    if (label)
        parent->removeChild(label);
    label = nullptr;
    parent = nullptr;
}

QString AxCursorLabel::Text() const
{
    return label ? QString::fromStdString(label->text()) : QString();
}

double AxGroundDistance(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return DistanceBetweenTwoLatLng(CAxVector3D(a.x(), a.y(), 0.0), CAxVector3D(b.x(), b.y(), 0.0));
}

QString AxLengthText(double metres)
{
    return AxUnits::Length(metres);
}

QString AxAreaText(double squareKilometres)
{
    constexpr double squareMetres = 1e6;
    return AxUnits::Area(squareKilometres * squareMetres);
}

QString AxRingSizeText(const std::vector<osg::Vec3d>& ring, const osgEarth::SpatialReference& srs)
{
    double perimeter = AxGroundDistance(ring.back(), ring.front());
    for (std::size_t i = 1; i < ring.size(); ++i)
        perimeter += AxGroundDistance(ring[i - 1], ring[i]);
    const QString around = AxLengthText(perimeter);
    if (isSelfIntersection(AxRingInPlane(ring)))
        return Tr(QT_TRANSLATE_NOOP("CAxHandleAdapter", "perimeter %1")).arg(around);
    return Tr(QT_TRANSLATE_NOOP("CAxHandleAdapter", "area %1, perimeter %2"))
        .arg(AxAreaText(AxBlockArea(ring, srs)), around);
}

QString AxBandSizeText(const std::vector<osg::Vec3d>& band, double width,
                       const osgEarth::SpatialReference& srs, AxKeptPlane* kept)
{
    return Tr(QT_TRANSLATE_NOOP("CAxHandleAdapter", "area %1, width %2"))
        .arg(AxAreaText(AxBlockArea(band, srs, kept)), AxLengthText(width));
}

QString AxVertexText(const std::vector<osg::Vec3d>& vertices, std::size_t index, bool closed,
                     const osgEarth::SpatialReference& srs)
{
    const std::size_t count = vertices.size();
    QStringList lines;
    QStringList edges;
    if (index < count && count > 1 && (closed || index > 0))
        edges += AxLengthText(AxGroundDistance(vertices[(index + count - 1) % count], vertices[index]));
    if (index < count && count > 1 && (closed || index + 1 < count))
        edges += AxLengthText(AxGroundDistance(vertices[index], vertices[(index + 1) % count]));
    if (!edges.isEmpty())
        lines += Tr(QT_TRANSLATE_NOOP("CAxHandleAdapter", "edges %1"))
                     .arg(edges.join(Tr(QT_TRANSLATE_NOOP("CAxHandleAdapter", ", "))));
    double total = 0.0;
    for (std::size_t i = 1; i < count; ++i)
        total += AxGroundDistance(vertices[i - 1], vertices[i]);
    if (closed && count > 2)
        lines += AxRingSizeText(vertices, srs);
    else
        lines += Tr(QT_TRANSLATE_NOOP("CAxHandleAdapter", "length %1")).arg(AxLengthText(total));
    return lines.join(QLatin1Char('\n'));
}

QString AxRunningLengthText(const std::vector<osg::Vec3d>& vertices, const osg::Vec3d& lngLatPos)
{
    if (vertices.empty())
        return {};
    const double leg = AxGroundDistance(vertices.back(), lngLatPos);
    double total = leg;
    for (std::size_t i = 1; i < vertices.size(); ++i)
        total += AxGroundDistance(vertices[i - 1], vertices[i]);
    if (vertices.size() < 2)
        return AxLengthText(leg);
    return Tr(QT_TRANSLATE_NOOP("CAxHandleAdapter", "%1, in all %2"))
        .arg(AxLengthText(leg), AxLengthText(total));
}
