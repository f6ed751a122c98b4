#pragma once
#include "scene/base/AxEarthViewerExport.h"

namespace osgEarth {
class Map;
}

/// Which layers of place names are shown from a distance to the focal point, metres.
struct AxPlaceNames
{
    bool capital;
    bool city;
    /// Counties and towns are in the maps, but too many to be shown.
    bool county = false;
    bool town = false;

    AXEARTHVIEWER_EXPORT static AxPlaceNames At(double range);
    /// Shows and hides the layers of those names; a layer that the map lacks is passed over.
    void Show(const osgEarth::Map& map) const;
};
