// What all kinds of block share of their dialogs: the one of a vertex, and the rules of names.
#include "interaction/objects/AxBlockAdapter.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxPage.h"
#include "scene/AxObjectBook.h"
#include "scene/base/AxLongitudes.h"
#include "scene/base/AxNotice.h"

#include <AxData/CAxBlockManager.h>

#include <cmath>

namespace {
using AxLongitudes::sameDegrees;
constexpr int degreeDecimals = 8;
constexpr int mostLetters = 200;

QString DegreesText(double degrees)
{
    return QString::number(degrees, 'f', degreeDecimals);
}
} // namespace

bool AxBlockAdapter::MayBeCalled(const QString& name)
{
    QString reason;
    if (name.isEmpty())
        reason = tr("The name must not be empty.");
    else if (name.size() > mostLetters)
        reason = tr("The name must not be longer than %1 letters.").arg(mostLetters);
    else if (CAxBlockManager::instance()._exist(name))
        reason = tr("The name already exists !");
    if (!reason.isEmpty())
        AxShowNotice(BoxParent(), tr("Information"), reason);
    return reason.isEmpty();
}

void AxBlockAdapter::AskAndRename(const QString& name)
{
    const Running self(this);
    if (AxAskQuestion(BoxParent(), tr("Change name"), tr("Are you sure want to change name?")) &&
        self.IsWanted() && d->viewer)
        d->viewer->Objects().Rename(d->handleID, name);
}

void AxBlockAdapter::ShowVertexDialog(int index, const QString& tooFewText)
{
    const CAxBlock* block = GetContainedBlock();
    if (index < 0 || !block || index >= block->GetAnchor().size() || !isFreeToEdit())
        return;
    const Running self(this);
    const QPointF vertex = block->GetAnchor().at(index);
    const AxPage page(BoxParent());
    page->SetWindowTitle(tr("Vertex"));
    page->SetElementParas({tr("Latitude(degree):"), tr("Longitude(degree):")},
                          {DegreesText(vertex.y()), DegreesText(vertex.x())}, {true, true});
    page->SetOKCancelBtnVisible(true, true);
    page->SetBtnCancelText(tr("Delete"));
    page->SetDialogInfo(tr("The cross at the top and Escape leave the vertex as it is."));
    const int result = askUntilTaken(page, [&] {
        const QStringList values = page->GetElementValues();
        return moveVertexTo(index, values.at(0), values.at(1));
    });
    if (result == QDialog::Rejected && self.IsWanted())
        deleteVertexOfBlock(index, tooFewText);
}

// Handles that are not there are not double-clicked, but a host may ask for the dialog, and lock the block
// while it is open.
bool AxBlockAdapter::isFreeToEdit()
{
    if (mayChangeCount())
        return true;
    AxShowNotice(BoxParent(), tr("Vertex"),
                 tr("The corners of a block that is locked or has routes cannot be changed."));
    return false;
}

void AxBlockAdapter::deleteVertexOfBlock(int index, const QString& tooFewText)
{
    const Running self(this);
    if (!AxAskQuestion(BoxParent(), tr("Delete vertex"), tr("Are you sure you want to delete vertex?")) ||
        !self.IsWanted())
        return;
    const CAxBlock* block = GetContainedBlock();
    if (!block || index >= block->GetAnchor().size())
        return;
    if (block->GetAnchor().size() == ShapeKind().leastVertices) {
        AxShowNotice(BoxParent(), tr("Delete Block"), tooFewText);
        return;
    }
    if (!isFreeToEdit())
        return;
    std::vector<osg::Vec3d> points = AxVerticesOf(block->GetAnchor());
    points.erase(points.begin() + index);
    ChangeVertices(std::move(points), tr("Delete vertex"));
    if (self.IsWanted())
        SetAnchorEditorEnabled(true);
}

bool AxBlockAdapter::moveVertexTo(int index, const QString& latitude, const QString& longitude)
{
    const CAxBlock* block = GetContainedBlock();
    if (!block || index >= block->GetAnchor().size())
        return true;
    bool isLatitude = false;
    bool isLongitude = false;
    const double lat = latitude.toDouble(&isLatitude);
    const double lng = longitude.toDouble(&isLongitude);
    if (!isLatitude || !(std::abs(lat) <= 90.0)) {
        AxShowNotice(BoxParent(), tr("Vertex"),
                     tr("\"%1\" is not a latitude between -90 and 90.").arg(latitude));
        return false;
    }
    if (!isLongitude || !(std::abs(lng) <= 180.0)) {
        AxShowNotice(BoxParent(), tr("Vertex"),
                     tr("\"%1\" is not a longitude between -180 and 180.").arg(longitude));
        return false;
    }
    // The latitude is compared with both coordinates on purpose: OK rewrites
    // the corner in practice always.
    const QPointF vertex = block->GetAnchor().at(index);
    if (std::abs(lat - vertex.y()) < sameDegrees && std::abs(lat - vertex.x()) < sameDegrees)
        return true;
    // There is nothing that other values would mend.
    if (!isFreeToEdit())
        return true;
    std::vector<osg::Vec3d> points = AxVerticesOf(block->GetAnchor());
    points[static_cast<std::size_t>(index)].set(lng, lat, 0.0);
    // The legs beside a vertex are judged as after a drag of it.
    const Running self(this);
    d->editIndex = index;
    const bool isMoved = ChangeVertices(std::move(points), tr("Move vertex"));
    if (!self.IsGone())
        d->editIndex = -1;
    return isMoved;
}
