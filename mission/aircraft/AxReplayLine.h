#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/CAxVector3D.h>

#include <osg/NodeCallback>
#include <osgEarthAnnotation/FeatureNode>
#include <osgEarthSymbology/Style>

#include <vector>

/// Draws the line of a replayed flight up to the current point, with the update traversal. A long flight is
/// drawn with so many of its points as show its shape. GUI thread.
class AXEARTHVIEWER_EXPORT CAxTrailLingCallBack : public osg::NodeCallback
{
public:
    /// Degrees, degrees and metres in the heights of the map.
    explicit CAxTrailLingCallBack(std::vector<CAxVector3D> points);

    void SetIndex(int index) { current = index; }
    int Index() const { return current; }
    int Count() const { return static_cast<int>(flight.size()); }

    void operator()(osg::Node* node, osg::NodeVisitor* visitor) override;

private:
    void fill(osgEarth::Symbology::Geometry& line) const;

    const std::vector<CAxVector3D> flight;
    std::vector<int> shown; // of the whole flight, ascending
    int current = 0;
    int drawn = 0;
};

/// A flight of the past as one line on the map. Null without a map.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osgEarth::Annotation::FeatureNode>
AxMakeReplayLine(osgEarth::MapNode* map, const osgEarth::Symbology::Style& style,
                 CAxTrailLingCallBack* callback);
