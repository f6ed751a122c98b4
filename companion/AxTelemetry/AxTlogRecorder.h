#pragma once

#include <AxTelemetry/AxTelemetryExport.h>

#include <QByteArray>
#include <QFile>
#include <QString>

/// Writes a .tlog: for each frame the microseconds since 1970 (UTC; eight bytes, the first counts most), then
/// the frame as it came. What was heard is on the disk a second later, so that a crash costs no more. A full
/// disk ends the record, and the flight goes on. Any one thread.
class AXTELEMETRY_EXPORT AxTlogRecorder
{
public:
    AxTlogRecorder() = default;
    /// Finishes.
    ~AxTlogRecorder();
    AxTlogRecorder(const AxTlogRecorder&) = delete;
    AxTlogRecorder& operator=(const AxTlogRecorder&) = delete;

    /// The file is made at the first frame: its name is that time and `name`. An empty folder records
    /// nothing.
    void Start(const QString& folder, const QString& name);
    /// Takes a frame, heard at `time` (milliseconds since 1970, UTC).
    void Add(const char* frame, int size, qint64 time);
    /// Writes what has waited for a second.
    void Tick(qint64 time);
    /// Writes the rest.
    void Finish();

    /// Full path; empty before the first frame. It stays after Finish().
    const QString& File() const { return m_path; }
    /// For people: why nothing is recorded any more. Empty while all is well.
    const QString& Fault() const { return m_fault; }

private:
    bool open(qint64 time);
    void write();

    QFile m_file;
    QByteArray m_waiting;
    qint64 m_waitingSince = 0;
    QString m_folder;
    QString m_name;
    QString m_path;
    QString m_fault;
};
