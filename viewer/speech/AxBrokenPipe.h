#pragma once

/// From here on a write of this thread, or of one that it starts, to a peer that is gone fails instead of
/// ending the whole process. For threads that run client libraries which write to their sockets plainly.
void AxSurviveBrokenPipes();
