#include "host/BlockMenu.h"
#include "host/BlockPanel.h"
#include "host/heights/HeightsBox.h"
#include "host/ToolActions.h"
#include "host/volume/VolumePanel.h"
#include "interaction/AxBlockOperations.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUnits.h>
#include <AxData/CAxBlockManager.h>

#include <QInputDialog>
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
    add(ofAny, tr("&Duplicate"), tr("A copy of the blocks beside them, without their tasks"), [this] {
        viewer->GetBlockOperations()->Duplicate(Chosen());
    })->setShortcut(QKeySequence(QStringLiteral("Ctrl+D")));
    addSeparator();
    cut = add(ofOne, tr("&Split by a line"),
              tr("Clicks draw the line, a double click cuts the block along it"), [this] {
                  if (const QString id = TheOne(tr("Split")); !id.isEmpty())
                      viewer->GetBlockOperations()->BeginSplit(id);
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
    add(ofAny, tr("&Grow or shrink..."), tr("By the same distance on all sides; a strip to both sides"),
        [this] { AskForGrowth(); });
    add(ofAny, tr("Si&mplify..."), tr("Leaves vertices out that hardly matter"),
        [this] { AskForDeviation(); });
    add(ofAny, tr("&Turn..."), tr("Around its middle"), [this] {
        AskFor(tr("Turn"), tr("Angle (degrees clockwise):"), 90.0, -360.0, 360.0,
               [this](const QString& id, double degrees) {
                   return viewer->GetBlockOperations()->Rotate(id, degrees);
               });
    });
    add(ofAny, tr("&Change size..."), tr("From its middle"), [this] {
        AskFor(tr("Change size"), tr("Size (% of the present one):"), 100.0, 1.0, 10000.0,
               [this](const QString& id, double percent) {
                   constexpr double whole = 100.0;
                   return viewer->GetBlockOperations()->Scale(id, percent / whole);
               });
    });
    addSeparator();
    add(ofOne, tr("&Heights of the ground..."),
        tr("The lowest, highest and mean height below the block, and their export"), [this] {
            if (const QString id = TheOne(tr("Heights of the ground")); !id.isEmpty())
                HeightsBox::ShowOf(viewer, id, parentWidget());
        });
    add(ofOne, tr("&Volume"), tr("Cut and fill of the ground within the block, in the panel \"Volumes\""),
        [this] {
            const QString id = TheOne(tr("Volume"));
            if (const QString why = id.isEmpty() ? QString() : VolumePanel::MeasureBlock(*viewer, id);
                !why.isEmpty())
                emit Hinted(why);
        });
    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &BlockMenu::FollowCut);
    connect(this, &QMenu::aboutToShow, this, &BlockMenu::EnableWhatIsPossible);
    // Keys are heard while the menu is closed, and the operations ask for themselves.
    connect(this, &QMenu::aboutToHide, this, [this] {
        for (QAction* action : ofOne + ofAny + ofSeveral)
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
        action->setEnabled(count == 1);
    for (QAction* action : qAsConst(ofAny))
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

// Names of blocks and what was typed are no markup.
void BlockMenu::Tell(QMessageBox::Icon icon, const QString& title, const QString& text)
{
    QMessageBox box(icon, title, text, QMessageBox::Ok, parentWidget());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

QString BlockMenu::TheOne(const QString& title)
{
    const QStringList ids = Chosen();
    if (ids.size() > 1)
        Tell(QMessageBox::Information, title,
             tr("This is for one block, and %1 are selected.").arg(ids.size()));
    return ids.size() == 1 ? ids.first() : QString();
}

void BlockMenu::ShowProperties()
{
    CAxHandleAdapter* object = viewer->FindExistNode(TheOne(tr("Properties")));
    if (!object || object->GetHandleOperation() != OperationIdle)
        return;
    if (object->GetTaskList().isEmpty())
        object->ResponseDoubleClickOnBlock();
    else
        Tell(QMessageBox::Information, tr("Properties"),
             tr("\"%1\" has tasks, and its measures stay as they are meanwhile. The list of "
                "blocks renames it.")
                 .arg(object->GetContainedBlock()->GetBlockName()));
}

void BlockMenu::AskForGrowth()
{
    const AxUnits::Unit unit = AxUnits::OfWidths();
    AskFor(tr("Grow or shrink"), tr("Distance (%1), below 0 to shrink:").arg(unit.sign), 10.0, -10000.0,
           10000.0, [this, unit](const QString& id, double distance) {
               return viewer->GetBlockOperations()->Buffer(id, distance * unit.size);
           });
}

void BlockMenu::AskForDeviation()
{
    const AxUnits::Unit unit = AxUnits::OfWidths();
    AskFor(tr("Simplify"), tr("Largest deviation (%1):").arg(unit.sign), 1.0, 0.01, 10000.0,
           [this, unit](const QString& id, double deviation) {
               return viewer->GetBlockOperations()->Simplify(id, deviation * unit.size);
           });
}

void BlockMenu::AskFor(const QString& edit, const QString& label, double value, double least, double most,
                       const std::function<QStringList(const QString&, double)>& change)
{
    const QStringList ids = Chosen();
    const CAxBlock* first = CAxBlockManager::instance().GetBlock(ids.value(0));
    if (!first)
        return;
    constexpr int mostLetters = 30;
    const QString name =
        fontMetrics().elidedText(first->GetBlockName().simplified(), Qt::ElideMiddle,
                                 mostLetters * fontMetrics().horizontalAdvance(QLatin1Char('0')));
    const QString title =
        ids.size() > 1 ? tr("%1: %2 blocks").arg(edit).arg(ids.size()) : tr("%1: %2").arg(edit, name);
    const QPointer<BlockMenu> self(this);
    constexpr int letters = 50; // the title has to fit
    QString text = QString::number(value);
    // As a text: a field for numbers leaves a comma out, and 3,5 would become 35.
    for (;;) {
        const QPointer<QInputDialog> prompt = new QInputDialog(parentWidget());
        prompt->setWindowTitle(title);
        prompt->setLabelText(label);
        prompt->setTextValue(text);
        prompt->resize(letters * fontMetrics().horizontalAdvance(QLatin1Char('0')), 0);
        const bool isTyped = prompt->exec() == QDialog::Accepted;
        if (prompt)
            text = prompt->textValue();
        delete prompt;
        if (!self || !isTyped)
            return;
        bool isNumber = false;
        const double typed = text.trimmed().toDouble(&isNumber);
        if (isNumber && typed >= least && typed <= most) {
            viewer->GetBlockOperations()->OnEach(
                ids, edit, [&change, typed](const QString& id) { return change(id, typed); });
            return;
        }
        Tell(QMessageBox::Warning, title,
             tr("\"%1\" is not a number between %2 and %3. Decimals are written with a point.")
                 .arg(text, QString::number(least), QString::number(most)));
        if (!self)
            return;
    }
}
