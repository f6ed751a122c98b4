// The form of a strip and the dialog of one of its vertices.
#include "interaction/editing/AxBlockCommands.h"
#include "interaction/editing/AxEditTitle.h"
#include "interaction/objects/AxBlockRefusal.h"
#include "interaction/objects/AxHandleAdapterState.h"
#include "interaction/objects/AxPage.h"
#include "interaction/objects/AxZonesUnder.h"
#include "interaction/objects/CAxOsgDrawLine.h"
#include "scene/AxObjectBook.h"
#include "scene/base/AxNotice.h"

#include <AxData/CAxControl.h>

#include <QCoreApplication>
#include <QUndoStack>

namespace {
// What FinishDrawing() takes for a strip that is not wanted.
constexpr int notWanted = 2;
constexpr double metresPerKilometre = 1000.0;

// The messages of the form are those of the mission desk.
QString OfDesk(const char* text)
{
    return QCoreApplication::translate("MissionDesk", text);
}

QString FaultText(AxStripShape::TypedWidths::Fault fault)
{
    switch (fault) {
    case AxStripShape::TypedWidths::Negative:
        return OfDesk(QT_TRANSLATE_NOOP("MissionDesk", "The width parameter must be greater than 0."));
    case AxStripShape::TypedWidths::TooNarrow:
        return OfDesk(QT_TRANSLATE_NOOP("MissionDesk", "The total width parameter must be greater than 3."));
    case AxStripShape::TypedWidths::NoNumber:
    case AxStripShape::TypedWidths::None:
        break;
    }
    return OfDesk(QT_TRANSLATE_NOOP("MissionDesk", "Survey area parameter is not correct."));
}
} // namespace

struct CAxOsgDrawLine::Typed
{
    QString name;
    AxStripShape::Widths widths;
};

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
    if (GetContainedBlock() && d->tasks.isEmpty() && d->viewer)
        fillIn(false);
}

// Nothing, with the reason told, for what cannot be taken.
std::optional<CAxOsgDrawLine::Typed> CAxOsgDrawLine::read(const QStringList& values, const QString& oldName,
                                                          bool withWidths)
{
    const QString name = values.at(0).trimmed();
    if (name != oldName && !MayBeCalled(name))
        return std::nullopt;
    if (!withWidths)
        return Typed{name, {width1, width2}};
    const AxStripShape::TypedWidths typed = AxStripShape::ReadWidths(values.at(2), values.at(3));
    const bool hasFault = typed.fault != AxStripShape::TypedWidths::None;
    const std::vector<osg::Vec3d> wanted =
        hasFault ? std::vector<osg::Vec3d>()
                 : AxStripShape::Band(d->anchors, typed.widths.left, typed.widths.right);
    if (wanted.empty()) {
        tell(FaultText(typed.fault),
             hasFault ? QString()
                      : tr("The line has no band of %1 m and %2 m.").arg(values.at(2), values.at(3)));
        return std::nullopt;
    }
    const QStringList zones = d->viewer ? AxZonesUnder(*d->viewer, wanted) : QStringList();
    if (!zones.isEmpty()) {
        AxBlockRefusal::OverZones(*d->viewer, zones);
        return std::nullopt;
    }
    return Typed{name, typed.widths};
}

// True when it ended with OK. What was typed stays in the page until it can be taken.
bool CAxOsgDrawLine::fillIn(bool isNew)
{
    const Running self(this);
    const QString oldName = GetContainedBlock()->GetBlockName();
    const QStringList shown{oldName,
                            QString::number(AxStripShape::Length(d->anchors) / metresPerKilometre, 'f', 3),
                            QString::number(width1), QString::number(width2)};
    const AxPage page(BoxParent());
    page->SetWindowTitle(tr("Strip survey area"));
    page->SetElementParas({tr("Name:"), tr("Total Length(km):"), tr("Width1(m):"), tr("Width2(m):")}, shown,
                          {true, false, !d->lock, !d->lock});
    page->SetDialogInfo(tr("Width1 lies to the left of the line as it was drawn, Width2 to the right."));
    const auto isOpen = [&] { return page && self.IsWanted() && GetContainedBlock() && d->viewer; };
    while (page->exec() == QDialog::Accepted && isOpen()) {
        const QStringList values = page->GetElementValues();
        // The texts, because a width may have more digits than its text shows.
        const bool isWidened = values.mid(2) != shown.mid(2);
        const std::optional<Typed> typed = read(values, oldName, isNew || isWidened);
        if (!isOpen())
            return false;
        if (!typed)
            continue;
        const bool isRenamed = typed->name != oldName;
        if (isNew) {
            if (isRenamed)
                GetContainedBlock()->SetBlockName(typed->name);
            SetWidth(typed->widths.left, typed->widths.right);
            return true;
        }
        if (isRenamed)
            AskAndRename(typed->name);
        if (isWidened && isOpen() &&
            AxAskQuestion(BoxParent(), tr("Change para"), tr("Are you sure want to change this para?")) &&
            isOpen() && !IsLock() && d->tasks.isEmpty())
            changeWidths(typed->widths.left, typed->widths.right);
        return true;
    }
    return false;
}

void CAxOsgDrawLine::changeWidths(double left, double right)
{
    const AxWidthCommand::Widths before{width1, width2};
    SetWidth(left, right);
    CAxControl::GetInstance()->SetProjectModified(true);
    const QString title = AxEditTitle(tr("Change widths"), {GetContainedBlock()->GetBlockName()});
    d->viewer->Objects().Edits().push(
        new AxWidthCommand(d->viewer, d->handleID, before, {left, right}, title));
}
