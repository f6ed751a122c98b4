#include "mission/landing/AxGroundMarks.h"
#include "scene/AxScene.h"

#include <osg/Group>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthSymbology/AltitudeSymbol>
#include <osgEarthSymbology/Color>
#include <osgEarthSymbology/LineSymbol>
#include <osgEarthSymbology/PolygonSymbol>
#include <osgEarthSymbology/TextSymbol>

#include <cmath>

using namespace osgEarth::Symbology;

osgEarth::GeoPoint AxPlaceOnMap(const AxScene& scene, const CAxVector3D& latLngAlt)
{
    const bool isPlace =
        std::abs(latLngAlt.x()) <= 90.0 && std::isfinite(latLngAlt.y()) && std::isfinite(latLngAlt.z());
    if (!scene.MapSRS() || !isPlace)
        return {};
    return {scene.MapSRS(), latLngAlt.y(), latLngAlt.x(), latLngAlt.z(), osgEarth::ALTMODE_ABSOLUTE};
}

Style AxDrapedStyle(const Color& color, float fillAlpha)
{
    constexpr float outlinePixels = 2.0f;
    Style style;
    style.getOrCreate<PolygonSymbol>()->fill()->color() = Color(color, fillAlpha);
    style.getOrCreate<LineSymbol>()->stroke()->color() = color;
    style.getOrCreate<LineSymbol>()->stroke()->width() = outlinePixels;
    auto* altitude = style.getOrCreate<AltitudeSymbol>();
    altitude->clamping() = AltitudeSymbol::CLAMP_TO_TERRAIN;
    altitude->technique() = AltitudeSymbol::TECHNIQUE_DRAPE;
    return style;
}

Style AxGroundTextStyle(const Color& fill, const Color& halo)
{
    constexpr float pixels = 16.0f;
    Style style;
    auto* symbol = style.getOrCreate<TextSymbol>();
    symbol->alignment() = TextSymbol::ALIGN_CENTER_CENTER;
    symbol->fill()->color() = fill;
    symbol->halo()->color() = halo;
    symbol->font() = "msyh.ttc";
    symbol->encoding() = TextSymbol::ENCODING_UTF8;
    symbol->size() = pixels;
    symbol->declutter() = false;
    return style;
}

osg::ref_ptr<osgEarth::Annotation::LabelNode>
AxGroundLabel(const AxScene& scene, const osgEarth::GeoPoint& place, const QString& text, const Style& style)
{
    osg::ref_ptr<osgEarth::Annotation::LabelNode> label =
        new osgEarth::Annotation::LabelNode(scene.MapNode(), place, text.toStdString(), style);
    label->setDynamic(true);
    return label;
}

void AxLeaveGroups(osg::Node* node)
{
    while (node && node->getNumParents() > 0)
        node->getParent(0)->removeChild(node);
}
