#include "host/BlockMenu.h"
#include "host/BlockPanel.h"
#include "host/ToolActions.h"
#include "interaction/AxBlockOperations.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUnits.h>

#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>

BlockMenu::BlockMenu(CAxEarthViewer* earthViewer, BlockPanel* panel, QWidget* parent)
    : QMenu(tr("&Block"), parent), viewer(earthViewer)
{
    const auto add = [this](QList<QAction*>& kind, const QString& text, const QString& tip, auto run) {
        QAction* action = addAction(text, this, run);
        action->setStatusTip(tip);
        kind += action;
        return action;
    };
    add(ofOne, tr("&Properties..."), tr("Name, size and measures of the block, as a double click on it"),
        [this] { ShowProperties(); })
        ->setShortcut(QKeySequence(QStringLiteral("Alt+Return")));
    add(ofOne, tr("&Duplicate"), tr("A copy of the blocks beside them, without their tasks"), [this] {
        viewer->GetBlockOperations()->Duplicate(Chosen());
    })->setShortcut(QKeySequence(QStringLiteral("Ctrl+D")));
    addSeparator();
    cut = add(ofOne, tr("&Split by a line"),
              tr("Clicks draw the line, a double click cuts the block along it"), [this] {
                  viewer->GetBlockOperations()->BeginSplit(Chosen().value(0));
                  FollowCut();
              });
    cut->setCheckable(true);
    add(ofSeveral, tr("&Unite"),
        tr("One block out of those that are selected; Ctrl and clicks select several"),
        [this] { viewer->GetBlockOperations()->Unite(Chosen()); });
    add(ofSeveral, tr("Su&btract the others"),
        tr("The block that was selected first without what the others cover"), [this] {
            const QStringList ids = Chosen();
            viewer->GetBlockOperations()->Subtract(ids.value(0), ids.mid(1));
        });
    addSeparator();
    add(ofOne, tr("&Grow or shrink..."), tr("By the same distance on all sides; a strip to both sides"),
        [this] { AskForGrowth(); });
    add(ofOne, tr("Si&mplify..."), tr("Leaves vertices out that hardly matter"),
        [this] { AskForDeviation(); });
    add(ofOne, tr("&Turn..."), tr("Around its middle"), [this] {
        AskFor(
            tr("Turn"), tr("Angle (degrees clockwise):"), 90.0, -360.0, 360.0,
            [this](const QString& id, double degrees) { viewer->GetBlockOperations()->Rotate(id, degrees); });
    });
    add(ofOne, tr("&Change size..."), tr("From its middle"), [this] {
        AskFor(tr("Change size"), tr("Size (% of the present one):"), 100.0, 1.0, 10000.0,
               [this](const QString& id, double percent) {
                   constexpr double whole = 100.0;
                   viewer->GetBlockOperations()->Scale(id, percent / whole);
               });
    });
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &BlockMenu::FollowCut);
    connect(this, &QMenu::aboutToShow, this, &BlockMenu::EnableWhatIsPossible);
    // Keys are heard while the menu is closed, and the operations ask for themselves.
    connect(this, &QMenu::aboutToHide, this, [this] {
        for (QAction* action : ofOne + ofSeveral)
            action->setEnabled(true);
    });
    connect(panel, &BlockPanel::MenuAsked, this, [this](QMenu* menu) {
        menu->addSeparator();
        menu->addMenu(this);
    });
}

QStringList BlockMenu::Chosen() const
{
    QList<CAxHandleAdapter*> chosen = viewer->GetMultiSelectAdapter();
    if (chosen.isEmpty() && viewer->GetCurHandleAdapter())
        chosen += viewer->GetCurHandleAdapter();
    QStringList ids;
    for (const CAxHandleAdapter* object : qAsConst(chosen))
        if (object->GetContainedBlock())
            ids += object->GetHandleID();
    return ids;
}

void BlockMenu::EnableWhatIsPossible()
{
    const int count = Chosen().size();
    for (QAction* action : qAsConst(ofOne))
        action->setEnabled(count > 0);
    for (QAction* action : qAsConst(ofSeveral))
        action->setEnabled(count > 1);
}

// While a line is drawn along which a block is cut, no tool of drawing is in hand.
void BlockMenu::FollowCut()
{
    const bool isCutting = ToolActions::IsCutting(*viewer);
    if (isCutting != wasCutting)
        emit Hinted(isCutting
                        ? tr("Split: click the points of the cut; a double click ends it, Escape gives it up")
                        : QString());
    wasCutting = isCutting;
    cut->setChecked(isCutting);
}

void BlockMenu::ShowProperties()
{
    CAxHandleAdapter* object = viewer->FindExistNode(Chosen().value(0));
    if (!object || object->GetHandleOperation() != OperationIdle)
        return;
    if (object->GetTaskList().isEmpty())
        object->ResponseDoubleClickOnBlock();
    else
        QMessageBox::information(
            parentWidget(), tr("Properties"),
            tr("\"%1\" has tasks, and its measures stay as they are meanwhile. The list of "
               "blocks renames it.")
                .arg(object->GetContainedBlock()->GetBlockName()));
}

void BlockMenu::AskForGrowth()
{
    const AxUnits::Unit unit = AxUnits::OfWidths();
    AskFor(tr("Grow or shrink"), tr("Distance (%1), below 0 to shrink:").arg(unit.sign), 10.0, -10000.0,
           10000.0, [this, unit](const QString& id, double distance) {
               viewer->GetBlockOperations()->Buffer(id, distance * unit.size);
           });
}

void BlockMenu::AskForDeviation()
{
    const AxUnits::Unit unit = AxUnits::OfWidths();
    AskFor(tr("Simplify"), tr("Largest deviation (%1):").arg(unit.sign), 1.0, 0.01, 10000.0,
           [this, unit](const QString& id, double deviation) {
               viewer->GetBlockOperations()->Simplify(id, deviation * unit.size);
           });
}

void BlockMenu::AskFor(const QString& title, const QString& label, double value, double least, double most,
                       const std::function<void(const QString&, double)>& change)
{
    const QString id = Chosen().value(0);
    if (id.isEmpty())
        return;
    const QPointer<BlockMenu> self(this);
    QString text = QString::number(value);
    bool isTyped = true;
    // As a text: a field for numbers leaves a comma out, and 3,5 would become 35.
    while (isTyped) {
        text = QInputDialog::getText(parentWidget(), title, label, QLineEdit::Normal, text, &isTyped);
        if (!self || !isTyped)
            return;
        bool isNumber = false;
        const double typed = text.trimmed().toDouble(&isNumber);
        if (isNumber && typed >= least && typed <= most) {
            change(id, typed);
            return;
        }
        QMessageBox::warning(
            parentWidget(), title,
            tr("\"%1\" is not a number between %2 and %3. Decimals are written with a point.")
                .arg(text, QString::number(least), QString::number(most)));
        if (!self)
            return;
    }
}
