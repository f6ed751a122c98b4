#pragma once
#include "interaction/tools/AxTool.h"

#include <functional>

/// Picks a place near the current object: for a landing, or as a point of interest.
class AxPlaceTool : public AxTool
{
public:
    /// Hears of an accepted place: degrees, degrees, metres.
    using Picked = std::function<void(double lon, double lat, double alt)>;
    AxPlaceTool(AxViewerParts& viewer, Picked hears) : AxTool(viewer), picked(std::move(hears)) {}

    void Pick(const osg::Vec3d& lngLatPos) override;

    /// A place too far from the current object is told to the operator, and is none; so is any without a
    /// current object that can have one.
    static bool CheckPickPositionValid(AxViewerParts& parts, const osg::Vec3d& lngLatPos);

private:
    const Picked picked;
};

/// Takes places only, for whoever listens to the clicks: nothing below the mouse hears of it.
class AxGroundTool : public AxTool
{
public:
    using AxTool::AxTool;

    void Move(AxMouseStep&) override {}
    void Press(AxMouseStep&) override {}
    bool Click(AxMouseStep&) override { return false; }
};

/// Adds the place of a click to the current object as its last vertex.
class AxAddPointTool : public AxTool
{
public:
    using AxTool::AxTool;

    void Pick(const osg::Vec3d& lngLatPos) override;
};
