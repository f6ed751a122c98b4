#pragma once
#include "mission/routes/AxRouteDetail.h"
#include "mission/routes/AxRouteNumbers.h"
#include "mission/routes/CAxTaskPolygon.h"

#include <optional>

/// What the route shows of its points, by the view.
struct CAxTaskPolygon::State
{
    std::vector<osg::Vec3d> places; // of the route's points, geocentric
    osg::BoundingSphered bound;     // of them
    bool isSmall = false;           // on the screen
    AxRouteNumbers numbers;
    osg::ref_ptr<osg::Geode> usualDot; // of numbers that nobody has coloured
    AxRouteDetail detail;
    std::optional<std::vector<int>> detailShown; // the levels; none until they were chosen
};
