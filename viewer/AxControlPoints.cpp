#include "viewer/AxControlPoints.h"
#include "scene/AxScene.h"
#include "scene/base/AxSceneImage.h"

#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthSymbology/Color>
#include <osgEarthSymbology/IconSymbol>
#include <osgEarthSymbology/TextSymbol>

#include <cmath>

using osgEarth::Annotation::PlaceNode;
using osgEarth::Symbology::Color;
using osgEarth::Symbology::IconSymbol;
using osgEarth::Symbology::Style;
using osgEarth::Symbology::TextSymbol;

namespace {
constexpr int mostLettersOfName = 60;

Style CrossStyle()
{
    Style style;
    style.getOrCreate<IconSymbol>()->alignment() = IconSymbol::ALIGN_CENTER_CENTER;
    auto* text = style.getOrCreate<TextSymbol>();
    text->font() = "msyh.ttc";
    text->encoding() = TextSymbol::ENCODING_UTF8;
    text->fill()->color() = Color::White;
    text->halo()->color() = Color::Black;
    // So far beside the cross, which is 26 pixels wide, that one does not give way to the other.
    text->pixelOffset() = osg::Vec2s(21, 0);
    return style;
}
} // namespace

AxControlPoints::~AxControlPoints()
{
    while (!points.empty())
        Remove(points.begin()->first);
}

bool AxControlPoints::Add(const QString& name, const osg::Vec3d& lngLatAlt)
{
    const bool isPlace = std::isfinite(lngLatAlt.x()) && std::abs(lngLatAlt.x()) <= 360.0 &&
                         std::abs(lngLatAlt.y()) <= 90.0 && std::isfinite(lngLatAlt.z());
    if (!scene.DrawGroup() || !isPlace || name.trimmed().isEmpty() || points.count(name))
        return false;
    const osgEarth::GeoPoint place(scene.MapSRS()->getGeographicSRS(), lngLatAlt, osgEarth::ALTMODE_ABSOLUTE);
    osg::ref_ptr<PlaceNode> node =
        new PlaceNode(scene.MapNode(), place,
                      AxSharedSceneImage(QStringLiteral(":/images/Normal/Glidepath/control_point_ic.png")),
                      name.left(mostLettersOfName).toStdString(), CrossStyle());
    scene.DrawGroup()->addChild(node);
    nodes[name] = node;
    points[name] = lngLatAlt;
    emit added(name, QVariantList{lngLatAlt.x(), lngLatAlt.y(), lngLatAlt.z()});
    return true;
}

bool AxControlPoints::Remove(const QString& name)
{
    const auto node = nodes.find(name);
    if (node == nodes.end())
        return false;
    if (scene.DrawGroup())
        scene.DrawGroup()->removeChild(node->second);
    nodes.erase(node);
    points.erase(name);
    return true;
}

QMap<QString, osg::Vec3d> AxControlPoints::All() const
{
    return QMap<QString, osg::Vec3d>(points);
}
