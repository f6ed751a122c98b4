#include "interaction/objects/AxShapeFactories.h"
#include "interaction/objects/CAx3DGeometry.h"
#include "interaction/objects/CAxApplyForProhibitedArea.h"
#include "interaction/objects/CAxOsgDrawLine.h"
#include "interaction/objects/CAxOsgDrawRectange.h"
#include "interaction/objects/CAxOsgDrawVideo.h"

#include <algorithm>

namespace {
template <typename Shape> CAxHandleAdapter* Make(CAxEarthViewer* viewer, QObject* parent)
{
    return new Shape(viewer, parent);
}

using Edges = AxShapeKind::Edges;

// A kind of block: the tool that draws it, what its vertices make, and the object that it is. A new kind is
// one more line.
struct Kind
{
    CAxBlock::EBlockType type;
    EToolType tool;
    AxShapeKind shape;
    CAxHandleAdapter* (*make)(CAxEarthViewer*, QObject*) = nullptr;
};
const Kind kinds[] = {
    {CAxBlock::PolygonBlock, ToolPolygonBlock, {}, &Make<CAx3DGeometry>},
    {CAxBlock::RectangleBlock, ToolRectangleBlock, {Edges::Closed, 4, false}, &Make<CAxOsgDrawRectange>},
    {CAxBlock::StripBlock, ToolStripBlock, {Edges::Open, 2, true}, &Make<CAxOsgDrawLine>},
    {CAxBlock::VideoBlock, ToolVideoArea, {Edges::None, 1, false}, &Make<CAxOsgDrawVideo>},
    {CAxBlock::MarkPointBlock, ToolMarkPoint, {Edges::None, 1, true}},
    {CAxBlock::ProhibitedAreaBlock,
     ToolProhibitedArea,
     {Edges::Closed, 4, false},
     &Make<CAxApplyForProhibitedArea>},
};

const Kind* KindOf(CAxBlock::EBlockType type)
{
    const auto* kind = std::find_if(std::begin(kinds), std::end(kinds),
                                    [type](const Kind& candidate) { return candidate.type == type; });
    return kind == std::end(kinds) ? nullptr : kind;
}
} // namespace

AxShapeKind AxShapeKindOf(CAxBlock::EBlockType type)
{
    const Kind* kind = KindOf(type);
    return kind ? kind->shape : AxShapeKind();
}

AxShapeFactories::AxShapeFactories()
{
    for (const Kind& kind : kinds)
        if (kind.make)
            SetOwn(kind.tool, kind.make);
}

void AxShapeFactories::SetOwn(EToolType tool, const Factory& factory)
{
    own[tool] = factory;
    factories[tool] = factory;
}

void AxShapeFactories::Set(EToolType tool, Factory factory)
{
    factories.erase(tool);
    const auto known = own.find(tool);
    if (factory)
        factories[tool] = std::move(factory);
    else if (known != own.end())
        factories[tool] = known->second;
}

const AxShapeFactories::Factory* AxShapeFactories::Of(EToolType tool) const
{
    const auto found = factories.find(tool);
    return found == factories.end() ? nullptr : &found->second;
}

const AxShapeFactories::Factory* AxShapeFactories::Of(CAxBlock::EBlockType type) const
{
    const Kind* kind = KindOf(type);
    return kind ? Of(kind->tool) : nullptr;
}
