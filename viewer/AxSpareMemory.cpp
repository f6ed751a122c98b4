// Calls the C library of Linux itself: the others give back by themselves, or have no such call.
#include "viewer/AxSpareMemory.h"

#include <cstdlib> // says whether this is that library

#if defined(__GLIBC__)
#include <QThreadPool>

#include <malloc.h>

void AxGiveBackSpareMemory()
{
    QThreadPool::globalInstance()->start([] { malloc_trim(0); });
}
#else
void AxGiveBackSpareMemory() {}
#endif
