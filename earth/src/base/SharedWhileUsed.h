#pragma once
#include <mutex>
#include <osg/observer_ptr>

namespace osgEarth {
/// The one object of a kind that several owners share for as long as any of
/// them lives. Graphics objects must not be kept in plain statics: a context
/// that is closed takes what they hold with it, and its number goes to the next.
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
