#pragma once
#include <osgEarth/SpatialReference>

#include <mutex>

namespace osgEarth {
namespace projector {
/// Transforms points through PROJ in place between two systems that are not
/// geocentric. Each thread has transformers of its own, because one must not
/// be used by two. `ok` gets 1 or 0 a point. False when there is no
/// transformation at all.
bool transform(const SpatialReference* from, const SpatialReference* to, size_t count, double* x, double* y,
               double* z, int* ok);

/// OGR's systems change inside even when they are only read; whoever touches
/// the handle of a shared one holds this.
std::recursive_mutex& handleMutex();
} // namespace projector
} // namespace osgEarth
