#pragma once
#include "globe/Horizon.h"
#include "text/GlyphAtlas.h"
#include "text/LabelDeclutter.h"
#include <memory>
#include <optional>
#include <osg/Vec3d>
#include <osgEarthFeatures/Feature>
#include <osgEarthSymbology/TextSymbol>
#include <string>
#include <vector>

namespace osgEarth::Features {
/// One place with its name.
struct PlaceLabel
{
    osg::Vec2d lonLat;
    osg::Vec3d ground; ///< geocentric, on the ellipsoid
    osg::Vec3d up;
    double height = 0.0; ///< of the terrain, as far as it is known
    OccludeePoint occludee;
    float priority = 0.0f;
    std::string text; ///< UTF-8

    // Filled in when the label is first wanted.
    std::vector<unsigned> codes;
    ScreenBox box;  ///< round the place, pixels
    osg::Vec2f pen; ///< where the first letter starts, pixels from the place
    bool laidOut = false;
    bool shown = false;

    /// Whether ground hid the place from the eye that last looked; no eye has looked at first.
    bool blocked = false;
    std::optional<osg::Vec3d> seenFrom;
};

/// How the labels of a layer look.
struct LabelLook
{
    unsigned pixels = 14;
    Symbology::TextSymbol::Alignment alignment = Symbology::TextSymbol::ALIGN_LEFT_CENTER;
    osg::Vec4f fill{1.0f, 1.0f, 1.0f, 1.0f};
    osg::Vec4f halo{0.12f, 0.12f, 0.12f, 1.0f};
    osg::Vec2f shift; ///< pixels
    bool declutter = true;
};

LabelLook lookOf(const Symbology::TextSymbol& symbol);

/// The features that are points with a text, by falling priority.
std::vector<PlaceLabel> labelsOf(const FeatureList& lonLatFeatures, const Symbology::TextSymbol& symbol);

/// Measures the label's text and places it beside, above or below its dot.
void layOut(PlaceLabel& label, const LabelLook& look, GlyphAtlas& atlas);
} // namespace osgEarth::Features
