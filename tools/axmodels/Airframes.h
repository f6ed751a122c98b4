#pragma once
#include <AxAlgorthm/AxMissionTypes.h>

#include <osg/Geode>
#include <osg/ref_ptr>

/// A model of an aircraft of that kind, metres: x to the right, y ahead, z up, its middle at the origin. What
/// is ahead is red, what is behind is dark, so that one sees from afar which way it flies. Null for a value
/// that is no kind of aircraft. One drawable, whose vertices have the colors: many of them are drawn at once.
osg::ref_ptr<osg::Geode> MakeAirframe(EPlaneType type);
