#include "host/exchange/GeoBlocks.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxUniqueID.h>
#include <AxAlgorthm/AxUnits.h>
#include <AxData/CAxBlockManager.h>

#include <cmath>

namespace {
const QString kindKey = QStringLiteral("kind");
const QString rectangleKind = QStringLiteral("rectangle");
const QString applicationKind = QStringLiteral("application");
constexpr double leastRadius = 1.0;    // metres, of a video block
constexpr double mostRadius = 10000.0; // metres

bool IsVideo(const AxGeoShape& shape)
{
    return shape.kind == AxGeoShape::Point && shape.radius >= leastRadius && shape.radius <= mostRadius;
}

bool HasWidths(const AxGeoShape& shape)
{
    return !std::isnan(shape.leftWidth) && !std::isnan(shape.rightWidth);
}

bool IsTooNarrow(const AxGeoShape& shape)
{
    return shape.kind == AxGeoShape::Line && HasWidths(shape) &&
           shape.leftWidth + shape.rightWidth < GeoBlocks::leastBand;
}

void SetWidths(CAxBlock& block, const AxGeoShape& shape, const GeoChoice& choice)
{
    double left = std::isnan(shape.leftWidth) ? choice.leftWidth : shape.leftWidth;
    double right = std::isnan(shape.rightWidth) ? choice.rightWidth : shape.rightWidth;
    if (left + right < GeoBlocks::leastBand) {
        left = choice.leftWidth;
        right = choice.rightWidth;
    }
    block.GetTaskPara()->SetBandingOffset(left, right);
}
} // namespace

CAxBlock::EBlockType GeoBlocks::TypeOf(const AxGeoShape& shape)
{
    constexpr int cornersOfRectangle = 4;
    if (shape.kind == AxGeoShape::Line)
        return CAxBlock::StripBlock;
    if (shape.kind == AxGeoShape::Point)
        return CAxBlock::VideoBlock;
    const QString kind = shape.attributes.value(kindKey);
    if (shape.points.size() != cornersOfRectangle)
        return CAxBlock::PolygonBlock;
    return kind == rectangleKind     ? CAxBlock::RectangleBlock
           : kind == applicationKind ? CAxBlock::ProhibitedAreaBlock
                                     : CAxBlock::PolygonBlock;
}

bool GeoBlocks::MakeStrip(const GeoChoice& choice)
{
    return choice.leftWidth + choice.rightWidth >= leastBand;
}

QString GeoBlocks::ReasonToLeaveOut(const AxGeoShape& shape, const GeoChoice& choice)
{
    if (shape.kind == AxGeoShape::Point && !IsVideo(shape))
        return tr("a point is no block; the panel of marks imports points");
    if (!shape.holes.isEmpty() && !choice.areHolesFilled)
        return tr("it has holes");
    return {};
}

bool GeoBlocks::LacksWidth(const AxGeoShape& shape)
{
    return shape.kind == AxGeoShape::Line && (!HasWidths(shape) || IsTooNarrow(shape));
}

QString GeoBlocks::NoteOf(const AxGeoShape& shape)
{
    return IsTooNarrow(shape) ? tr("its widths of %1 and %2 make no strip; the widths below are taken")
                                    .arg(AxUnits::Length(shape.leftWidth), AxUnits::Length(shape.rightWidth))
                              : QString();
}

std::vector<std::unique_ptr<CAxBlock>> GeoBlocks::RecordsOf(const QVector<AxGeoShape>& shapes,
                                                            const GeoChoice& choice)
{
    std::vector<std::unique_ptr<CAxBlock>> records;
    for (const AxGeoShape& shape : shapes) {
        if (!ReasonToLeaveOut(shape, choice).isEmpty())
            continue;
        auto block = std::make_unique<CAxBlock>(CreateUniqueID(), TypeOf(shape));
        block->SetBlockName(shape.name);
        block->SetAnchor(shape.points);
        if (shape.kind == AxGeoShape::Line)
            SetWidths(*block, shape, choice);
        if (shape.kind == AxGeoShape::Point)
            block->SetVideoRadius(int(std::lround(shape.radius)));
        records.push_back(std::move(block));
    }
    return records;
}

QVector<AxGeoShape> GeoBlocks::ShapesOf(const QStringList& ids)
{
    QVector<AxGeoShape> shapes;
    for (const QString& id : ids) {
        CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
        if (!block || block->GetAnchor().isEmpty())
            continue;
        AxGeoShape shape;
        shape.name = block->GetBlockName();
        shape.points = block->GetAnchor();
        QString kind = QStringLiteral("polygon");
        switch (block->GetBlockType()) {
        case CAxBlock::StripBlock:
            kind = QStringLiteral("strip");
            shape.kind = AxGeoShape::Line;
            block->GetTaskPara()->GetBandingOffset(shape.leftWidth, shape.rightWidth);
            break;
        case CAxBlock::VideoBlock:
            kind = QStringLiteral("video");
            shape.kind = AxGeoShape::Point;
            shape.points = block->GetAnchor().mid(0, 1);
            shape.radius = block->GetVideoRadius();
            break;
        case CAxBlock::RectangleBlock:
            kind = rectangleKind;
            break;
        case CAxBlock::ProhibitedAreaBlock:
            kind = applicationKind;
            break;
        default:
            break;
        }
        shape.attributes[kindKey] = kind;
        shapes += shape;
    }
    return shapes;
}

QStringList GeoBlocks::NotesOf(const QStringList& ids)
{
    QStringList notes;
    for (const QString& id : ids)
        if (const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
            block && block->GetAnchor().isEmpty())
            notes += tr("\"%1\" has no vertices and was left out.").arg(block->GetBlockName());
    return notes;
}

QString GeoBlocks::SizeOf(const AxGeoShape& shape)
{
    if (shape.kind == AxGeoShape::Point)
        return {};
    if (shape.kind == AxGeoShape::Area) {
        std::vector<CAxPoint2D> ring;
        for (const QPointF& place : shape.points)
            ring.emplace_back(place.x(), place.y());
        return AxUnits::Area(GeodesicRingArea(ring));
    }
    double length = 0.0;
    for (int i = 1; i < shape.points.size(); ++i)
        length += DistanceBetweenTwoLatLng({shape.points[i - 1].x(), shape.points[i - 1].y(), 0.0},
                                           {shape.points[i].x(), shape.points[i].y(), 0.0});
    return AxUnits::Length(length);
}
