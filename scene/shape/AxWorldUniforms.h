#pragma once
#include <osg/State>
#include <osg/Vec3d>

/// Tells the program that is applied where the eye is: `axEyeHigh` and `axEyeLow`,
/// together the eye in geocentric metres, from the model-view matrix of the state.
/// Returns that place.
osg::Vec3d AxSetEyeUniforms(osg::State& state);
