// Blocks that take the place of others.
#include "interaction/editing/AxEditHistory.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/objects/AxBlockOperations.h"
#include "interaction/objects/AxBlockRing.h"
#include "interaction/objects/AxObjects.h"
#include "interaction/objects/AxReplaceCommand.h"
#include "interaction/objects/AxVerdict.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "scene/AxViewerParts.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <QGraphicsView>
#include <QUndoStack>

AxBlockOperations& AxObjects::Operations()
{
    if (!operations)
        operations = std::make_unique<AxBlockOperations>(*this, parts, earthViewer);
    return *operations;
}

QStringList AxObjects::Replace(const QStringList& ids, std::vector<std::unique_ptr<CAxBlock>> records,
                               const QString& edit, const std::function<bool(int done)>& goOn)
{
    const QPointer<AxObjects> self(this);
    QStringList names;
    for (const QString& id : ids) {
        const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
        const CAxHandleAdapter* object = Find(id);
        if (!block || (object && object->IsLock()))
            return {};
        names += block->GetBlockName();
    }
    for (const auto& record : records)
        if (ids.isEmpty())
            names += record->GetBlockName();
    const int selectedBefore = selected.size();
    auto command = std::make_unique<AxReplaceCommand>(*this);
    command->setText(AxEditTitle(edit, names));
    const bool wasModified = CAxControl::GetInstance()->IsProjectModified();
    const QStringList come = command->Replace(ids, std::move(records), goOn);
    if (command->isObsolete()) {
        CAxControl::GetInstance()->SetProjectModified(wasModified);
        return {};
    }
    CAxControl::GetInstance()->SetProjectModified(true);
    if (!self)
        return come;
    if (history->Stack())
        history->Stack()->push(command.release());
    if (self && selected.size() != selectedBefore)
        tellSelected();
    return come;
}

bool AxObjects::IsAccepted(const CAxBlock& record)
{
    const AxShapeFactories::Factory* factory = factories.Of(record.GetBlockType());
    const QPointer<CAxHandleAdapter> object =
        factory ? (*factory)(earthViewer, parts.Widget()->parent()) : nullptr;
    if (!object)
        return false;
    // On the map while a box tells what is wrong with it; without a record it is nobody's.
    unregistered += object;
    std::vector<osg::Vec3d> vertices = AxVerticesOf(record.GetAnchor());
    object->ImportGeometry(vertices, false);
    object->GetBlockElevation();
    double left = 0.0;
    double right = 0.0;
    record.GetTaskPara()->GetBandingOffset(left, right);
    object->SetWidth(left, right);
    object->SetVideoRadius(record.GetVideoRadius());
    const QPointer<AxObjects> self(this);
    const bool isAccepted = AxOutcomeOf(object->CheckGeometry()) == AxOutcome::Accepted;
    if (self && object)
        destroy(object);
    return self && isAccepted;
}
