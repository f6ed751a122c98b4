#include "interaction/tools/AxMarkTool.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "scene/AxObjectBook.h"
#include "scene/AxToolInHand.h"
#include "scene/AxViewerParts.h"

#include <QGraphicsView>
#include <QPointer>

bool AxMarkTool::Click(AxMouseStep& step)
{
    AxObjectBook& objects = parts.Objects();
    const QPointer<CAxHandleAdapter> known = objects.Find(CAxOsgDrawPointSet::IDOfViewer());
    if (!known) {
        AxDrawTool::Click(step);
        // Registered from its first mark on; a host may draw marks in a way of its own.
        auto* set = step.HasViewer() ? qobject_cast<CAxOsgDrawPointSet*>(objects.Current()) : nullptr;
        if (set && set->GetHandleOperation() == OperationDrawing)
            objects.Add(set);
        return false;
    }
    if (!parts.Tools().MayPick() || parts.Tools().IsBusy())
        return false;
    objects.SetCurrent(known);
    if (known)
        known->BenginHandle();
    return false;
}

bool AxMarkTool::GiveUp()
{
    const QPointer<AxViewerParts> viewer(&parts);
    CAxHandleAdapter* current = parts.Objects().Current();
    if (current && current->GetHandleOperation() == OperationMovePoint)
        return current->CancelHandle();
    parts.Tools().TakeUp(ToolNavigate);
    if (viewer)
        QMetaObject::invokeMethod(viewer->Widget(), "signalHandlePickEnded", Qt::DirectConnection,
                                  Q_ARG(EToolType, ToolMarkPoint));
    return true;
}
