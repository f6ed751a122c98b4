#include "analysis/sight/AxSightDrawing.h"
#include "analysis/AxPictureLayer.h"
#include "analysis/sight/AxSightText.h"
#include "scene/AxScene.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/base/AxSceneImage.h"
#include "scene/shape/AxStateOverGround.h"
#include "scene/shape/AxWorldGeometry.h"

#include <osg/Geode>
#include <osgEarth/MapNode>
#include <osgEarth/SpatialReference>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthAnnotation/PlaceNode>
#include <osgEarthSymbology/IconSymbol>
#include <osgEarthSymbology/TextSymbol>

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {
// Over routes and their areas, below what is laid out on the screen.
constexpr int rimBin = 15;
constexpr int lineBin = 16;
constexpr float rimWidth = 6.0f; // pixels
constexpr float lineWidth = 3.0f;
constexpr float mastWidth = 2.0f;
const osg::Vec4f rimColor(0.05f, 0.05f, 0.05f, 0.8f);
const osg::Vec4f visibleColor(0.3f, 1.0f, 0.35f, 1.0f);
const osg::Vec4f hiddenColor(1.0f, 0.25f, 0.25f, 1.0f);
const osg::Vec4f unknownColor(0.8f, 0.8f, 0.8f, 1.0f);
const osg::Vec4f mastColor(1.0f, 1.0f, 1.0f, 1.0f);

constexpr float viewshedOpacity = 0.5f;

osg::ref_ptr<osg::Geode> GeodeIn(int bin)
{
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    osg::ref_ptr<osg::StateSet> state = AxStateOverGround();
    state->setRenderBinDetails(bin, "RenderBin");
    geode->setStateSet(state);
    return geode;
}

void AddLine(osg::Geode& geode, const std::vector<osg::Vec3d>& points, const osg::Vec4f& color, float width)
{
    osg::ref_ptr<AxWorldGeometry> line = new AxWorldGeometry;
    line->SetPoints(points);
    line->SetLineWidth(width);
    osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
    colors->push_back(color);
    line->setColorArray(colors, osg::Array::BIND_OVERALL);
    osg::ref_ptr<osg::DrawElementsUInt> strip = new osg::DrawElementsUInt(GL_LINE_STRIP);
    for (unsigned i = 0; i < points.size(); ++i)
        strip->push_back(i);
    line->addPrimitiveSet(strip);
    geode.addDrawable(line);
}

osg::Vec3d WorldAbove(const QPointF& place, double ground, double above)
{
    return AxGlobe::WorldOf({place.x(), place.y(), (std::isfinite(ground) ? ground : 0.0) + above});
}

osgEarth::Symbology::Style TextStyle(const osg::Vec2s& offset)
{
    using osgEarth::Symbology::Color;
    using osgEarth::Symbology::TextSymbol;
    constexpr float pixels = 16.0f;
    osgEarth::Symbology::Style style;
    auto* symbol = style.getOrCreate<TextSymbol>();
    symbol->alignment() = TextSymbol::ALIGN_LEFT_BOTTOM;
    symbol->pixelOffset() = offset;
    symbol->fill()->color() = Color::White;
    symbol->halo()->color() = Color::Black;
    symbol->font() = "msyh.ttc";
    symbol->encoding() = TextSymbol::ENCODING_UTF8;
    symbol->size() = pixels;
    symbol->declutter() = false;
    return style;
}

osgEarth::Annotation::LabelNode* MakeLabel(const AxScene& scene, const osgEarth::GeoPoint& place,
                                           const std::string& text)
{
    auto* label =
        new osgEarth::Annotation::LabelNode(scene.MapNode(), place, text, TextStyle(osg::Vec2s(14, 10)));
    label->setDynamic(true);
    return label;
}

// An eye, white with a dark rim: legible on snow and at night.
osg::ref_ptr<osg::Image> EyePicture()
{
    constexpr int width = 26;
    constexpr int height = 18;
    QImage picture(width, height, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF left(2.0, 0.5 * height);
    const QPointF right(width - 2.0, 0.5 * height);
    QPainterPath lids(left);
    lids.quadTo(QPointF(0.5 * width, -0.4 * height), right);
    lids.quadTo(QPointF(0.5 * width, 1.4 * height), left);
    const QColor dark(20, 20, 20);
    painter.setPen(QPen(dark, 2.0));
    painter.setBrush(Qt::white);
    painter.drawPath(lids);
    painter.setBrush(dark);
    painter.drawEllipse(QPointF(0.5 * width, 0.5 * height), 3.0, 3.0);
    painter.end();
    return AxSceneImage(picture);
}

osg::ref_ptr<osgEarth::Annotation::PlaceNode> MakeSign(const AxScene& scene, const osgEarth::GeoPoint& place,
                                                       const std::string& name)
{
    using osgEarth::Symbology::IconSymbol;
    osgEarth::Symbology::Style style = TextStyle(osg::Vec2s(22, 6));
    // Of names that cover each other one is enough, of eyes none.
    style.getOrCreate<osgEarth::Symbology::TextSymbol>()->declutter() = true;
    auto* icon = style.getOrCreate<IconSymbol>();
    icon->alignment() = IconSymbol::ALIGN_CENTER_CENTER;
    icon->declutter() = false;
    osg::ref_ptr<osgEarth::Annotation::PlaceNode> sign =
        new osgEarth::Annotation::PlaceNode(scene.MapNode(), place, EyePicture(), name, style);
    sign->setDynamic(true);
    return sign;
}

osgEarth::GeoPoint PlaceOf(const AxScene& scene, const osg::Vec3d& world)
{
    osgEarth::GeoPoint place;
    place.fromWorld(scene.MapSRS()->getGeographicSRS(), world);
    return place;
}

void AddMast(osg::Geode& rims, osg::Geode& lines, const AxSightEnd& end, double ground)
{
    const std::vector<osg::Vec3d> mast = {WorldAbove(end.place, ground, 0.0),
                                          WorldAbove(end.place, ground, end.aboveGround)};
    AddLine(rims, mast, rimColor, rimWidth);
    AddLine(lines, mast, mastColor, mastWidth);
}
} // namespace

void AxDrawSightLine(osg::Group& node, const AxScene& scene, const AxSightLine& line, const QString& name)
{
    using osgEarth::Annotation::LabelNode;
    using osgEarth::Annotation::PlaceNode;
    const osg::Vec3d from = WorldAbove(line.from.place, line.fromGround, line.from.aboveGround);
    const osg::Vec3d to = WorldAbove(line.to.place, line.toGround, line.to.aboveGround);
    const osg::ref_ptr<osg::Geode> rims = GeodeIn(rimBin);
    const osg::ref_ptr<osg::Geode> lines = GeodeIn(lineBin);
    AddLine(*rims, {from, to}, rimColor, rimWidth);
    if (line.seen == AxSeen::Hidden) {
        const osg::Vec3d block = from + (to - from) * (line.blockedAt->distance / line.distance);
        AddLine(*lines, {from, block}, visibleColor, lineWidth);
        AddLine(*lines, {block, to}, hiddenColor, lineWidth);
    } else
        AddLine(*lines, {from, to}, line.seen == AxSeen::Visible ? visibleColor : unknownColor, lineWidth);
    AddMast(*rims, *lines, line.from, line.fromGround);
    AddMast(*rims, *lines, line.to, line.toGround);

    const std::string text = AxSightLabel(line).toStdString();
    const bool isDrawn = node.getNumChildren() > 1;
    osg::ref_ptr<LabelNode> label = isDrawn ? dynamic_cast<LabelNode*>(node.getChild(0)) : nullptr;
    osg::ref_ptr<PlaceNode> sign = isDrawn ? dynamic_cast<PlaceNode*>(node.getChild(1)) : nullptr;
    // Those that are there already stay: new ones would fade in.
    if (label && sign) {
        label->setPosition(PlaceOf(scene, to));
        label->setText(text);
        sign->setPosition(PlaceOf(scene, from));
    } else {
        label = MakeLabel(scene, PlaceOf(scene, to), text);
        sign = MakeSign(scene, PlaceOf(scene, from), name.toStdString());
    }
    node.removeChildren(0, node.getNumChildren());
    for (osg::Node* child : {static_cast<osg::Node*>(label), static_cast<osg::Node*>(sign),
                             static_cast<osg::Node*>(rims), static_cast<osg::Node*>(lines)})
        node.addChild(child);
}

void AxDrawObserver(osg::Group& node, const AxScene& scene, const AxViewshed& viewshed, const QString& name)
{
    const AxSightEnd eye{viewshed.question.observer, viewshed.question.aboveGround};
    const osg::ref_ptr<osg::Geode> rims = GeodeIn(rimBin);
    const osg::ref_ptr<osg::Geode> lines = GeodeIn(lineBin);
    AddMast(*rims, *lines, eye, viewshed.observerGround);
    const osg::Vec3d place = WorldAbove(eye.place, viewshed.observerGround, eye.aboveGround);
    node.addChild(MakeSign(scene, PlaceOf(scene, place), name.toStdString()));
    node.addChild(rims);
    node.addChild(lines);
}

std::shared_ptr<const AxGeoPicture> AxViewshedPicture(const AxViewshed& viewshed)
{
    return std::make_shared<const AxGeoPicture>(AxSightRaster(viewshed),
                                                AxPixelsOfCell(viewshed.Side(), viewshed.Side()));
}

osg::ref_ptr<osgEarth::ImageLayer> AxViewshedLayer(const std::shared_ptr<const AxGeoPicture>& picture,
                                                   const QString& name)
{
    return AxPictureLayer(picture, name, viewshedOpacity);
}
