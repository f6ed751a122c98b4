// The viewer as the place of 3-D models.
#include "viewer/AxViewerPrivate.h"

AxModelLayers* CAxEarthViewer::GetModelLayers() const
{
    return d->modelLayers.get();
}
