#include <AxData/CAxNoflyZoneMgr.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

CAxNoflyZoneMgr::CAxNoflyZoneMgr(QObject* parent) : QObject(parent) {}

CAxNoflyZoneMgr::~CAxNoflyZoneMgr() = default;

QString CAxNoflyZoneMgr::CheckExistNoflyFile() const
{
    const QFileInfo file(QDir(QCoreApplication::applicationDirPath()), QStringLiteral("NoflyZone.db"));
    return file.isFile() ? file.absoluteFilePath() : QString();
}

bool CAxNoflyZoneMgr::DecryptionNoflyFile(QString /*source*/, QString /*target*/)
{
    return false;
}

bool CAxNoflyZoneMgr::EncryptionNoflyFile(QString /*source*/, QString /*target*/)
{
    return false;
}

bool CAxNoflyZoneMgr::ConnectDataBase(QString /*path*/)
{
    return false;
}

bool CAxNoflyZoneMgr::SelectRecord(QString /*columns*/, QString /*table*/, QString /*condition*/,
                                   QString /*order*/, QList<QVariant>& /*rows*/)
{
    return false;
}

bool CAxNoflyZoneMgr::CloseDataBase()
{
    return false;
}
