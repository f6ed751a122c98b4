#pragma once

/// Hands memory that was freed, but is kept for later by the C library, back to the operating system. Takes a
/// millisecond when there is little of it and 20 ms when there is much. Any thread; allocations of others
/// wait meanwhile.
void AxGiveBackSpareMemory();
