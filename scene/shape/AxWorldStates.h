#pragma once
#include "scene/shape/AxShapeBatch.h"

#include <osg/StateSet>

#include <map>

/// What shapes are drawn with, shared by all of them for as long as there are any. GUI thread, between
/// frames.
struct AxWorldStates : public osg::Referenced
{
    AxWorldStates();

    static osg::ref_ptr<AxWorldStates> Shared();

    /// One for all shapes of a width, in pixels.
    osg::StateSet* OfWidth(float pixels);

    osg::ref_ptr<AxShapeBatches> batches = new AxShapeBatches;
    std::map<float, osg::ref_ptr<osg::StateSet>> widths;
    osg::ref_ptr<osg::StateSet> all[2][2]; // by whether all of it is in sight, and whether it is coarse
};
