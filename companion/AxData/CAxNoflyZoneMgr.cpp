#include <AxData/AxSealedFile.h>
#include <AxData/CAxNoflyZoneMgr.h>

#include "AxOpenedInPlace.h"
#include "AxPrivateFolder.h"
#include "AxReplaceFile.h"
#include "AxZoneQuery.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QLoggingCategory>
#include <QMutex>
#include <QSqlDatabase>
#include <QSqlError>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <atomic>

Q_LOGGING_CATEGORY(logData, "ax.data")

namespace {
/// How long a start-up waits for another program's: reading a file takes a tenth of it.
constexpr int lockWaitMs = 2000;
constexpr int lockPollMs = 20;
/// A lock without an owner's name for so long was left by a process that died while it wrote the name.
constexpr int namelessLockMs = 200;
/// A lock older than this was left by a process whose number another one has by now.
constexpr int staleLockMs = 60000;
/// A sealing that failed is tried again after this time, and after twice as long each time.
constexpr int firstRetryMs = 1000;
constexpr int lastRetryMs = 60000;

constexpr const char* keyVariable = "AXNOFLY_KEY";

QByteArray sampleKey()
{
    return QByteArrayLiteral("AxEarthViewer: zones of the sample");
}

struct Choices
{
    QMutex mutex;
    QString file;
    QByteArray key = sampleKey();
};

Choices& choices()
{
    static Choices instance;
    return instance;
}

QString Shown(const QString& path)
{
    return QDir::toNativeSeparators(path);
}
} // namespace

struct CAxNoflyZoneMgr::State
{
    QString error;
    /// The file opened in place; empty when there is none.
    QString opened;
    std::unique_ptr<QLockFile> lock;
    /// The plain form of `aside` lies here instead.
    std::unique_ptr<AxPrivateFolder> folder;
    QString aside;
    /// This object saw the seal of the plain form.
    bool isAuthentic = false;
    /// Sealing this file has failed.
    QString unsealed;
    QTimer retry;
    QString connection;
    QString connected;
};

CAxNoflyZoneMgr::CAxNoflyZoneMgr(QObject* parent) : QObject(parent), m_state(std::make_unique<State>())
{
    m_state->retry.setSingleShot(true);
    connect(&m_state->retry, &QTimer::timeout, this, &CAxNoflyZoneMgr::TrySealing);
}

CAxNoflyZoneMgr::~CAxNoflyZoneMgr()
{
    if (!m_state->connection.isEmpty())
        CloseDataBase();
    if (!m_state->opened.isEmpty())
        SealInPlace(m_state->opened);
    else if (!m_state->unsealed.isEmpty())
        TrySealing();
}

void CAxNoflyZoneMgr::SetNoflyFile(const QString& path)
{
    const QMutexLocker locker(&choices().mutex);
    choices().file = path;
}

QString CAxNoflyZoneMgr::GetNoflyFile()
{
    QMutexLocker locker(&choices().mutex);
    const QString chosen = choices().file;
    locker.unlock();
    return QFileInfo(chosen.isEmpty()
                         ? QCoreApplication::applicationDirPath() + QStringLiteral("/NoflyZone.db")
                         : chosen)
        .absoluteFilePath();
}

bool CAxNoflyZoneMgr::SetNoflyKey(const QByteArray& key)
{
    const QMutexLocker locker(&choices().mutex);
    choices().key = key;
    if (key.isEmpty())
        qCWarning(logData) << "The key of the zone file is empty: no zone file is opened or sealed with it.";
    return !key.isEmpty();
}

bool CAxNoflyZoneMgr::TakeNoflyKey(const QString& keyFile, QString& error)
{
    if (keyFile.isEmpty()) {
        if (!qEnvironmentVariableIsSet(keyVariable) || SetNoflyKey(qgetenv(keyVariable)))
            return true;
        error = tr("The environment variable %1 holds no key.").arg(QLatin1String(keyVariable));
        return false;
    }
    QFile source(keyFile);
    if (!source.open(QIODevice::ReadOnly))
        error = tr("The key file \"%1\" cannot be read: %2.").arg(Shown(keyFile), source.errorString());
    else if (!SetNoflyKey(source.readAll()))
        error = tr("The key file \"%1\" is empty.").arg(Shown(keyFile));
    else
        return true;
    return false;
}

void CAxNoflyZoneMgr::UseSampleKey()
{
    const QMutexLocker locker(&choices().mutex);
    choices().key = sampleKey();
}

QByteArray CAxNoflyZoneMgr::GetNoflyKey()
{
    const QMutexLocker locker(&choices().mutex);
    return choices().key;
}

QString CAxNoflyZoneMgr::CheckExistNoflyFile() const
{
    const QString file = GetNoflyFile();
    return QFileInfo(file).isFile() ? file : QString();
}

bool CAxNoflyZoneMgr::DecryptionNoflyFile(QString source, QString target)
{
    if (AxRealPath(source) == AxRealPath(target))
        return OpenInPlace(AxRealPath(source));
    QString error;
    const bool done = AxSealedFile::FormOf(source) == AxSealedFile::Form::Database
                          ? AxSealedFile::Copy(source, target, error)
                          : AxSealedFile::Open(source, target, GetNoflyKey(), error);
    return done || Fail(error);
}

bool CAxNoflyZoneMgr::OpenInPlace(const QString& path)
{
    if (m_state->opened == path || m_state->aside == path)
        return true;
    if (!m_state->opened.isEmpty() || !m_state->aside.isEmpty())
        return Fail(tr("\"%1\" is still open.").arg(Shown(m_state->opened + m_state->aside)));
    if (!QFileInfo(path).isFile())
        return Fail(tr("There is no file \"%1\".").arg(Shown(path)));
    if (!Lock(path, lockWaitMs))
        return OpenAside(path);

    AxPrivateFolder::RemoveLeftovers();
    AxOpenedInPlace::TakeUp(path);
    m_state->isAuthentic = AxSealedFile::FormOf(path) != AxSealedFile::Form::Database;
    QString error;
    if (m_state->isAuthentic && !AxOpenedInPlace::Open(path, GetNoflyKey(), error)) {
        m_state->lock.reset();
        return OpenAside(path);
    }
    m_state->opened = path;
    return true;
}

bool CAxNoflyZoneMgr::OpenAside(const QString& path)
{
    auto folder = std::make_unique<AxPrivateFolder>();
    if (!folder->IsValid())
        return Fail(
            tr("There is no room for the plain form of \"%1\": %2.").arg(Shown(path), folder->ErrorString()));
    // Looked at once: while another program opens and seals the file it is one or the other.
    const bool isPlain = AxSealedFile::FormOf(path) == AxSealedFile::Form::Database;
    QString error;
    if (isPlain ? !AxSealedFile::Copy(path, folder->FilePath(), error)
                : !AxSealedFile::Open(path, folder->FilePath(), GetNoflyKey(), error))
        return Fail(error);
    m_state->folder = std::move(folder);
    m_state->aside = path;
    m_state->isAuthentic = !isPlain;
    return true;
}

bool CAxNoflyZoneMgr::EncryptionNoflyFile(QString source, QString target)
{
    if (!m_state->connection.isEmpty())
        CloseDataBase(); // an open file cannot be replaced on every system
    if (AxRealPath(source) == AxRealPath(target))
        return SealInPlace(AxRealPath(source));
    QString error;
    bool done = false;
    switch (AxSealedFile::FormOf(source)) {
    case AxSealedFile::Form::Sealed:
        done = AxSealedFile::Copy(source, target, error);
        break;
    case AxSealedFile::Form::Unknown:
        error = tr("\"%1\" is no zone database.").arg(Shown(source));
        break;
    default:
        done = AxSealedFile::Seal(source, target, GetNoflyKey(), error);
    }
    return done || Fail(error);
}

bool CAxNoflyZoneMgr::SealInPlace(const QString& path)
{
    if (m_state->aside == path) {
        m_state->folder.reset();
        m_state->aside.clear();
        return true;
    }
    const bool wasOpened = m_state->opened == path;
    if (!wasOpened && m_state->opened.isEmpty() && QFileInfo(path).isFile() &&
        AxSealedFile::FormOf(path) == AxSealedFile::Form::Database && !Lock(path, lockWaitMs))
        return Fail(tr("\"%1\" cannot be sealed: another program uses it, or its folder cannot be written.")
                        .arg(Shown(path)));

    bool done = true;
    QString error;
    switch (AxSealedFile::FormOf(path)) {
    case AxSealedFile::Form::Sealed:
        break;
    case AxSealedFile::Form::Unknown:
        error = tr("\"%1\" is no zone database.").arg(Shown(path));
        done = false;
        break;
    default:
        done = AxOpenedInPlace::Seal(path, GetNoflyKey(), error);
        if (!done)
            SealLater(path);
    }
    if (wasOpened || m_state->opened.isEmpty()) {
        m_state->opened.clear();
        m_state->lock.reset();
    }
    return done || Fail(error);
}

void CAxNoflyZoneMgr::SealLater(const QString& path)
{
    const int waited = m_state->unsealed == path ? m_state->retry.interval() : 0;
    m_state->unsealed = path;
    m_state->retry.setInterval(std::clamp(2 * waited, firstRetryMs, lastRetryMs));
    if (QAbstractEventDispatcher::instance())
        m_state->retry.start();
}

void CAxNoflyZoneMgr::TrySealing()
{
    const QString path = m_state->unsealed;
    // Opened again, by this object, which will seal it.
    if (!m_state->opened.isEmpty())
        return SealLater(path);
    const bool isPlain = AxSealedFile::FormOf(path) == AxSealedFile::Form::Database;
    QString error;
    if (isPlain && (!Lock(path, 0) || !AxOpenedInPlace::Seal(path, GetNoflyKey(), error))) {
        m_state->lock.reset();
        return SealLater(path);
    }
    m_state->lock.reset();
    m_state->unsealed.clear();
    qCInfo(logData) << "The zone file is sealed now:" << Shown(path);
}

bool CAxNoflyZoneMgr::Lock(const QString& path, int patienceMs)
{
    auto lock = std::make_unique<QLockFile>(path + QStringLiteral(".lock"));
    lock->setStaleLockTime(staleLockMs);
    QElapsedTimer waiting;
    waiting.start();
    while (!lock->tryLock(0)) {
        if (lock->error() != QLockFile::LockFailedError || waiting.hasExpired(patienceMs)) {
            qCInfo(logData) << "The zone file cannot be locked:" << Shown(path) << lock->error();
            return false;
        }
        qint64 process = 0;
        QString host;
        QString program;
        if (waiting.hasExpired(namelessLockMs) && !lock->getLockInfo(&process, &host, &program))
            lock->removeStaleLockFile();
        QThread::msleep(lockPollMs);
    }
    m_state->lock = std::move(lock);
    return true;
}

bool CAxNoflyZoneMgr::ConnectDataBase(QString path)
{
    if (!m_state->connection.isEmpty())
        CloseDataBase();
    const QString real = AxRealPath(path);
    const bool isAside = m_state->aside == real;
    const QString file = isAside ? m_state->folder->FilePath() : real;
    switch (AxSealedFile::FormOf(file)) {
    case AxSealedFile::Form::None:
        return Fail(tr("There is no file \"%1\", or it cannot be read.").arg(Shown(path)));
    case AxSealedFile::Form::Sealed:
        return Fail(tr("\"%1\" is sealed.").arg(Shown(path)));
    case AxSealedFile::Form::Unknown:
        return Fail(tr("\"%1\" is no zone database.").arg(Shown(path)));
    case AxSealedFile::Form::Database:
        break;
    }

    static std::atomic<unsigned> count{0};
    const QString connection = QStringLiteral("AxNoflyZone-%1").arg(++count);
    QString error;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        // Immutable: nothing is written beside the file, and no journal that lies there is played back.
        database.setDatabaseName(QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded()) +
                                 QStringLiteral("?immutable=1"));
        database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
        if (!database.open()) {
            error = database.lastError().text();
        } else {
            const bool isAuthentic = m_state->isAuthentic && (isAside || m_state->opened == real);
            if (isAuthentic || AxZoneQuery(database).IsSound(error)) {
                m_state->connection = connection;
                m_state->connected = real;
                return true;
            }
            database.close();
        }
    }
    QSqlDatabase::removeDatabase(connection);
    return Fail(tr("\"%1\" cannot be read: %2").arg(Shown(path), error));
}

bool CAxNoflyZoneMgr::SelectRecord(QString columns, QString table, QString condition, QString order,
                                   QList<QVariant>& rows)
{
    QList<QVariant> found;
    if (!SelectRecord(columns, table, condition, order,
                      [&](const QVariantList& row) { found << QVariant(row); }))
        return false;
    rows << found;
    return true;
}

bool CAxNoflyZoneMgr::SelectRecord(QString columns, QString table, QString condition, QString order,
                                   const TakeRow& take)
{
    if (m_state->connection.isEmpty())
        return Fail(tr("No zone database is open."));
    const QSqlDatabase database = QSqlDatabase::database(m_state->connection, false);
    QString error;
    if (AxZoneQuery(database).Select(columns, table, condition, order, take, error))
        return true;
    return Fail(tr("\"%1\": %2").arg(Shown(m_state->connected), error));
}

bool CAxNoflyZoneMgr::CloseDataBase()
{
    if (m_state->connection.isEmpty())
        return Fail(tr("No zone database is open."));
    QSqlDatabase::database(m_state->connection, false).close();
    QSqlDatabase::removeDatabase(m_state->connection);
    m_state->connection.clear();
    m_state->connected.clear();
    return true;
}

QString CAxNoflyZoneMgr::GetLastError() const
{
    return m_state->error;
}

bool CAxNoflyZoneMgr::Fail(const QString& reason)
{
    m_state->error = reason;
    qCWarning(logData).noquote() << reason;
    return false;
}
