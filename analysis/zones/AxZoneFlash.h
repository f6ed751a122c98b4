#pragma once
#include "scene/AxViewerParts.h"

#include <osg/Group>
#include <osg/ref_ptr>
#include <osgEarthSymbology/Geometry>

#include <QList>
#include <QPointer>
#include <QTimer>

/**
 * Makes areas of the ground blink for some seconds, whatever else is shown
 * there. What it draws hangs below the viewer's draw group only meanwhile.
 *
 * Belongs to whoever makes it; outliving the viewer does no harm. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxZoneFlash
{
public:
    explicit AxZoneFlash(AxViewerParts& viewer);
    ~AxZoneFlash();
    AxZoneFlash(const AxZoneFlash&) = delete;
    AxZoneFlash& operator=(const AxZoneFlash&) = delete;

    /// Areas in degrees, polygons or several together. What was blinking gives
    /// way to them; with an empty list nothing blinks any more.
    void Flash(const QList<osg::ref_ptr<const osgEarth::Symbology::Geometry>>& areas);
    /// Ends the blinking at once.
    void Stop();
    bool IsFlashing() const { return shown.valid(); }

private:
    void Turn();

    QPointer<AxViewerParts> viewer;
    QTimer timer;
    osg::ref_ptr<osg::Group> parent;
    osg::ref_ptr<osg::Group> shown;
    int turnsLeft = 0;
};
