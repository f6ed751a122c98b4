#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxProgressWgt.h>

#include <QByteArray>

/// Sends an application to fly in no-fly zones and shows how that goes. This build has no transport yet:
/// the display says that nothing was sent.
class AXBASEUI_EXPORT CAxNoflyApplyUpload : public CAxProgressWgt
{
    Q_OBJECT

public:
    explicit CAxNoflyApplyUpload(QWidget* parent = nullptr);

    void BeginUpload(const QByteArray& data);
};
