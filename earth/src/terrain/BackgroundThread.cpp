// Calls the operating system itself: no library at hand sets the priority of one
// thread on Linux.
#include "terrain/BackgroundThread.h"

#if defined(_WIN32)
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#elif defined(__linux__)
#include <sys/resource.h>
#endif

namespace osgEarth {
void makeThisThreadYieldToFrames()
{
    static thread_local bool done = false;
    if (done)
        return;
    done = true;
#if defined(_WIN32)
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
#elif defined(__linux__)
    // A tenth of the weight of a thread at the usual priority. On Linux the "process" 0 is the thread.
    constexpr int kNicer = 10;
    setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, 0) + kNicer);
#endif
}
} // namespace osgEarth
