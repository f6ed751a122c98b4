#include "mission/routes/AxRouteNumbers.h"

#include "mission/routes/AxRouteRules.h"
#include "scene/AxScene.h"

#include <osg/Camera>
#include <osg/Viewport>
#include <osgEarth/GeoData>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthSymbology/Color>
#include <osgEarthSymbology/TextSymbol>
#include <osgViewer/Viewer>

#include <algorithm>
#include <string>
#include <utility>

using osgEarth::Annotation::LabelNode;
using osgEarth::Symbology::Color;
using osgEarth::Symbology::Style;
using osgEarth::Symbology::TextSymbol;

namespace {
constexpr float numberPixels = 12.0f;

Style NumberStyle(const AxRouteNumbers::Colors& colors)
{
    Style style;
    auto* text = style.getOrCreate<TextSymbol>();
    text->font() = "msyh.ttc";
    text->size() = numberPixels;
    text->alignment() = TextSymbol::ALIGN_LEFT_BOTTOM;
    text->pixelOffset() = osg::Vec2s(4, 4);
    text->fill()->color() = Color(colors.text);
    text->halo()->color() = Color(colors.rim);
    return style;
}
} // namespace

void AxRouteNumbers::CreateTxts(std::vector<osg::Vec3d> points)
{
    places = std::move(points);
    shown.clear();
    node->removeChildren(0, node->getNumChildren());
}

void AxRouteNumbers::SetColors(int first, int last, const Colors& colors)
{
    for (int i = std::max(first, 0); i <= std::min(last, Count() - 1); ++i) {
        colored[i] = colors;
        if (const auto label = shown.value(i))
            label->setStyle(NumberStyle(colors));
    }
}

void AxRouteNumbers::Look(const AxScene& scene)
{
    const osg::Camera* camera = scene.View()->getCamera();
    if (!scene.MapNode() || !camera->getViewport())
        return;
    const std::vector<int> wanted = AxRouteRules::NumbersShown(
        places, camera->getViewMatrix() * camera->getProjectionMatrix(),
        static_cast<int>(camera->getViewport()->width()), static_cast<int>(camera->getViewport()->height()));
    for (auto label = shown.begin(); label != shown.end();) {
        if (std::binary_search(wanted.begin(), wanted.end(), label.key())) {
            ++label;
            continue;
        }
        node->removeChild(label.value());
        label = shown.erase(label);
    }
    for (const int index : wanted)
        if (!shown.contains(index))
            AddPointTxt(index, scene);
}

void AxRouteNumbers::AddPointTxt(int index, const AxScene& scene)
{
    osgEarth::GeoPoint place;
    if (!place.fromWorld(scene.MapSRS()->getGeographicSRS(), places[static_cast<std::size_t>(index)]))
        return;
    const osg::ref_ptr<LabelNode> label =
        new LabelNode(scene.MapNode(), place, std::to_string(index + 1), NumberStyle(ColorsOf(index)));
    shown.insert(index, label);
    node->addChild(label);
}
