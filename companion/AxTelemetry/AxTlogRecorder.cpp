#include <AxTelemetry/AxTelemetryLog.h>
#include <AxTelemetry/AxTlogRecorder.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QRegularExpression>
#include <QtEndian>

namespace {
constexpr qint64 waitingMs = 1000;
constexpr int waitingBytes = 1 << 16;
constexpr int mostNamesakes = 1000;

QString RecorderText(const char* text)
{
    return QCoreApplication::translate("AxTlogRecorder", text);
}

/// A name of a file on any system.
QString FileNamePart(QString name)
{
    return name.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9.]+")), QStringLiteral("-"));
}
} // namespace

AxTlogRecorder::~AxTlogRecorder()
{
    Finish();
}

void AxTlogRecorder::Start(const QString& folder, const QString& name)
{
    Finish();
    m_folder = folder;
    m_name = name;
    m_path.clear();
    m_fault.clear();
}

void AxTlogRecorder::Add(const char* frame, int size, qint64 time)
{
    if (m_folder.isEmpty() || !m_fault.isEmpty() || (!m_file.isOpen() && !open(time)))
        return;
    if (m_waiting.isEmpty())
        m_waitingSince = time;
    const quint64 stamp = qToBigEndian(static_cast<quint64>(time) * 1000);
    m_waiting.append(reinterpret_cast<const char*>(&stamp), sizeof stamp).append(frame, size);
    if (m_waiting.size() >= waitingBytes)
        write();
}

void AxTlogRecorder::Tick(qint64 time)
{
    if (time - m_waitingSince >= waitingMs)
        write();
}

void AxTlogRecorder::Finish()
{
    write();
    m_file.close();
    m_folder.clear();
}

bool AxTlogRecorder::open(qint64 time)
{
    const QDir folder(m_folder);
    const QString stem =
        QDateTime::fromMSecsSinceEpoch(time, Qt::UTC).toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'_")) +
        FileNamePart(m_name);
    folder.mkpath(QStringLiteral("."));
    for (int i = 1; i <= mostNamesakes; ++i) {
        const QString namesake = i == 1 ? QString() : QStringLiteral("-%1").arg(i);
        m_file.setFileName(folder.absoluteFilePath(stem + namesake + QStringLiteral(".tlog")));
        if (m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
            m_path = m_file.fileName();
            return true;
        }
        if (!m_file.exists())
            break;
    }
    m_fault = RecorderText(QT_TRANSLATE_NOOP("AxTlogRecorder", "The flight is not recorded: %1: %2"))
                  .arg(QDir::toNativeSeparators(m_file.fileName()), m_file.errorString());
    qCWarning(axTelemetryLog, "%s", qUtf8Printable(m_fault));
    return false;
}

void AxTlogRecorder::write()
{
    if (m_waiting.isEmpty())
        return;
    // Of a disk that is nearly full a part is taken first; only the next attempt says why.
    qint64 done = 0;
    for (qint64 part = 0; done < m_waiting.size() && part >= 0; done += qMax<qint64>(part, 0))
        part = m_file.write(m_waiting.constData() + done, m_waiting.size() - done);
    if (done < m_waiting.size()) {
        m_fault = RecorderText(QT_TRANSLATE_NOOP("AxTlogRecorder", "The record ends here: %1: %2"))
                      .arg(QDir::toNativeSeparators(m_path), m_file.errorString());
        qCWarning(axTelemetryLog, "%s", qUtf8Printable(m_fault));
        m_file.close();
    }
    m_waiting.clear();
}
