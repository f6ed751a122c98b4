#include "host/offline/OfflineSaver.h"

OfflineSaver::OfflineSaver(QObject* parent) : QObject(parent)
{
    thread.setObjectName(QStringLiteral("tiles"));
    thread.start(QThread::LowPriority);
}

OfflineSaver::~OfflineSaver()
{
    for (QObject* work : std::initializer_list<QObject*>{fetch, estimate})
        if (work)
            work->deleteLater();
    thread.quit();
    thread.wait();
}

void OfflineSaver::Fetch(const AxTileJob& job)
{
    if (IsBusy())
        return;
    fetch = new AxTileFetch(job);
    fetch->moveToThread(&thread);
    connect(fetch, &AxTileFetch::progressed, this, &OfflineSaver::Progressed);
    connect(fetch, &AxTileFetch::ended, this,
            [this](AxTileEnd end, const QString& why, const AxTileProgress& progress) {
                fetch->deleteLater();
                fetch = nullptr;
                emit Ended(end, why, progress);
            });
    QMetaObject::invokeMethod(fetch, &AxTileFetch::Start, Qt::QueuedConnection);
}

void OfflineSaver::Estimate(const AxTileJob& job)
{
    if (IsBusy())
        return;
    estimate = new AxTileEstimate(job);
    estimate->moveToThread(&thread);
    connect(estimate, &AxTileEstimate::done, this, [this, asked = estimate](const AxTileGuess& guess) {
        // Called off with its answer under way.
        if (estimate != asked)
            return;
        estimate->deleteLater();
        estimate = nullptr;
        emit Estimated(guess);
    });
    QMetaObject::invokeMethod(estimate, &AxTileEstimate::Start, Qt::QueuedConnection);
}

void OfflineSaver::CallOff()
{
    if (fetch)
        QMetaObject::invokeMethod(fetch, &AxTileFetch::Cancel, Qt::QueuedConnection);
    if (estimate) {
        estimate->disconnect(this);
        estimate->deleteLater();
        estimate = nullptr;
    }
}
