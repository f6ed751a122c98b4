#include "interaction/measure/AxMeasureAdapter.h"
#include "interaction/measure/AxMeasureHit.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/base/AxExactPlace.h"
#include "scene/base/AxGlobePoint.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxSceneImage.h"
#include "scene/shape/AxDrawnGround.h"
#include "scene/shape/AxLabelInside.h"
#include "scene/shape/AxWorldGeometry.h"

#include <osg/CoordinateSystemNode>
#include <osgEarth/MapNode>
#include <osgEarthSymbology/IconSymbol>
#include <osgEarthSymbology/TextSymbol>

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

using osgEarth::Annotation::LabelNode;
using osgEarth::Annotation::PlaceNode;
using osgEarth::Symbology::IconSymbol;
using osgEarth::Symbology::TextSymbol;

namespace {
// Seen on bright ground and on dark.
const osg::Vec4f lineColor(1.0f, 0.84f, 0.1f, 1.0f);
const osg::Vec4f highlightColor(0.35f, 1.0f, 1.0f, 1.0f);
const osg::Vec4f rimColor(0.0f, 0.0f, 0.0f, 0.8f);
const osg::Vec4f areaColor(1.0f, 0.84f, 0.1f, 0.2f);
constexpr float lineWidth = 2.5f;
constexpr float rimWidth = 5.5f;
constexpr float highlightWider = 2.0f;
constexpr int markSize = 13; // pixels
// From afar, where all lie on one place, the text of one measurement is read, and above the names of places.
constexpr float mainPriority = 950.0f;
constexpr float markPriority = 900.0f;
constexpr float labelPriority = 20.0f;
// What the selected measurement has before the others.
constexpr float selectedFirst = 10.0f;
constexpr double labelPixels = 16.0;
// Looks at the ground with each move of the mouse.
constexpr std::size_t liveLooks = 200;

osg::Image* MarkImage()
{
    static const osg::ref_ptr<osg::Image> image = [] {
        QImage disc(markSize, markSize, QImage::Format_RGBA8888);
        disc.fill(Qt::transparent);
        QPainter painter(&disc);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, 2.0));
        painter.setBrush(Qt::white);
        painter.drawEllipse(QRectF(2.0, 2.0, markSize - 4.0, markSize - 4.0));
        painter.end();
        return AxSceneImage(disc);
    }();
    return image;
}

// Above the rim of the same line, whose distance from the eye is the same.
void PutAbove(osg::Geometry& line)
{
    constexpr int behindTransparent = 11;
    osg::ref_ptr<osg::StateSet> state =
        line.getStateSet() ? new osg::StateSet(*line.getStateSet(), osg::CopyOp::SHALLOW_COPY)
                           : new osg::StateSet;
    state->setRenderBinDetails(behindTransparent, "DepthSortedBin");
    line.setStateSet(state);
}
} // namespace

AxMeasureAdapter::AxMeasureAdapter(CAxEarthViewer* viewer, QObject* parent, EToolType ofTool,
                                   AxMeasurements& list)
    : CAxHandleAdapter(viewer, parent), tool(ofTool), book(&list), nodes(new osg::Group)
{
    SetColors(rimColor, areaColor);
    JoinScene();
    nodes->setName("Measurement");
    if (osg::Group* group = d->viewer ? d->viewer->Scene().ObjectGroup() : nullptr)
        group->addChild(nodes);
    list.Began(this);
}

AxMeasureAdapter::~AxMeasureAdapter()
{
    dropNodes();
    if (book)
        book->Forget(this);
}

void AxMeasureAdapter::dropNodes()
{
    while (nodes->getNumParents() > 0)
        nodes->getParent(0)->removeChild(nodes);
}

// The object may have to live until the end of one of its slots.
void AxMeasureAdapter::TakeOffMap()
{
    dropNodes();
    if (d->viewer)
        d->viewer->Objects().Remove(this, false);
}

int AxMeasureAdapter::CheckGeometry()
{
    return ShapeKind().Allows(static_cast<int>(d->anchors.size())) ? 1 : 0;
}

void AxMeasureAdapter::SetAdapterVisible(bool visible, QString)
{
    d->visible = visible;
    SetFeatureNodeVisible(visible);
    nodes->setNodeMask(visible ? ~0u : 0u);
}

void AxMeasureAdapter::ClearPoints()
{
    d->anchors.clear();
    forgetCursor();
    drawLabels({});
}

void AxMeasureAdapter::ImportGeometry(const std::vector<osg::Vec3d>& points, bool)
{
    d->operation = OperationIdle;
    d->anchors = points;
    cursor.reset();
    updateAdapter();
}

std::vector<osg::Vec3d> AxMeasureAdapter::Outline()
{
    std::vector<osg::Vec3d> points = d->anchors;
    if (cursor)
        points.push_back(*cursor);
    return points;
}

std::vector<osg::Vec3d> AxMeasureAdapter::InnerLine()
{
    std::vector<osg::Vec3d> line = Outline();
    if (IsOutlineClosed() && line.size() > 2)
        line.push_back(line.front());
    return line;
}

// The mouse

std::optional<osg::Vec3d> AxMeasureAdapter::placeOf(const osg::Vec3d& lngLatPos,
                                                    const osg::Vec3d& worldCoordPos)
{
    if (!d->viewer || !lngLatPos.valid() || !worldCoordPos.valid() || worldCoordPos == osg::Vec3d())
        return std::nullopt;
    osg::Vec3d place = d->drawingSnap.Find(*d->viewer, *this, AxExactPlace(lngLatPos, worldCoordPos));
    // From afar the drawn ground, which was picked, is far from the real one.
    osgEarth::MapNode* const map = d->viewer->Scene().MapNode();
    if (map && isOfGround(lngLatPos, worldCoordPos))
        place.z() = AxLoadedHeight(*map, place.x(), place.y()).value_or(place.z());
    return place;
}

bool AxMeasureAdapter::isOfGround(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos)
{
    static const osg::ref_ptr<const osg::EllipsoidModel> earth = new osg::EllipsoidModel;
    constexpr double tolerance = 1.0; // metres; altitudes come as floats
    double latitude = 0.0;
    double longitude = 0.0;
    double altitude = 0.0;
    earth->convertXYZToLatLongHeight(worldCoordPos.x(), worldCoordPos.y(), worldCoordPos.z(), latitude,
                                     longitude, altitude);
    return std::abs(altitude - lngLatPos.z()) < tolerance;
}

bool AxMeasureAdapter::isLast(const osg::Vec3d& place) const
{
    return !d->anchors.empty() && std::abs(place.x() - d->anchors.back().x()) < AxLongitudes::sameDegrees &&
           std::abs(place.y() - d->anchors.back().y()) < AxLongitudes::sameDegrees;
}

bool AxMeasureAdapter::addPoint(const osg::Vec3d& place)
{
    if (isLast(place))
        return false;
    d->anchors.push_back(place);
    cursor.reset();
    updateAdapter();
    return true;
}

void AxMeasureAdapter::slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    const auto place = d->operation == OperationDrawing ? placeOf(lngLatPos, worldCoordPos) : std::nullopt;
    if (!place)
        return;
    addPoint(*place);
    showLive(*place);
}

void AxMeasureAdapter::slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos)
{
    if (d->operation != OperationDrawing)
        return;
    if (const auto place = placeOf(lngLatPos, worldCoordPos))
        showLive(*place);
    else
        forgetCursor();
}

void AxMeasureAdapter::slotDoubleClicked(osg::Vec3d, osg::Vec3d)
{
    finish();
}

AxPathGround AxMeasureAdapter::loadedGround() const
{
    AxPathGround ground;
    ground.most = liveLooks;
    osg::observer_ptr<osgEarth::MapNode> map(d->viewer ? d->viewer->Scene().MapNode() : nullptr);
    if (map.valid())
        ground.height = [map](double longitude, double latitude) -> std::optional<double> {
            return map.valid() ? AxLoadedHeight(*map, longitude, latitude) : std::nullopt;
        };
    return ground;
}

void AxMeasureAdapter::showLive(const osg::Vec3d& place)
{
    if (d->anchors.empty() || !d->viewer)
        return;
    cursor.reset();
    if (!isLast(place))
        cursor = place;
    const std::atomic<bool> isOff = false;
    QStringList lines;
    const QString values = LiveText(Work()(Outline(), loadedGround(), isOff));
    for (const QString& part : {values, Hint()})
        if (!part.isEmpty())
            lines += part;
    updateAdapter();
    d->cursorLabel.Show(d->viewer->Scene(), d->style, place, lines.join(QLatin1Char('\n')));
}

void AxMeasureAdapter::forgetCursor()
{
    cursor.reset();
    d->cursorLabel.Hide();
    updateAdapter();
}

// The end of the drawing

bool AxMeasureAdapter::end()
{
    d->operation = OperationIdle;
    d->mouseState = 0;
    const Running self(this);
    const bool isEnough = CheckGeometry() > 0;
    forgetCursor();
    if (isEnough && book)
        book->Take(this);
    return isEnough && self.IsWanted();
}

void AxMeasureAdapter::EndHandle()
{
    if (d->operation != OperationDrawing)
        return;
    const Running self(this);
    const bool isKept = end();
    if (!self.IsWanted() || !d->viewer)
        return;
    if (!isKept)
        TakeOffMap();
    else if (d->viewer->Objects().Current() == this)
        d->viewer->Objects().SetCurrent(nullptr);
}

void AxMeasureAdapter::finish()
{
    if (d->operation != OperationDrawing)
        return;
    const Running self(this);
    const QString id = GetHandleID();
    EndHandle();
    if (self.IsGone())
        return;
    emit signalHandleEnd(self.IsWanted() ? id : QString(), false);
    if (!self.IsGone())
        emit signalHandlePickEnded(tool);
}

bool AxMeasureAdapter::CancelHandle()
{
    if (d->operation != OperationDrawing || !d->viewer)
        return false;
    const Running self(this);
    d->operation = OperationIdle;
    d->mouseState = 0;
    d->cursorLabel.Hide();
    TakeOffMap();
    if (self.IsGone())
        return true;
    emit signalHandleEnd(QString(), false);
    if (!self.IsGone())
        emit signalHandlePickEnded(tool);
    return true;
}

// How it is drawn

QString AxMeasureAdapter::Hint() const
{
    return {};
}

QString AxMeasureAdapter::LiveText(const AxMeasuredValues& values) const
{
    return AxMeasureText::Lines(values.whole);
}

QVector<AxMeasureAdapter::Label> AxMeasureAdapter::Labels(const AxMeasurement& measurement) const
{
    if (measurement.points.empty())
        return {};
    return {{measurement.points.back(), AxMeasureText::Lines(measurement.values.whole), true}};
}

void AxMeasureAdapter::ShowMeasured(const AxMeasurement& measurement)
{
    drawLabels(Labels(measurement));
}

bool AxMeasureAdapter::IsShapeAt(const AxMeasureHit& hit) const
{
    if (!d->visible)
        return false;
    for (unsigned i = 0; i < d->featureNode->getNumDrawables(); ++i)
        if (osg::Geometry* drawn = d->featureNode->getDrawable(i)->asGeometry())
            if (drawn->getName() == "Feature" && hit.IsOnLine(*drawn))
                return true;
    return std::any_of(d->anchors.begin(), d->anchors.end(),
                       [&hit](const osg::Vec3d& place) { return hit.IsOnMark(AxGlobe::WorldOf(place)); });
}

bool AxMeasureAdapter::IsTextAt(const AxMeasureHit& hit) const
{
    return d->visible && std::any_of(texts.begin(), texts.end(),
                                     [&hit](const auto& text) { return hit.IsOnText(*text.first); });
}

void AxMeasureAdapter::updateAdapter()
{
    if (d->leaving)
        return;
    while (osg::Drawable* drawn = FindDrawable("Feature"))
        d->featureNode->removeDrawable(drawn);
    drawShape();
    drawMarks();
    rankLabels();
}

void AxMeasureAdapter::drawShape()
{
    const osg::Vec4f color = d->selectedAmongSeveral ? highlightColor : lineColor;
    const float wider = d->selectedAmongSeveral ? highlightWider : 0.0f;
    const osg::ref_ptr<osg::Geometry> rim = CreateOwnGeom(d->edgeColor, d->fillColor, rimWidth + wider);
    const osg::ref_ptr<osg::Geometry> line = CreateInnerGeom(color, lineWidth + wider);
    if (line)
        PutAbove(*line);
    for (const osg::ref_ptr<osg::Geometry>& drawn : {rim, line})
        if (drawn) {
            drawn->setName("Feature");
            d->featureNode->addDrawable(drawn);
        }
}

void AxMeasureAdapter::drawInAir(const std::vector<osg::Vec3d>& line)
{
    if (line.size() < 2)
        return;
    std::vector<osg::Vec3d> world;
    std::transform(line.begin(), line.end(), std::back_inserter(world), AxGlobe::WorldOf);
    const float wider = d->selectedAmongSeveral ? highlightWider : 0.0f;
    for (const bool isRim : {true, false}) {
        osg::ref_ptr<AxWorldGeometry> drawn = new AxWorldGeometry;
        drawn->SetLineWidth((isRim ? rimWidth : lineWidth) + wider);
        drawn->SetPoints(world);
        AddEdgePrimitiveSet(drawn, 0, static_cast<int>(world.size()),
                            isRim                     ? rimColor
                            : d->selectedAmongSeveral ? highlightColor
                                                      : lineColor,
                            false);
        if (!isRim)
            PutAbove(*drawn);
        drawn->setName("Feature");
        d->featureNode->addDrawable(drawn);
    }
}

osgEarth::GeoPoint AxMeasureAdapter::pointOf(const osg::Vec3d& place) const
{
    const osgEarth::SpatialReference* srs = d->viewer->Scene().MapSRS()->getGeographicSRS();
    if (isOnGround())
        return {srs, osg::Vec3d(place.x(), place.y(), 0.0), osgEarth::ALTMODE_RELATIVE};
    return {srs, place, osgEarth::ALTMODE_ABSOLUTE};
}

void AxMeasureAdapter::drawMarks()
{
    osgEarth::MapNode* const mapNode = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    if (!mapNode)
        return;
    const std::vector<osg::Vec3d>& points = d->anchors;
    for (; marks.size() > points.size(); marks.pop_back())
        nodes->removeChild(marks.back());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const osgEarth::GeoPoint place = pointOf(points[i]);
        if (i < marks.size()) {
            if (!(marks[i]->getPosition() == place))
                marks[i]->setPosition(place);
            continue;
        }
        osgEarth::Symbology::Style style;
        auto* icon = style.getOrCreate<IconSymbol>();
        icon->alignment() = IconSymbol::ALIGN_CENTER_CENTER;
        osg::ref_ptr<PlaceNode> mark = new PlaceNode(mapNode, place, MarkImage(), std::string(), style);
        mark->setDynamic(true);
        mark->setPriority(markPriority);
        nodes->addChild(mark);
        marks.push_back(mark);
    }
}

void AxMeasureAdapter::drawLabels(const QVector<Label>& wanted)
{
    for (const auto& text : texts)
        nodes->removeChild(text.first);
    texts.clear();
    osgEarth::MapNode* const mapNode = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    if (!mapNode)
        return;
    for (const Label& one : wanted) {
        osgEarth::Symbology::Style style = d->style;
        auto* text = style.getOrCreate<TextSymbol>();
        if (!one.isMain) {
            text->size() = labelPixels;
        } else {
            text->alignment() = TextSymbol::ALIGN_LEFT_BOTTOM;
            // So far that it does not give way to the mark of its own point.
            text->pixelOffset() = osg::Vec2s(16, 8);
        }
        osg::ref_ptr<LabelNode> label =
            new LabelNode(mapNode, pointOf(one.place), one.text.toStdString(), style);
        label->setDynamic(true);
        AxKeepLabelInside(*label);
        nodes->addChild(label);
        texts.emplace_back(label, one.isMain);
    }
    rankLabels();
}

void AxMeasureAdapter::rankLabels()
{
    const float first = d->selectedAmongSeveral ? selectedFirst : 0.0f;
    for (const auto& [label, isMain] : texts)
        label->setPriority((isMain ? mainPriority : labelPriority) + first);
}
