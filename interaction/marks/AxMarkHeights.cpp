#include "interaction/marks/AxMarkHeights.h"

AxMarkHeights::AxMarkHeights()
{
    thread.setMaxThreadCount(1);
}

AxMarkHeights::~AxMarkHeights()
{
    isOff = true;
    thread.clear();
    thread.waitForDone();
}

void AxMarkHeights::Ask(const osgEarth::Map* map, const QVector<AxMarkHeight>& places)
{
    if (!map || places.isEmpty())
        return;
    if (!known || asked.get() != map) {
        asked = map;
        known.emplace(map);
    }
    thread.start([this, places, heights = *known] {
        QVector<AxMarkHeight> found;
        for (AxMarkHeight place : places) {
            if (isOff)
                return;
            if (const auto height = heights(place.longitude, place.latitude)) {
                place.altitude = *height;
                found += place;
            }
        }
        QMetaObject::invokeMethod(
            this, [this, found] { emit Answered(found); }, Qt::QueuedConnection);
    });
}
