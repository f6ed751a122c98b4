// The part of the map object that draws: shape, name and lock.
#include "interaction/editing/CAxHandleAdapterEditor.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "scene/AxEditAids.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/base/AxSceneImage.h"
#include "scene/base/AxShortName.h"
#include "scene/shape/AxRingInPlane.h"
#include "scene/shape/AxRingTriangles.h"
#include "scene/shape/AxShapeClamp.h"
#include "scene/shape/AxShapeSurface.h"
#include "scene/shape/AxStateOverGround.h"
#include "scene/shape/AxWorldGeometry.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxBaseUI/AxPolygonTest.h>
#include <AxData/CAxBlock.h>

#include <osg/observer_ptr>
#include <osg/Texture2D>
#include <osgEarth/MapNode>
#include <osgEarth/Registry>
#include <osgEarth/ScreenSpaceLayout>
#include <osgEarth/Terrain>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthSymbology/TextSymbol>

#include <algorithm>
#include <cmath>
#include <limits>

using osgEarth::Annotation::GeoPositionNode;
using osgEarth::Annotation::LabelNode;
using osgEarth::Symbology::TextSymbol;

namespace {
constexpr double namePixels = 18.0;
constexpr float namePriority = 10.0f;
const QString lockPicture = QStringLiteral(":/images/Normal/Blockwork/list_area_locking_but_nor.png");
constexpr float lockHalfSize = 18.0f;
// Below the name, whose letters are not as high as the icon.
constexpr short lockShift = -34;
// Side of the square that a segment fills, metres, from its diagonal.
const double segmentSize = 2000.0 / std::sqrt(2.0);

// No longer than the map has room for.
std::string NameOnMap(const QString& name)
{
    constexpr int mostLetters = 24; // a longer one would hide the names of its neighbours
    return AxShortName(name, mostLetters).toStdString();
}

bool HasColor(const osg::Vec4f& color)
{
    return color.a() > AxWorldGeometry::visibleAlpha;
}

// The colours of a geometry, one a vertex; made where there are none.
osg::Vec4Array& VertexColors(osg::Geometry& geometry)
{
    auto* colors = dynamic_cast<osg::Vec4Array*>(geometry.getColorArray());
    if (!colors || colors->getBinding() != osg::Array::BIND_PER_VERTEX) {
        colors = new osg::Vec4Array;
        geometry.setColorArray(colors, osg::Array::BIND_PER_VERTEX);
    }
    colors->resize(geometry.getVertexArray() ? geometry.getVertexArray()->getNumElements() : 0,
                   osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f));
    colors->dirty();
    return *colors;
}

// Whether the vertices from `first` on are there; `count` is then at least 1.
bool HasVertices(const osg::Geometry* geometry, int first, int count)
{
    return geometry && dynamic_cast<const osg::Vec3Array*>(geometry->getVertexArray()) && first >= 0 &&
           count > 0 && static_cast<unsigned>(first + count) <= geometry->getVertexArray()->getNumElements();
}

// Of all shapes while there are any: between them the renderer changes nothing.
osg::ref_ptr<osg::StateSet> ShapeState()
{
    static osg::observer_ptr<osg::StateSet> shared;
    osg::ref_ptr<osg::StateSet> state;
    if (shared.lock(state))
        return state;
    shared = state = AxStateOverGround();
    state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
    return state;
}

AxHeightSource GroundOf(const QPointer<AxViewerParts>& viewer)
{
    return [viewer](std::vector<osg::Vec3d>& points) {
        if (!viewer)
            return;
        QList<osg::Vec3d> sampled;
        sampled.reserve(static_cast<int>(points.size()));
        std::copy(points.begin(), points.end(), std::back_inserter(sampled));
        viewer->Scene().GetElevations(sampled);
        std::copy(sampled.begin(), sampled.end(), points.begin());
    };
}

// Null for a surface without a point on the globe.
osg::ref_ptr<AxWorldGeometry> DrawSurface(const AxShapeSurface& surface, bool closed, const osg::Vec4f& edge,
                                          const osg::Vec4f& fill, float width)
{
    if (surface.Mesh().points.empty())
        return {};
    osg::ref_ptr<AxWorldGeometry> shape = new AxWorldGeometry;
    shape->SetLineWidth(width);
    shape->SetShape(surface.Mesh(), closed, edge, fill);
    return shape;
}

// The points in the plane that fits them best.
std::vector<osg::Vec2d> InTheirPlane(const osg::Vec3Array& points, std::size_t first, std::size_t count)
{
    const osg::Vec3d origin = points[first];
    osg::Vec3d normal;
    for (std::size_t i = 2; i < count; ++i)
        normal += (osg::Vec3d(points[first + i - 1]) - origin) ^ (osg::Vec3d(points[first + i]) - origin);
    if (!(normal.normalize() > 0.0))
        return {};
    osg::Vec3d across = (std::abs(normal.z()) < 0.9 ? osg::Vec3d(0, 0, 1) : osg::Vec3d(1, 0, 0)) ^ normal;
    across.normalize();
    const osg::Vec3d up = normal ^ across;
    std::vector<osg::Vec2d> plane;
    for (std::size_t i = 0; i < count; ++i) {
        const osg::Vec3d at = osg::Vec3d(points[first + i]) - origin;
        plane.emplace_back(across * at, up * at);
    }
    return plane;
}
} // namespace

/// What an object keeps of its drawn shape, so that little has to be done again.
struct AxShapeDrawing
{
    // The outline, or the line within it.
    struct Part
    {
        AxShapeSurface surface;
        osg::observer_ptr<AxWorldGeometry> shape;
        osg::Vec4f edge;
        osg::Vec4f fill;
        bool closed = false;
        bool filled = false;

        osg::ref_ptr<osg::Geometry> Draw(const std::vector<osg::Vec3d>& vertices, float width, bool isSettled,
                                         const AxHeightSource& ground);
        void LayOn(const std::vector<osg::Vec3d>& vertices, const AxHeightSource& ground);
    };
    Part own;
    Part inner;
    std::unique_ptr<AxShapeClamp> clamp;
};

osg::ref_ptr<osg::Geometry> AxShapeDrawing::Part::Draw(const std::vector<osg::Vec3d>& vertices, float width,
                                                       bool isSettled, const AxHeightSource& ground)
{
    surface.SetVertices(vertices, closed, filled, ground);
    if (surface.Mesh().points.empty())
        return {};
    // While it is edited the shape changes with each move of the mouse.
    if (isSettled)
        surface.Refine(ground);
    const osg::ref_ptr<AxWorldGeometry> drawn = DrawSurface(surface, closed, edge, fill, width);
    shape = drawn;
    return drawn;
}

void AxShapeDrawing::Part::LayOn(const std::vector<osg::Vec3d>& vertices, const AxHeightSource& ground)
{
    osg::ref_ptr<AxWorldGeometry> drawn;
    if (!shape.lock(drawn) || drawn->getNumParents() == 0)
        return;
    surface.ForgetHeights();
    surface.SetVertices(vertices, closed, filled, ground);
    surface.Refine(ground);
    drawn->SetShape(surface.Mesh(), closed, edge, fill);
}

void CAxHandleAdapter::prepareDrawing()
{
    d->featureNode->setStateSet(ShapeState());

    auto* text = d->style.getOrCreate<TextSymbol>();
    text->font() = "msyh.ttc";
    text->alignment() = TextSymbol::ALIGN_CENTER_CENTER;
    text->encoding() = TextSymbol::ENCODING_UTF8;
    text->size() = namePixels;
    text->fill()->color() = osgEarth::Symbology::Color::White;
    text->halo()->color() = osgEarth::Symbology::Color(0.0f, 0.0f, 0.0f, 0.85f);
    text->haloOffset() = 0.08f;

    d->lockNode = new osg::Group;
    d->lockNode->setNodeMask(0);
    d->drawing = std::make_shared<AxShapeDrawing>();
}

osg::ref_ptr<osg::Geometry> CAxHandleAdapter::CreateGeom(osg::Vec4f edge, osg::Vec4f fill, float width,
                                                         const osgEarth::Symbology::Geometry& points,
                                                         bool closed, bool filled)
{
    AxShapeSurface surface;
    surface.SetVertices(points.asVector(), closed, filled && HasColor(fill), GroundOf(d->viewer));
    return DrawSurface(surface, closed && points.size() > 2, edge, fill, width);
}

osg::ref_ptr<osg::Geometry> CAxHandleAdapter::CreateOwnGeom(osg::Vec4f edge, osg::Vec4f fill, float width)
{
    const std::vector<osg::Vec3d> vertices = Outline();
    if (vertices.size() < 2)
        return {};
    AxShapeDrawing::Part& own = d->drawing->own;
    own.edge = edge;
    own.fill = fill;
    own.closed = IsOutlineClosed() && vertices.size() > 2;
    own.filled = own.closed && HasColor(fill);
    osg::ref_ptr<osg::Geometry> shape =
        own.Draw(vertices, width, d->operation == OperationIdle, GroundOf(d->viewer));
    if (shape)
        keepOnGround();
    return shape;
}

osg::ref_ptr<osg::Geometry> CAxHandleAdapter::CreateInnerGeom(osg::Vec4f edge, float width)
{
    const std::vector<osg::Vec3d> vertices = InnerLine();
    if (vertices.size() < 2)
        return {};
    d->drawing->inner.edge = edge;
    return d->drawing->inner.Draw(vertices, width, d->operation == OperationIdle, GroundOf(d->viewer));
}

void CAxHandleAdapter::keepOnGround()
{
    AxShapeDrawing& drawing = *d->drawing;
    osgEarth::MapNode* mapNode = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    if (!drawing.clamp && mapNode)
        drawing.clamp =
            std::make_unique<AxShapeClamp>(mapNode->getTerrain(), [this] { return layOnGround(); });
    if (!drawing.clamp)
        return;
    drawing.clamp->SetExtent(drawing.own.surface.Normals());
    if (d->operation != OperationIdle)
        drawing.clamp->Ask();
}

// The ground below the shape has changed, or an edit has ended. False while it
// is edited, when everything is about to change anyway.
bool CAxHandleAdapter::layOnGround()
{
    if (d->operation != OperationIdle)
        return false;
    if (!FindDrawable("Feature"))
        return true;
    GetBlockElevation();
    d->drawing->own.LayOn(Outline(), GroundOf(d->viewer));
    d->drawing->inner.LayOn(InnerLine(), GroundOf(d->viewer));
    if (d->lockNode->getNodeMask() != 0)
        DrawBlockLock();
    if (const auto place = d->nameLabel ? namePlace() : std::nullopt)
        d->nameLabel->setPosition(*place);
    // On models its handles do not follow tiles by themselves.
    if (d->anchorEditor)
        d->anchorEditor->Update();
    return true;
}

osg::ref_ptr<osg::Geometry> CAxHandleAdapter::CreateQuadGeom(osg::Vec3f corner, osg::Vec3f widthVector,
                                                             osg::Vec3f heightVector, osg::Vec4f color)
{
    osg::ref_ptr<osg::Geometry> quad = osg::createTexturedQuadGeometry(corner, widthVector, heightVector);
    quad->setUseDisplayList(false);
    quad->setUseVertexBufferObjects(true);
    quad->setColorArray(new osg::Vec4Array(1, &color), osg::Array::BIND_OVERALL);
    return quad;
}

void CAxHandleAdapter::AddEdgePrimitiveSet(osg::Geometry* geometry, int first, int count, osg::Vec4f color,
                                           bool closed)
{
    if (!HasVertices(geometry, first, count))
        return;
    osg::Vec4Array& colors = VertexColors(*geometry);
    std::fill_n(colors.begin() + first, count, color);
    geometry->addPrimitiveSet(new osg::DrawArrays(closed ? GL_LINE_LOOP : GL_LINE_STRIP, first, count));
}

void CAxHandleAdapter::AddFillPrimitiveSet(osg::Geometry* geometry, int first, int count, osg::Vec4f edge,
                                           osg::Vec4f fill, bool closed)
{
    if (!HasVertices(geometry, first, count))
        return;
    if (count > 2 && HasColor(fill)) {
        // A vertex has one colour, so the fill gets vertices of its own.
        auto& points = static_cast<osg::Vec3Array&>(*geometry->getVertexArray());
        const auto begin = static_cast<unsigned>(points.size());
        const auto size = static_cast<unsigned>(count);
        const AxRingFill triangles = AxFillRing(InTheirPlane(points, static_cast<unsigned>(first), size));
        const auto extend = [&](osg::Vec3Array& array) {
            array.reserve(array.size() + size + triangles.crossings.size());
            for (unsigned i = 0; i < size; ++i)
                array.push_back(array[static_cast<unsigned>(first) + i]);
            for (const AxRingFill::Crossing& crossing : triangles.crossings) {
                osg::Vec3d at;
                for (std::size_t i = 0; i < crossing.of.size(); ++i)
                    at += osg::Vec3d(array[begin + crossing.of[i]]) * crossing.weight[i];
                array.push_back(osg::Vec3f(at));
            }
            array.dirty();
        };
        extend(points);
        // What single precision leaves over of world coordinates goes along.
        for (unsigned i = 0; i < geometry->getNumVertexAttribArrays(); ++i)
            if (auto* rest = dynamic_cast<osg::Vec3Array*>(geometry->getVertexAttribArray(i));
                rest && rest->size() == begin)
                extend(*rest);
        osg::Vec4Array& colors = VertexColors(*geometry);
        std::fill(colors.begin() + begin, colors.end(), fill);
        osg::ref_ptr<osg::DrawElementsUInt> elements = new osg::DrawElementsUInt(GL_TRIANGLES);
        for (const unsigned index : triangles.triangles)
            elements->push_back(begin + index);
        // Below lines that are there already.
        geometry->insertPrimitiveSet(0, elements);
        geometry->dirtyBound();
    }
    AddEdgePrimitiveSet(geometry, first, count, edge, closed);
}

osg::ref_ptr<osg::Image> CAxHandleAdapter::FromQImage(const QString& path)
{
    return AxSceneImage(path);
}

osg::Geometry* CAxHandleAdapter::FindDrawable(const std::string& name) const
{
    for (unsigned i = 0; d->featureNode && i < d->featureNode->getNumDrawables(); ++i)
        if (d->featureNode->getDrawable(i)->getName() == name)
            return d->featureNode->getDrawable(i)->asGeometry();
    return nullptr;
}

std::optional<osg::Vec3d> CAxHandleAdapter::labelPlace() const
{
    // The accessors are virtual for subclasses that keep their vertices elsewhere.
    auto* self = const_cast<CAxHandleAdapter*>(this);
    return ShapeKind().edges == AxShapeKind::Edges::Open ? AxMiddleOfLine(self->GetAnchor())
                                                         : AxLabelPlace(self->Outline());
}

std::optional<osgEarth::GeoPoint> CAxHandleAdapter::namePlace() const
{
    const osgEarth::SpatialReference* srs = d->viewer ? d->viewer->Scene().MapSRS() : nullptr;
    const auto place = labelPlace();
    if (!srs || !place)
        return std::nullopt;
    if (d->viewer->Objects().Aids().clampToModels) {
        QList<osg::Vec3d> above{osg::Vec3d(place->x(), place->y(), std::numeric_limits<double>::quiet_NaN())};
        d->viewer->Scene().GetElevations(above);
        if (std::isfinite(above.front().z()))
            return osgEarth::GeoPoint(srs->getGeographicSRS(), above.front(), osgEarth::ALTMODE_ABSOLUTE);
    }
    return osgEarth::GeoPoint(srs->getGeographicSRS(), *place, osgEarth::ALTMODE_RELATIVE);
}

void CAxHandleAdapter::DrawNameLabel()
{
    const std::vector<osg::Vec3d> points = Outline();
    std::vector<CAxPoint2D> metres;
    metres.reserve(points.size());
    for (const osg::Vec3d& point : points)
        metres.emplace_back(point.x(), point.y());
    d->segment = LatLng2UTM(metres, metres) && isAreaCanSegment(metres, segmentSize);

    osgEarth::MapNode* mapNode = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    const CAxBlock* block = GetContainedBlock();
    const std::string name = block ? NameOnMap(block->GetBlockName()) : std::string();
    const auto place = namePlace();
    const bool isShown = d->nameLabel ? d->nameLabel->getNodeMask() != 0 : d->visible;
    osg::ref_ptr<LabelNode> label;
    if (mapNode && d->drawGroup && place && !name.empty()) {
        if (d->nameLabel && d->nameLabel->text() == name && d->drawGroup->containsNode(d->nameLabel)) {
            d->nameLabel->setPosition(*place);
            return;
        }
        label = new LabelNode(mapNode, *place, name, d->style);
        label->setName("BlockName");
        label->setPriority(namePriority);
        label->setDynamic(true);
        label->setNodeMask(isShown ? ~0u : 0u);
    }
    if (d->nameLabel)
        while (d->nameLabel->getNumParents() > 0)
            d->nameLabel->getParent(0)->removeChild(d->nameLabel);
    d->nameLabel = label;
    if (d->nameLabel)
        d->drawGroup->addChild(d->nameLabel);
}

void CAxHandleAdapter::DrawBlockLock()
{
    d->lockNode->removeChildren(0, d->lockNode->getNumChildren());
    const auto place = labelPlace();
    if (!place || !d->drawGroup || !d->viewer)
        return;
    if (!d->drawGroup->containsNode(d->lockNode))
        d->drawGroup->addChild(d->lockNode);
    QList<osg::Vec3d> positions{*place};
    d->viewer->Scene().GetElevations(positions);
    for (const osg::Vec3d& position : qAsConst(positions))
        AddOneLock(position);
}

void CAxHandleAdapter::AddOneLock(const osg::Vec3d& lngLatAlt)
{
    osgEarth::MapNode* mapNode = d->viewer ? d->viewer->Scene().MapNode() : nullptr;
    const osg::ref_ptr<osg::Image> picture = FromQImage(lockPicture);
    if (!mapNode || !picture)
        return;
    const osg::ref_ptr<osg::Geometry> icon =
        CreateQuadGeom({-lockHalfSize, -lockHalfSize, 0.0f}, {2.0f * lockHalfSize, 0.0f, 0.0f},
                       {0.0f, 2.0f * lockHalfSize, 0.0f}, osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f));
    icon->setName("Lock");
    icon->setCullingActive(false);
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(picture);
    texture->setResizeNonPowerOfTwoHint(false);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
    icon->getOrCreateStateSet()->setTextureAttributeAndModes(0, texture);
    auto* layout = osgEarth::ScreenSpaceLayoutData::getOrCreate(icon);
    layout->setPriority(namePriority);
    layout->setPixelOffset(osg::Vec2s(0, lockShift));

    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->setCullingActive(false);
    geode->addDrawable(icon);
    osgEarth::ScreenSpaceLayout::activate(geode->getOrCreateStateSet());
    // Where the engine draws by programs alone, the texture needs one.
    osgEarth::Registry::shaderGenerator().run(geode);
    osg::ref_ptr<GeoPositionNode> anchor =
        new GeoPositionNode(mapNode, osgEarth::GeoPoint(d->viewer->Scene().MapSRS()->getGeographicSRS(),
                                                        lngLatAlt, osgEarth::ALTMODE_ABSOLUTE));
    anchor->getPositionAttitudeTransform()->addChild(geode);
    d->lockNode->addChild(anchor);
}

void CAxHandleAdapter::DropRubberBand()
{
    if (osg::Drawable* band = FindDrawable("Stipple"))
        d->featureNode->removeDrawable(band);
}
