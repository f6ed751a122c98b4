#include "scene/base/AxReaderNotices.h"

namespace {
constexpr int mostRemarks = 1000;
thread_local AxReaderNotices* innermostReader = nullptr;
} // namespace

AxReaderNotices::AxReaderNotices() : outer(innermostReader)
{
    innermostReader = this;
}

AxReaderNotices::~AxReaderNotices()
{
    innermostReader = outer;
}

bool AxReaderNotices::Take(const QString& line)
{
    if (!innermostReader)
        return false;
    if (innermostReader->lines.size() < mostRemarks)
        innermostReader->lines += line;
    return true;
}
