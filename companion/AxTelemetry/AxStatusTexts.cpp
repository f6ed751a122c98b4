#include "AxStatusTexts.h"

#include <AxTelemetry/mavlink/AxMavMessages.h>

#include <QString>

#include <algorithm>

namespace {
constexpr qint64 partWaitMs = 1000;
} // namespace

void AxStatusTexts::Take(int component, const AxMavStatustext& part, qint64 time)
{
    const char* const limit = part.text.data() + part.text.size();
    const char* const end = std::find(part.text.data(), limit, '\0');
    const QByteArray text(part.text.data(), static_cast<int>(end - part.text.data()));
    const auto begun = m_begun.find(component);
    const bool isNext = begun != m_begun.end() && part.id_ == begun->second.id && part.id_ != 0 &&
                        part.chunk_seq == begun->second.nextPart;
    if (begun != m_begun.end() && !isNext) {
        const Begun cut = begun->second;
        m_begun.erase(begun);
        tell(cut, false);
    }
    Begun& whole = m_begun[component];
    // A first part that is missing leaves its mark, too.
    if (!isNext && part.id_ != 0 && part.chunk_seq > 0)
        whole.text = "...";
    whole.id = part.id_;
    whole.severity = part.severity;
    whole.nextPart = part.chunk_seq + 1;
    whole.time = time;
    whole.text += text;
    if (part.id_ != 0 && end == limit)
        return; // a part that is full has another one behind it
    const Begun done = whole;
    m_begun.erase(component);
    tell(done, true);
}

void AxStatusTexts::Flush(qint64 time)
{
    for (auto begun = m_begun.begin(); begun != m_begun.end();) {
        if (time - begun->second.time < partWaitMs) {
            ++begun;
            continue;
        }
        const Begun cut = begun->second;
        begun = m_begun.erase(begun);
        tell(cut, false);
    }
}

void AxStatusTexts::tell(const Begun& begun, bool isWhole)
{
    const QString text = QString::fromUtf8(begun.text).simplified();
    if (!text.isEmpty())
        m_tell(std::min(begun.severity, 7), isWhole ? text : text + QStringLiteral("..."));
}
