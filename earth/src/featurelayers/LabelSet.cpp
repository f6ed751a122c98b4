#include "featurelayers/LabelSet.h"
#include "text/TextAlignment.h"
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <osg/CoordinateSystemNode>
#include <osgText/String>

namespace osgEarth::Features {
using namespace Symbology;

namespace {
constexpr double kSmallestText = 6.0, kLargestText = 64.0; // pixels
constexpr float kDotRoom = 5.0f;                           // pixels from the place to its text
// Of the letter height, for fonts in general: how far letters reach above and
// below the line they stand on.
constexpr float kAscent = 0.76f, kDescent = 0.22f;
} // namespace

LabelLook lookOf(const TextSymbol& symbol)
{
    LabelLook look;
    if (symbol.size().isSet())
        look.pixels = static_cast<unsigned>(
            std::lround(std::clamp(symbol.size()->eval(), kSmallestText, kLargestText)));
    if (symbol.alignment().isSet())
        look.alignment = symbol.alignment().value();
    if (symbol.fill().isSet())
        look.fill = symbol.fill()->color();
    if (symbol.halo().isSet())
        look.halo = symbol.halo()->color();
    if (symbol.pixelOffset().isSet())
        look.shift.set(symbol.pixelOffset()->x(), symbol.pixelOffset()->y());
    look.declutter = symbol.declutter().value();
    return look;
}

std::vector<PlaceLabel> labelsOf(const FeatureList& features, const TextSymbol& symbol)
{
    const osg::EllipsoidModel wgs84;
    StringExpression content =
        symbol.content().isSet() ? symbol.content().value() : StringExpression("[name]");
    NumericExpression priority =
        symbol.priority().isSet() ? symbol.priority().value() : NumericExpression(0.0);
    std::vector<PlaceLabel> labels;
    for (const auto& feature : features) {
        const std::string text = feature->eval(content);
        const float rank = static_cast<float>(feature->eval(priority));
        if (text.empty())
            continue;
        for (ConstGeometryIterator it(feature->getGeometry()); it.hasMore();) {
            const Geometry* part = it.next();
            if (part->getType() != Geometry::TYPE_POINTSET)
                continue;
            for (const osg::Vec3d& p : *part) {
                PlaceLabel label;
                label.lonLat.set(p.x(), p.y());
                wgs84.convertLatLongHeightToXYZ(osg::DegreesToRadians(p.y()), osg::DegreesToRadians(p.x()),
                                                0.0, label.ground.x(), label.ground.y(), label.ground.z());
                label.up = wgs84.computeLocalUpVector(label.ground.x(), label.ground.y(), label.ground.z());
                label.occludee = occludeeOf(label.ground, {osg::Vec3f()}, 0.0);
                label.priority = rank;
                label.text = text;
                labels.push_back(std::move(label));
            }
        }
    }
    std::stable_sort(labels.begin(), labels.end(),
                     [](const PlaceLabel& a, const PlaceLabel& b) { return a.priority > b.priority; });
    return labels;
}

void layOut(PlaceLabel& label, const LabelLook& look, GlyphAtlas& atlas)
{
    const osgText::String text(label.text, osgText::String::ENCODING_UTF8);
    label.codes.assign(text.begin(), text.end());
    float width = 0.0f;
    for (const unsigned code : label.codes)
        width += atlas.glyph(code).advance;

    const float size = static_cast<float>(look.pixels), ascent = kAscent * size, descent = kDescent * size;
    const float across = acrossOf(look.alignment);
    const float x = across == 0.0f ? kDotRoom : across == 1.0f ? -width - kDotRoom : -across * width;
    float y = -0.5f * (ascent - descent);
    // A centred text would cover its dot, so it is placed above the dot.
    if (look.alignment == TextSymbol::ALIGN_CENTER_TOP)
        y = -kDotRoom - ascent;
    else if (x < 0.0f && x > -width)
        y = kDotRoom + descent;
    label.pen.set(std::round(x + look.shift.x()), std::round(y + look.shift.y()));
    label.box = {std::min(-kDotRoom, label.pen.x()), std::min(-kDotRoom, label.pen.y() - descent),
                 std::max(kDotRoom, label.pen.x() + width), std::max(kDotRoom, label.pen.y() + ascent)};
    label.laidOut = true;
}
} // namespace osgEarth::Features
