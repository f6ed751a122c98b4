#pragma once

#include <AxTelemetry/record/AxFlightRecord.h>
#include <AxTelemetry/record/AxReadProgress.h>

#include <QByteArray>
#include <QObject>

#include <memory>
#include <vector>

class QThread;

/// Reads a file of flights in a thread of its own, so that a long one freezes nothing. Owned by whoever made
/// it; GUI thread. Signals come from the event loop, never from within a call.
class AXTELEMETRY_EXPORT AxFlightLoader : public QObject
{
    Q_OBJECT

public:
    explicit AxFlightLoader(QObject* parent = nullptr);
    /// Cancels, and waits for the piece that is being read.
    ~AxFlightLoader() override;

    /// Begins to read as AxReadFlights(). What was being read is cancelled.
    void Load(const QString& path, const QByteArray& key = {});
    /// Nothing more is told of what is being read.
    void Cancel();
    bool IsLoading() const { return m_order != nullptr; }

signals:
    /// How much of the file is read, 0 to 100; each number at most once in a row.
    void signalProgress(int percent);
    /// The file is read, or a fault says why not. Once for each Load() that is not cancelled.
    void signalLoaded(const AxFlightRead& read);

private:
    struct Order;

    std::shared_ptr<Order> m_order; // null when nothing is being read
    std::vector<std::unique_ptr<QThread>> m_threads;
};

/// Reads a .tlog (AxTlogReader.h) or a table of text (AxFlightCsv.h), which of them its first bytes say,
/// whatever its name; the key is for the former. A fault names the file. Any thread.
AXTELEMETRY_EXPORT AxFlightRead AxReadFlights(const QString& path, const AxReadProgress& progress = {},
                                              const QByteArray& key = {});
