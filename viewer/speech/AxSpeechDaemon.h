#pragma once
#include <atomic>

/// Whether speech-dispatcher's daemon takes connections but says nothing on them until the time is over or
/// `cancelled` is set. Its client library, and with it Qt's engine, would wait for such a one for ever and
/// cannot be stopped. A daemon that is not there is not silent: the library finds that out fast, or starts
/// it. Any thread.
bool AxIsSpeechDaemonSilent(const std::atomic<bool>& cancelled, int limitMs);
