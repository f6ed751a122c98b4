#include "viewer/AxPlaceNames.h"

#include <osgEarth/Map>
#include <osgEarth/ModelLayer>

namespace {
// From further away only capitals are named, from nearer the cities.
constexpr double capitalRangeMetres = 5000000.0;

void ShowLayer(const osgEarth::Map& map, const char* name, bool visible)
{
    osgEarth::ModelLayer* layer = map.getModelLayerByName(name);
    if (layer && layer->getVisible() != visible)
        layer->setVisible(visible);
}
} // namespace

AxPlaceNames AxPlaceNames::At(double range)
{
    return {range > capitalRangeMetres, range <= capitalRangeMetres};
}

void AxPlaceNames::Show(const osgEarth::Map& map) const
{
    ShowLayer(map, "Capital", capital);
    ShowLayer(map, "City", city);
    ShowLayer(map, "County", county);
    ShowLayer(map, "Town", town);
}
