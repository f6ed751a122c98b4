#pragma once

#include <AxData/AxDataExport.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

/// Owner of the enciphered no-fly-zone file and of a database connection to its plain form. Each thread
/// that reads zones uses an instance of its own.
///
/// This build has no cipher and no zone database yet: CheckExistNoflyFile looks, every other operation
/// changes nothing and returns false.
class AXDATA_EXPORT CAxNoflyZoneMgr : public QObject
{
    Q_OBJECT

public:
    explicit CAxNoflyZoneMgr(QObject* parent = nullptr);
    ~CAxNoflyZoneMgr() override;

    /// Names the zone file to use instead of "NoflyZone.db" beside the application. Call it before the
    /// globe starts; an empty name restores the rule.
    static void SetNoflyFile(const QString& path);

    /// Full path of the zone file; empty when there is none.
    QString CheckExistNoflyFile() const;

    bool DecryptionNoflyFile(QString source, QString target);
    bool EncryptionNoflyFile(QString source, QString target);
    bool ConnectDataBase(QString path);
    bool SelectRecord(QString columns, QString table, QString condition, QString order,
                      QList<QVariant>& rows);
    bool CloseDataBase();
};
