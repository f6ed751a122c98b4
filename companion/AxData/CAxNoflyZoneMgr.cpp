#include <AxData/CAxNoflyZoneMgr.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

CAxNoflyZoneMgr::CAxNoflyZoneMgr(QObject* parent) : QObject(parent) {}

CAxNoflyZoneMgr::~CAxNoflyZoneMgr() = default;

namespace {
QString chosenFile;
}

void CAxNoflyZoneMgr::SetNoflyFile(const QString& path)
{
    chosenFile = path;
}

QString CAxNoflyZoneMgr::CheckExistNoflyFile() const
{
    const QFileInfo file = chosenFile.isEmpty() ? QFileInfo(QDir(QCoreApplication::applicationDirPath()),
                                                            QStringLiteral("NoflyZone.db"))
                                                : QFileInfo(chosenFile);
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
