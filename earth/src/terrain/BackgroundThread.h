#pragma once
namespace osgEarth {
/// Gives the calling thread a lower priority, once and for all: a frame that is
/// being drawn goes first, and tiles are made in the time between. It still gets
/// its share of a busy processor, so that a picture is always completed. Where
/// the system has no priorities of threads, nothing happens.
void makeThisThreadYieldToFrames();
} // namespace osgEarth
