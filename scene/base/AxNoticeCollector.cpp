#include "scene/base/AxNoticeCollector.h"

#include <utility>

namespace {
AxNoticeCollector* innermost = nullptr;
} // namespace

AxNoticeCollector::AxNoticeCollector() : outer(std::exchange(innermost, this)) {}

AxNoticeCollector::~AxNoticeCollector()
{
    innermost = outer;
}

QStringList AxNoticeCollector::Take()
{
    return std::exchange(texts, {});
}

bool AxNoticeCollector::Collect(const QString& text, const QString& details)
{
    if (innermost)
        innermost->texts += (text + QLatin1Char(' ') + details).simplified();
    return innermost != nullptr;
}
