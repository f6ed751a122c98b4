// The viewer as the map on which things are measured.
#include "interaction/measure/AxMeasurements.h"
#include "viewer/AxViewerPrivate.h"

AxMeasurements* CAxEarthViewer::GetMeasurements() const
{
    return d->measurements.get();
}
