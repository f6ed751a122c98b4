#pragma once
#include <mutex>
#include <osg/observer_ptr>

namespace osgEarth {
/// An object that several owners share; it is made by the first and deleted
/// with the last. Graphics objects must not be kept in plain statics: a context
/// that closes deletes what they hold in OpenGL, and the next context gets its number.
/// `Tag` tells uses of one type apart. Any thread.
template <typename T, typename Tag, typename Make> osg::ref_ptr<T> sharedWhileUsed(Make make)
{
    static std::mutex mutex;
    static osg::observer_ptr<T> known;
    std::lock_guard<std::mutex> lock(mutex);
    osg::ref_ptr<T> shared;
    if (!known.lock(shared)) {
        shared = make();
        known = shared.get();
    }
    return shared;
}
} // namespace osgEarth
