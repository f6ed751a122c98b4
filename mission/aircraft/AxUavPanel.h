#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/AutoTransform>
#include <osg/Geode>
#include <osg/ref_ptr>
#include <osgText/Text>

#include <QString>

/// A longitude or latitude as the panel shows it: six decimals in ten characters, after "-" or a blank.
AXEARTHVIEWER_EXPORT QString AxPanelNumber(double degrees);

/// A text beside an aircraft, turned to the screen and as large on it wherever the aircraft is: a dark panel
/// to the upper right, and a line that leads to it. GUI thread.
class AXEARTHVIEWER_EXPORT AxUavPanel
{
public:
    AxUavPanel();

    /// To be put where the aircraft is; never null.
    osg::AutoTransform* Node() const { return root; }
    void SetText(const QString& text);
    QString Text() const { return shown; }
    /// Over what else is drawn on the map.
    void ResetRenderSort();

private:
    const osg::ref_ptr<osg::AutoTransform> root;
    const osg::ref_ptr<osg::Geode> geode;
    const osg::ref_ptr<osgText::Text> letters;
    QString shown;
};
