#include "analysis/CAxApplyForProhibitedArea.h"
#include "interaction/AxBlockColors.h"
#include "interaction/AxBlockRefusal.h"
#include "interaction/AxNotice.h"
#include "viewer/CAxEarthViewer.h"

#include <AxBaseUI/CAxNoflyApplyUpload.h>
#include <AxBaseUI/CAxNoflyApplyWgt.h>
#include <AxData/CAxBlockManager.h>

#include <QApplication>
#include <QTimer>

namespace {
// Magenta: neither the zones' yellow nor a colour of the ground.
const AxBlockColors colors = AxBlockColors::Of(214, 0, 110, 90);
} // namespace

CAxApplyForProhibitedArea::CAxApplyForProhibitedArea(CAxEarthViewer* earthViewer, QObject* parent)
    : CAxOsgDrawRectange(earthViewer, parent)
{
    blockType = CAxBlock::ProhibitedAreaBlock;
    edgeColor = colors.edge;
    fillColor = colors.fill;
}

void CAxApplyForProhibitedArea::UpdateColor()
{
    updateAdapter();
}

// The zones below

int CAxApplyForProhibitedArea::CheckGeometry()
{
    constexpr int noViewer = -1;
    constexpr int notFourCorners = -2;
    constexpr int degenerate = 0;
    constexpr int accepted = 1;
    if (!viewer)
        return noViewer;
    if (anchors.size() != 4)
        return notFourCorners;
    if (IsFlat())
        return degenerate;
    const Running self(this);
    zones = AxZonesUnder(*viewer, anchors);
    giveZonesToBlock();
    emit signalIntersection(handleID, zones);
    if (self.IsWanted() && viewer)
        viewer->IntersectionModelLayer(this);
    return accepted;
}

void CAxApplyForProhibitedArea::giveZonesToBlock()
{
    if (CAxBlock* block = GetContainedBlock())
        block->SetIntersections(zones);
}

void CAxApplyForProhibitedArea::ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor)
{
    CAxOsgDrawRectange::ImportGeometry(points, enableEditor);
    CheckGeometry();
}

void CAxApplyForProhibitedArea::HandleEnd()
{
    // The record was made after the test.
    giveZonesToBlock();
    CAxOsgDrawRectange::HandleEnd();
}

// Applying

int CAxApplyForProhibitedArea::ResponseDoubleClickWhenDraw()
{
    applyLater();
    return CAxOsgDrawRectange::ResponseDoubleClickWhenDraw();
}

// The second click of a double click must not come upon the form, and the
// picture for it is to show the finished area.
void CAxApplyForProhibitedArea::applyLater()
{
    isDue = true;
    QTimer::singleShot(QApplication::doubleClickInterval(), this, [this] {
        if (!isDue)
            return;
        if (QApplication::activeModalWidget())
            applyLater();
        else
            Apply();
    });
}

void CAxApplyForProhibitedArea::ResponseDoubleClickOnBlock()
{
    Apply();
}

void CAxApplyForProhibitedArea::Apply()
{
    const Running self(this);
    if (isApplying || !self.IsWanted())
        return;
    isDue = false;
    if (zones.isEmpty()) {
        AxShowNotice(viewer, tr("Application Information"), tr("The block does not require an application."));
        return;
    }
    const CAxBlock* block = GetContainedBlock();
    if (!block || !viewer)
        return;
    isApplying = true;
    const QPointer<CAxApplyForProhibitedArea> alive(this);
    fillInAndSend(block->GetBlockID());
    if (alive)
        isApplying = false;
}

// The viewer, and with it the dialogs, may go while one of them is open.
void CAxApplyForProhibitedArea::fillInAndSend(const QString& blockID)
{
    const QPointer<CAxEarthViewer> map = viewer;
    const QPointer<CAxNoflyApplyWgt> form = new CAxNoflyApplyWgt(blockID, zones, map);
    form->SetScreenShotsImage(map->GetCurrViewerImg());
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockDeleted, form,
            [form, blockID](const QString& id) {
                if (id == blockID)
                    form->reject();
            });
    bool isWaiting = true;
    while (isWaiting && form && form->exec() == QDialog::Accepted && form) {
        isWaiting = false;
        const QByteArray data = form->ComboUploadData();
        if (data.isEmpty())
            continue;
        const QPointer<CAxNoflyApplyUpload> upload = new CAxNoflyApplyUpload(map);
        upload->BeginUpload(data);
        const bool isSent = upload->exec(true) == QDialog::Accepted;
        isWaiting = !isSent && CAxBlockManager::instance().GetBlock(blockID);
        const QString answer = upload ? upload->AnswerText() : QString();
        delete upload;
        if (isSent)
            AxShowNotice(map, tr("Application Information"), tr("The application was sent."), answer);
    }
    delete form;
}
