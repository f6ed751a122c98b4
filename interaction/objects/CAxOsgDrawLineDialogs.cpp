// The form of a strip and the dialog of one of its vertices.
#include "interaction/editing/AxBlockCommands.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxZonesUnder.h"
#include "interaction/objects/CAxOsgDrawLine.h"
#include "scene/AxObjectBook.h"
#include "scene/base/AxNotice.h"

#include <AxData/CAxControl.h>

#include <QCoreApplication>
#include <QUndoStack>

#include <limits>

namespace {
// What FinishDrawing() takes for a strip that is not wanted.
constexpr int notWanted = 2;

// The messages of the form are those of the mission desk.
QString OfDesk(const char* text)
{
    return QCoreApplication::translate("MissionDesk", text);
}

QString NoBandText()
{
    return OfDesk(QT_TRANSLATE_NOOP("MissionDesk", "Survey area parameter is not correct."));
}
} // namespace

void CAxOsgDrawLine::ResponseDoubleClickOnPoint(int index, osg::Vec3d)
{
    ShowVertexDialog(index, tr("The strip block anchor must be not less than 2."));
}

int CAxOsgDrawLine::ResponseDoubleClickWhenDraw()
{
    return !GetContainedBlock() || fillIn(true) ? 0 : notWanted;
}

void CAxOsgDrawLine::ResponseDoubleClickOnBlock()
{
    if (d->tasks.isEmpty())
        fillIn(false);
}

// True when it ended with OK.
bool CAxOsgDrawLine::fillIn(bool isNew)
{
    constexpr double any = std::numeric_limits<double>::infinity();
    const AxUnits::Unit unit = AxUnits::OfDistances();
    AxBlockForm form;
    form.title = tr("Strip survey area");
    form.info = tr("Width1 lies to the left of the line as it was drawn, Width2 to the right.");
    form.sizeLabel = tr("Total Length(%1):").arg(unit.sign);
    form.size = QString::number(AxStripShape::Length(d->anchors) / unit.size, 'f', 3);
    form.measures = {AxBlockForm::Width(tr("Width1(%1):"), width1, -any, any),
                     AxBlockForm::Width(tr("Width2(%1):"), width2, -any, any)};
    form.fault = NoBandText();
    form.isNew = isNew;
    const Running self(this);
    return FillIn(form, [&](const QList<double>& values) -> AxBlockForm::Taken {
        const AxStripShape::Widths widths{values[0], values[1]};
        const bool isTooNarrow = AxStripShape::FaultOf(widths) != AxStripShape::WidthFault::None;
        if (!mayHave(widths))
            return {false, isTooNarrow == (widths.left <= widths.right) ? 0 : 1};
        if (!self.IsWanted() || !d->viewer)
            return {};
        if (isNew)
            SetWidth(widths.left, widths.right);
        else if (AxAskQuestion(BoxParent(), tr("Change para"),
                               tr("Are you sure want to change this para?")) &&
                 self.IsWanted())
            changeWidths(widths);
        return {true};
    });
}

// False, with the reason told, for widths that give no band, or one that is refused.
bool CAxOsgDrawLine::mayHave(const AxStripShape::Widths& widths)
{
    switch (AxStripShape::FaultOf(widths)) {
    case AxStripShape::WidthFault::Negative:
        tell(OfDesk(QT_TRANSLATE_NOOP("MissionDesk", "The width parameter must be greater than 0.")));
        return false;
    case AxStripShape::WidthFault::TooNarrow:
        tell(OfDesk(QT_TRANSLATE_NOOP("MissionDesk", "The total width parameter must be greater than 3.")));
        return false;
    case AxStripShape::WidthFault::None:
        break;
    }
    const std::vector<osg::Vec3d> wanted = AxStripShape::Band(d->anchors, widths.left, widths.right);
    if (wanted.empty()) {
        const AxUnits::Unit unit = AxUnits::OfWidths();
        tell(NoBandText(), tr("The line has no band of %1 %3 and %2 %3.")
                               .arg(QString::number(widths.left / unit.size),
                                    QString::number(widths.right / unit.size), unit.sign));
        return false;
    }
    const QStringList zones = d->viewer ? AxZonesUnder(*d->viewer, wanted) : QStringList();
    if (!zones.isEmpty())
        AxBlockRefusal::OverZones(*d->viewer, zones);
    return zones.isEmpty();
}

bool CAxOsgDrawLine::ChangeWidths(double left, double right)
{
    const Running self(this);
    return GetContainedBlock() && mayHave({left, right}) && self.IsWanted() && changeWidths({left, right});
}

// False for a block that may not be changed any more.
bool CAxOsgDrawLine::changeWidths(const AxStripShape::Widths& widths)
{
    const CAxBlock* block = GetContainedBlock();
    if (!block || !d->viewer || IsLock() || !d->tasks.isEmpty())
        return false;
    const AxWidthCommand::Widths before{width1, width2};
    if (before.left == widths.left && before.right == widths.right)
        return true;
    SetWidth(widths.left, widths.right);
    CAxControl::GetInstance()->SetProjectModified(true);
    const QString title = AxEditTitle(tr("Change widths"), {block->GetBlockName()});
    d->viewer->Objects().Edits().push(
        new AxWidthCommand(d->viewer, d->handleID, before, {widths.left, widths.right}, title));
    return true;
}
