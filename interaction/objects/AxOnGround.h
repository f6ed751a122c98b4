#pragma once
#include "scene/AxScene.h"

#include <osg/Vec3d>

#include <QList>

#include <algorithm>
#include <vector>

/// The places (degrees, degrees, metres) with the altitudes of the ground as it is known now; where nothing
/// is known they keep their own.
inline std::vector<osg::Vec3d> AxOnGround(const AxScene& scene, std::vector<osg::Vec3d> places)
{
    QList<osg::Vec3d> sampled;
    sampled.reserve(static_cast<int>(places.size()));
    std::copy(places.begin(), places.end(), std::back_inserter(sampled));
    scene.GetElevations(sampled);
    std::copy(sampled.begin(), sampled.end(), places.begin());
    return places;
}
