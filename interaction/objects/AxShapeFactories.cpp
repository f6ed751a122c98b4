#include "interaction/objects/AxShapeFactories.h"
#include "interaction/objects/CAx3DGeometry.h"
#include "interaction/objects/CAxApplyForProhibitedArea.h"

#include <algorithm>

namespace {
template <typename Shape> CAxHandleAdapter* Make(CAxEarthViewer* viewer, QObject* parent)
{
    return new Shape(viewer, parent);
}

// A kind of block, the tool that draws it, and the object that it is: a new kind is one more line.
struct Kind
{
    CAxBlock::EBlockType type;
    EToolType tool;
    CAxHandleAdapter* (*make)(CAxEarthViewer*, QObject*) = nullptr;
};
const Kind kinds[] = {
    {CAxBlock::PolygonBlock, ToolPolygonBlock, &Make<CAx3DGeometry>},
    {CAxBlock::RectangleBlock, ToolRectangleBlock},
    {CAxBlock::StripBlock, ToolStripBlock},
    {CAxBlock::VideoBlock, ToolVideoArea},
    {CAxBlock::MarkPointBlock, ToolMarkPoint},
    {CAxBlock::ProhibitedAreaBlock, ToolProhibitedArea, &Make<CAxApplyForProhibitedArea>},
};
} // namespace

AxShapeFactories::AxShapeFactories()
{
    for (const Kind& kind : kinds)
        if (kind.make)
            factories[kind.tool] = kind.make;
}

void AxShapeFactories::Set(EToolType tool, Factory factory)
{
    factories.erase(tool);
    if (factory) {
        factories[tool] = std::move(factory);
        return;
    }
    for (const Kind& kind : kinds)
        if (kind.tool == tool && kind.make)
            factories[tool] = kind.make;
}

const AxShapeFactories::Factory* AxShapeFactories::Of(EToolType tool) const
{
    const auto found = factories.find(tool);
    return found == factories.end() ? nullptr : &found->second;
}

const AxShapeFactories::Factory* AxShapeFactories::Of(CAxBlock::EBlockType type) const
{
    const auto* kind = std::find_if(std::begin(kinds), std::end(kinds),
                                    [type](const Kind& candidate) { return candidate.type == type; });
    return kind == std::end(kinds) ? nullptr : Of(kind->tool);
}
