// Calls the operating system itself: neither Qt nor the standard library blocks a signal for one thread.
#include "viewer/speech/AxBrokenPipe.h"

#if defined(__unix__) || defined(__APPLE__)
#include <csignal>

void AxSurviveBrokenPipes()
{
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    // Fails for an unknown "how" only.
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
}
#else
void AxSurviveBrokenPipes() {}
#endif
