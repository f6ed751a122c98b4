#pragma once
#include <osg/ref_ptr>
#include <osg/StateSet>

/// How blocks and routes are drawn: blended over the ground, whatever lies in front of them, unlit and from
/// both sides. A new one with each call.
osg::ref_ptr<osg::StateSet> AxStateOverGround();
