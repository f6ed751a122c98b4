#include <AxData/project/AxProjectJournal.h>
#include <AxData/project/AxRecoveryWriter.h>

#include <utility>

namespace {
// With the time to write it stays below the second that may be lost.
constexpr int lookAfterMs = 750;
// For edits of which nobody has told, and where writing has failed.
constexpr int lookAnywayMs = 10000;
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
    soon.setInterval(lookAfterMs);
    soon.setTimerType(Qt::PreciseTimer);
    soon.setSingleShot(true);
    seldom.setInterval(lookAnywayMs);
    for (const QTimer* clock : {&soon, &seldom})
        connect(clock, &QTimer::timeout, this, &AxProjectJournal::LookNow);
}

AxProjectJournal::~AxProjectJournal() = default;

void AxProjectJournal::Begin(const QString& projectPath, const AxProject& asSaved)
{
    path = projectPath;
    saved = asSaved;
    seen = asSaved;
    if (writer)
        writer->Clear();
    seldom.start();
    if (std::exchange(isModified, false))
        emit modifiedChanged(false);
}

void AxProjectJournal::Touch()
{
    if (seldom.isActive() && !soon.isActive())
        soon.start();
}

void AxProjectJournal::LookNow()
{
    if (!seldom.isActive())
        return;
    soon.stop();
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
    soon.stop();
    seldom.stop();
    if (writer)
        writer->Clear();
}
