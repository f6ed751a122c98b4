#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxBaseDialog.h>

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>

/// The form with which the operator applies to fly in no-fly zones. This build has no form yet: the dialog
/// says so, can only be left, and there is nothing to upload.
class AXBASEUI_EXPORT CAxNoflyApplyWgt : public CAxBaseDialog
{
    Q_OBJECT

public:
    /// The ID of the block to be flown and the ids of the zones that it touches.
    CAxNoflyApplyWgt(const QString& blockID, const QStringList& zoneIDs, QWidget* parent = nullptr);

    /// A picture of the block on the map, to go with the application.
    void SetScreenShotsImage(const QImage& image);

    /// The application as one upload body; empty when there is none.
    QByteArray ComboUploadData() const;

private:
    QString m_blockID;
    QStringList m_zoneIDs;
    QImage m_screenShot;
};
