#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QObject>

#include <optional>

class AxObjectBook;
class AxScene;
class AxToolInHand;
class AxZoneAnswers;
class CAxEarthViewer;
class QGraphicsView;

/**
 * What the rooms below the viewer reach of it. It lives exactly as long as the
 * viewer: whoever may outlive that holds a QPointer. GUI thread, except where a
 * part says otherwise.
 */
class AxViewerParts : public QObject
{
public:
    virtual AxScene& Scene() = 0;
    virtual AxObjectBook& Objects() = 0;
    virtual AxToolInHand& Tools() = 0;
    /// Null before start-up has loaded the zones, and after CAxEarthViewer::ReleaseAll().
    virtual AxZoneAnswers* Zones() = 0;
    /// The viewer as a widget, with its signals and slots: the parent of boxes.
    virtual QGraphicsView* Widget() = 0;
    /// The manipulator as the source of the mouse's signals.
    virtual QObject* Mouse() = 0;
    /// Whether the handles that turn the approach to a landing point can be grabbed; nothing without them.
    virtual std::optional<bool> AngleHandlesShown() const = 0;
    /// The switch of the voice is in that position: `off` mutes.
    virtual void SwitchVoice(bool off) = 0;
    /// Flies to where all visible blocks are seen.
    virtual void ShowAllBlocks() = 0;
    /// Of all aircraft.
    virtual void ShowShootPoints(bool shown) = 0;
    /// Follows the aircraft in focus, or lets go of it.
    virtual void SwitchAircraftView() = 0;
};

/// Null for null. An object that is no viewer has none.
AXEARTHVIEWER_EXPORT AxViewerParts* AxPartsOf(CAxEarthViewer* viewer);
AXEARTHVIEWER_EXPORT AxViewerParts* AxPartsOf(QObject* viewer);
