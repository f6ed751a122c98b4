#include <AxBaseUI/AxToolTable.h>

EToolKind GetToolKind(EToolType type)
{
    return AxToolRowOf(type).kind;
}
