// Which object each measuring tool draws.
#include "interaction/measure/AxMeasurements.h"
#include "interaction/measure/CAxMearsureToolHandler.h"
#include "interaction/measure/CAxMeasureAltitudeHandler.h"
#include "interaction/measure/CAxMeasureArea.h"
#include "interaction/measure/CAxProjCoordsToolHandler.h"
#include "interaction/objects/AxShapeFactories.h"

namespace {
template <typename Tool> AxShapeFactories::Factory Measuring(AxMeasurements& measurements)
{
    return [&measurements](CAxEarthViewer* viewer, QObject* parent) -> CAxHandleAdapter* {
        return new Tool(viewer, parent, measurements);
    };
}
} // namespace

void AxAddMeasureTools(AxShapeFactories& factories, AxMeasurements& measurements)
{
    factories.SetOwn(ToolMeasureDistance, Measuring<CAxMearsureToolHandler>(measurements));
    factories.SetOwn(ToolMeasureArea, Measuring<CAxMeasureArea>(measurements));
    factories.SetOwn(ToolProjCoords, Measuring<CAxProjCoordsToolHandler>(measurements));
    factories.SetOwn(ToolMeasureAltitude, Measuring<CAxMeasureAltitudeHandler>(measurements));
}
