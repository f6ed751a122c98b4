#pragma once
#include "scene/AxShapeKind.h"

#include <AxBaseUI/EToolType.h>
#include <AxData/CAxBlock.h>

#include <functional>
#include <map>

class CAxEarthViewer;
class CAxHandleAdapter;
class QObject;

/// What the vertices of a kind of block make.
AxShapeKind AxShapeKindOf(CAxBlock::EBlockType type);

/// Which object a tool draws, and which tool draws a kind of block. GUI thread.
class AxShapeFactories
{
public:
    using Factory = std::function<CAxHandleAdapter*(CAxEarthViewer* viewer, QObject* parent)>;

    /// What the library draws by itself.
    AxShapeFactories();
    /// A second call for a tool replaces the first; an empty function brings back what the library draws.
    void Set(EToolType tool, Factory factory);
    /// What the library itself draws with a tool, from a room above this one.
    void SetOwn(EToolType tool, const Factory& factory);
    /// Null for a tool, or a kind of block, that nothing draws.
    const Factory* Of(EToolType tool) const;
    const Factory* Of(CAxBlock::EBlockType type) const;

private:
    std::map<EToolType, Factory> own; ///< of the library
    std::map<EToolType, Factory> factories;
};
