#pragma once

#include <functional>
#include <osgEarth/Viewpoint>

class CAxEarthViewer;

namespace bench {

/// The four places of the host's tour, in its order.
enum View
{
    kSpace,
    kRange350km,
    kOblique20km,
    kNear500m
};

/// Size that all frame figures are taken at, pixels.
constexpr int kWidth = 1280;
constexpr int kHeight = 800;

/// The viewer on the shipped off-line map, opened at the first call and kept
/// for the life of the process.
CAxEarthViewer& globe();

osgEarth::Viewpoint viewpointOf(View view);

/// Flies there at once and waits until the picture is complete. Ends the
/// process with a message when that takes a minute.
void goTo(View view);

/// Runs the event loop until the condition holds; false after the limit.
bool waitFor(const std::function<bool()>& condition, int milliseconds);

/// Draws and shows one frame; returns its time, milliseconds.
double frameMilliseconds();

/// Median of `count` calls of a function that returns a time.
double median(int count, const std::function<double()>& measure);

/// Closes the viewer; call before QApplication ends.
void close();

} // namespace bench
