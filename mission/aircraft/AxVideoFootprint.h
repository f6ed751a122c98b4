#pragma once
#include "mission/aircraft/AxFootprintRays.h"
#include "scene/base/AxEarthViewerExport.h"
#include "scene/shape/AxWorldGeometry.h"

#include <osg/Group>

#include <QObject>

#include <deque>

/// What the video camera of an aircraft sees of the ground, as an outline on it. Reference-counted; held by
/// its aircraft and the scene. GUI thread.
class AXEARTHVIEWER_EXPORT AxVideoFootprint : public QObject, public osg::Group
{
    Q_OBJECT
public:
    AxVideoFootprint();

    /// The newest sample; the outline is that of this one.
    void Add(const AxVideoSight& sight, const AxGroundHeights& heights);
    /// Without a picture there is no outline.
    void SetShown(bool shown);
    /// Forgets all samples.
    void Clear();
    const AxVideoOutline& Outline() const { return outline; }
    /// Of the newest sample, metres; 0 for none.
    double Width() const { return outline.width; }

    const char* libraryName() const override { return "ax"; }
    const char* className() const override { return "AxVideoFootprint"; }

protected:
    ~AxVideoFootprint() override;

private:
    void draw();

    std::deque<AxVideoSight> samples; // the newest last
    AxVideoOutline outline;
    bool isShown = true;
    const osg::ref_ptr<AxWorldGeometry> line;
};
