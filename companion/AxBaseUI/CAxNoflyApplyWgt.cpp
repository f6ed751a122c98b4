#include <AxBaseUI/CAxNoflyApplyWgt.h>

#include <QLabel>
#include <QVBoxLayout>

CAxNoflyApplyWgt::CAxNoflyApplyWgt(const QString& blockID, const QStringList& zoneIDs, QWidget* parent)
    : CAxBaseDialog(parent), m_blockID(blockID), m_zoneIDs(zoneIDs)
{
    SetWindowTitle(tr("Application to fly"));
    SetBtnHidden(true, false, false);
    ContentLayout()->addWidget(new QLabel(tr("Applications cannot be made with this version.")));
}

void CAxNoflyApplyWgt::SetScreenShotsImage(const QImage& image)
{
    m_screenShot = image;
}

QByteArray CAxNoflyApplyWgt::ComboUploadData() const
{
    return {};
}
