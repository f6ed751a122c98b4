#pragma once
#include <AxData/tiles/AxTileEstimate.h>
#include <AxData/tiles/AxTileFetch.h>

#include <QObject>
#include <QThread>

/// Fetches and estimates beside the GUI thread, one thing at a time. Its end calls off what is under way;
/// what came is kept. GUI thread.
class OfflineSaver : public QObject
{
    Q_OBJECT
public:
    explicit OfflineSaver(QObject* parent);
    ~OfflineSaver() override;

    bool IsBusy() const { return fetch != nullptr || estimate != nullptr; }
    bool IsFetching() const { return fetch != nullptr; }
    /// Nothing while it is busy.
    void Fetch(const AxTileJob& job);
    void Estimate(const AxTileJob& job);
    /// Ended() follows where a fetch is under way; an estimate is forgotten.
    void CallOff();

signals:
    void Progressed(const AxTileProgress& progress);
    void Ended(AxTileEnd end, const QString& why, const AxTileProgress& progress);
    void Estimated(const AxTileGuess& guess);

private:
    QThread thread;
    // They live in the thread.
    AxTileFetch* fetch = nullptr;
    AxTileEstimate* estimate = nullptr;
};
