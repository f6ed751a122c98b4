#include "viewer/AxGroundRequests.h"

#include <cmath>

AxGroundRequests::AxGroundRequests()
{
    thread.setMaxThreadCount(1);
}

AxGroundRequests::~AxGroundRequests()
{
    isOff = true;
    thread.clear();
    thread.waitForDone();
}

void AxGroundRequests::Ask(osgEarth::Map* map, double longitude, double latitude)
{
    if (!heights || !asked.valid() || asked.get() != map) {
        asked = map;
        heights.emplace(map);
    }
    const bool isPlace = std::isfinite(longitude) && std::abs(latitude) <= 90.0;
    thread.start([this, longitude, latitude, isPlace, ground = *heights] {
        std::optional<double> height;
        if (isPlace && !isOff)
            height = ground(longitude, latitude);
        QMetaObject::invokeMethod(
            this,
            [this, longitude, latitude, height] {
                emit answered(longitude, latitude, height.value_or(0.0), height.has_value());
            },
            Qt::QueuedConnection);
    });
}
