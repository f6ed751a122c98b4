#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxZonesUnder.h"
#include "scene/AxViewerParts.h"
#include "scene/AxZoneAnswers.h"
#include "scene/base/AxNotice.h"

#include <QCoreApplication>
#include <QGraphicsView>

namespace {
AxVerdict Tell(QWidget* boxParent, const QString& text, const QString& details = {})
{
    AxShowNotice(boxParent, QCoreApplication::translate("AxBlockRefusal", "Block Information"), text,
                 details);
    return AxVerdict::RefusedAloud;
}
} // namespace

QString AxBlockRefusal::TooFewPointsText()
{
    return QCoreApplication::translate("AxBlockRefusal", "Point count of block is less than 3.");
}

QString AxBlockRefusal::InvalidText()
{
    return QCoreApplication::translate("AxBlockRefusal", "Block is invalid.");
}

QString AxBlockRefusal::OverZonesText()
{
    return QCoreApplication::translate("AxBlockRefusal",
                                       "The current measurement area contains information no-fly area.");
}

AxVerdict AxBlockRefusal::TooFewPoints(QWidget* boxParent)
{
    return Tell(boxParent, TooFewPointsText());
}

AxVerdict AxBlockRefusal::Invalid(QWidget* boxParent)
{
    return Tell(boxParent, InvalidText());
}

AxVerdict AxBlockRefusal::OverZones(AxViewerParts& viewer, const QStringList& zoneIDs)
{
    if (AxZoneAnswers* zones = viewer.Zones())
        zones->FlashZones(zoneIDs);
    return Tell(viewer.Widget(), OverZonesText(), AxZoneDetails(zoneIDs));
}
