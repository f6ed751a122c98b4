#include "interaction/objects/CAxApplyForProhibitedArea.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxZonesUnder.h"
#include "scene/AxObjectBook.h"
#include "scene/AxScene.h"
#include "scene/base/AxNotice.h"
#include "scene/shape/AxBlockColors.h"

#include <AxBaseUI/CAxNoflyApplyUpload.h>
#include <AxBaseUI/CAxNoflyApplyWgt.h>
#include <AxData/CAxBlockManager.h>

#include <QApplication>
#include <QGraphicsView>
#include <QTimer>

namespace {
// Magenta: neither the zones' yellow nor a colour of the ground.
const AxBlockColors markColors = AxBlockColors::Of(214, 0, 110, 90);
} // namespace

CAxApplyForProhibitedArea::CAxApplyForProhibitedArea(CAxEarthViewer* viewer, QObject* parent)
    : CAxOsgDrawRectange(viewer, parent, CAxBlock::ProhibitedAreaBlock)
{
    SetColors(markColors.edge, markColors.fill);
}

void CAxApplyForProhibitedArea::UpdateColor()
{
    updateAdapter();
}

// The zones below

AxVerdict CAxApplyForProhibitedArea::Judge()
{
    if (!d->viewer)
        return AxVerdict::Impossible;
    if (!ShapeKind().Allows(static_cast<int>(d->anchors.size())))
        return AxVerdict::WrongCount;
    if (IsFlat())
        return AxVerdict::NoExtent;
    const Running self(this);
    zones = AxZonesUnder(*d->viewer, d->anchors);
    giveZonesToBlock();
    emit signalIntersection(d->handleID, zones);
    if (self.IsWanted() && d->viewer)
        d->viewer->Objects().IntersectModelLayers(this);
    return AxVerdict::Accepted;
}

QString CAxApplyForProhibitedArea::Fault()
{
    return ShapeFault();
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
        AxShowNotice(BoxParent(), tr("Application Information"),
                     tr("The block does not require an application."));
        return;
    }
    const CAxBlock* block = GetContainedBlock();
    if (!block || !d->viewer)
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
    const QPointer<QWidget> map = BoxParent();
    const QPointer<CAxNoflyApplyWgt> form = new CAxNoflyApplyWgt(blockID, zones, map);
    if (const CAxBlock* block = CAxBlockManager::instance().GetBlock(blockID)) {
        form->SetBlockName(block->GetBlockName());
        form->SetArea(block->GetAnchor());
    }
    form->SetScreenShotsImage(d->viewer->Scene().Picture());
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
            AxShowSuccess(map, tr("Application Information"), tr("The application was sent."), answer);
    }
    delete form;
}
