#include <AxData/project/AxProjectJournal.h>
#include <AxData/project/AxRecoveryWriter.h>

#include <utility>

namespace {
// With the time to write it stays below the second that may be lost.
constexpr int lookEveryMs = 750;
} // namespace

AxProjectJournal::AxProjectJournal(const QString& folder, Look toLook, QObject* parent)
    : QObject(parent), look(std::move(toLook))
{
    const auto tell = [this](const QString& fault) {
        QMetaObject::invokeMethod(
            this, [this, fault] { emit failed(fault); }, Qt::QueuedConnection);
    };
    const auto tellRefusal = [this](const QString& fault) {
        QMetaObject::invokeMethod(
            this, [this, fault] { emit refused(fault); }, Qt::QueuedConnection);
    };
    if (!folder.isEmpty())
        writer = std::make_unique<AxRecoveryWriter>(folder, tell, tellRefusal);
    clock.setInterval(lookEveryMs);
    clock.setTimerType(Qt::PreciseTimer);
    connect(&clock, &QTimer::timeout, this, &AxProjectJournal::LookNow);
}

AxProjectJournal::~AxProjectJournal() = default;

void AxProjectJournal::Begin(const QString& projectPath, const AxProject& asSaved)
{
    path = projectPath;
    saved = asSaved;
    seen = asSaved;
    if (writer)
        writer->Clear();
    clock.start();
    if (std::exchange(isModified, false))
        emit modifiedChanged(false);
}

void AxProjectJournal::LookNow()
{
    if (!clock.isActive())
        return;
    AxProject now = look();
    const bool isSame = AxIsSameWork(now, seen);
    seen = std::move(now);
    if (!isSame) {
        const bool was = std::exchange(isModified, !AxIsSameWork(seen, saved));
        Hand();
        if (was != isModified)
            emit modifiedChanged(isModified);
    } else if (isModified && writer && writer->HasFailed()) {
        Hand();
    }
}

void AxProjectJournal::Hand()
{
    if (writer && isModified)
        writer->Keep(seen, path);
    else if (writer)
        writer->Clear();
}

bool AxProjectJournal::Flush(int milliseconds)
{
    return writer && writer->Wait(milliseconds);
}

void AxProjectJournal::Drop()
{
    clock.stop();
    if (writer)
        writer->Clear();
}
