#include <AxBaseUI/CAxNoflyApplyUpload.h>

CAxNoflyApplyUpload::CAxNoflyApplyUpload(QWidget* parent) : CAxProgressWgt(tr("Application to fly"), parent)
{
    VisibleBtnClose(true);
}

void CAxNoflyApplyUpload::BeginUpload(const QByteArray& /*data*/)
{
    SetText(tr("Applications cannot be sent with this version. Nothing was sent."));
}
