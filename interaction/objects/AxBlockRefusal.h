#pragma once
#include "interaction/objects/AxVerdict.h"

#include <QStringList>

class AxViewerParts;
class QWidget;

/// Why a block is refused. GUI thread only.
namespace AxBlockRefusal {

// In words.
QString TooFewPointsText();
QString InvalidText();
QString OverZonesText();

// Told to the operator in a modal box, which lets events run meanwhile; they return the verdict.
AxVerdict TooFewPoints(QWidget* boxParent);
AxVerdict Invalid(QWidget* boxParent);
/// The box names the zones, and they blink on the map behind it.
AxVerdict OverZones(AxViewerParts& viewer, const QStringList& zoneIDs);

} // namespace AxBlockRefusal
