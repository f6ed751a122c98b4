// The viewer as the map on which volumes are measured.
#include "analysis/volume/AxVolumeAnalysis.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/AxVolumeDesk.h"
#include "viewer/overlay/AxGridWidget.h"

AxVolumeAnalysis* CAxEarthViewer::GetVolumeAnalysis() const
{
    return d->volumeAnalysis.get();
}

void CAxEarthViewer::slotGridWidget(QString strHanleID, bool bVisible)
{
    // The viewer may be on its way out.
    if (!d->volumeDesk)
        return;
    if (bVisible)
        d->volumeDesk->ShowVolume(strHanleID);
    d->gridWidget->setVisible(bVisible);
}
