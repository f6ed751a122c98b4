#pragma once
#include <AxAlgorthm/AxMissionTypes.h>

#include <osg/Group>
#include <osg/ref_ptr>

/// A model of an aircraft of that kind, metres: x to the right, y ahead, z up, its middle at the origin. What
/// is ahead is red, what is behind is dark, so that one sees from afar which way it flies. Null for a value
/// that is no kind of aircraft.
osg::ref_ptr<osg::Group> MakeAirframe(EPlaneType type);
