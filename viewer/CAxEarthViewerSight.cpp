// The viewer as the place of what can be seen from where.
#include "viewer/AxViewerPrivate.h"

AxSightAnalysis* CAxEarthViewer::GetSightAnalysis() const
{
    return d->sightAnalysis.get();
}
