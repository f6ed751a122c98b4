#include "host/tasks/TaskPanel.h"
#include "host/tasks/BlockOfRoute.h"
#include "host/tasks/CarriedMissions.h"
#include "host/tasks/FlownSlider.h"
#include "host/tasks/HomeClick.h"
#include "host/tasks/PlanWarnings.h"
#include "host/tasks/TaskFigures.h"
#include "host/tasks/TaskFlights.h"
#include "host/tasks/TaskParameters.h"
#include "host/tasks/TaskRoutes.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUniqueID.h>
#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>
#include <AxData/CAxTask.h>
#include <AxData/exchange/AxMissionTask.h>

#include <osgEarth/Viewpoint>

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QSplitter>
#include <QStyle>
#include <QToolButton>
#include <QUndoStack>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>
#include <utility>

namespace {
constexpr double nearbyRange = 800.0; // metres
constexpr double nearbyPitch = -50.0; // degrees
constexpr double flightSeconds = 1.5;

// Over others a route makes no sense.
bool HasTasks(const CAxBlock* block)
{
    return block && block->GetBlockType() <= CAxBlock::VideoBlock;
}

bool HasTaskNamed(const CAxBlock& block, const QString& name)
{
    const QList<CAxTask*> tasks = block.GetMissionList();
    return std::any_of(tasks.begin(), tasks.end(),
                       [&name](const CAxTask* task) { return task->GetTaskName() == name; });
}

// The name, with a number behind it where another task has it.
QString FreeName(const CAxBlock& block, const QString& name)
{
    QString free = name;
    for (int number = 2; HasTaskNamed(block, free); ++number)
        free = QStringLiteral("%1 %2").arg(name).arg(number);
    return free;
}
} // namespace

TaskPanel::TaskPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), routes(new TaskRoutes(viewer, this)),
      homeClick(new HomeClick(viewer, this)), dangers(viewer), title(new QLabel), list(new QListWidget),
      parameters(new TaskParameters), figures(new TaskFigures(viewer)), flown(new FlownSlider(routes)),
      add(new QAction(tr("&Add task"), this)), remove(new QAction(tr("&Delete task..."), this)),
      exportRoute(new QAction(tr("&Export route..."), this)),
      importRoute(new QAction(tr("&Import route..."), this))
{
    BuildList();
    auto* scrolled = new QScrollArea;
    scrolled->setWidget(parameters);
    scrolled->setWidgetResizable(true);
    scrolled->setFrameShape(QFrame::NoFrame);
    auto* scrolledFigures = new QScrollArea;
    scrolledFigures->setWidget(figures);
    scrolledFigures->setWidgetResizable(true);
    scrolledFigures->setFrameShape(QFrame::NoFrame);
    scrolledFigures->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* parts = new QSplitter(Qt::Vertical);
    parts->addWidget(list);
    parts->addWidget(scrolled);
    parts->addWidget(scrolledFigures);
    constexpr int shares[] = {1, 5, 4};
    for (int i = 0; i < parts->count(); ++i)
        parts->setStretchFactor(i, shares[i]);
    auto* buttons = new QHBoxLayout;
    for (QAction* action : {add, remove, importRoute, exportRoute}) {
        auto* button = new QToolButton;
        button->setDefaultAction(action);
        buttons->addWidget(button);
    }
    buttons->addStretch();
    title->setTextFormat(Qt::PlainText);
    title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(title);
    column->addLayout(buttons);
    column->addWidget(parts, 1);
    column->addWidget(flown);

    connect(viewer, &CAxEarthViewer::signalCurrentBlock, this, &TaskPanel::OnCurrentBlock);
    connect(viewer, &CAxEarthViewer::signalCurrentTask, this, &TaskPanel::OnCurrentTask);
    connect(homeClick, &HomeClick::Wanted, this, &TaskPanel::OnHomeWanted);
    connect(homeClick, &HomeClick::Done, parameters, &TaskParameters::ShowPlaces);
    connect(viewer->GetUndoStack(), &QUndoStack::indexChanged, parameters, &TaskParameters::ShowPlaces);
    connect(parameters, &TaskParameters::HomeCleared, this, [this] {
        if (CAxBlock* block = Block())
            HomeClick::SetHome(*viewer, *block, {});
    });
    const CAxBlockManager* records = &CAxBlockManager::instance();
    connect(records, &CAxBlockManager::blockDeleted, this, [this](const QString& id) {
        if (id == blockID)
            ShowBlock({});
    });
    // A block that is being drawn is current before it has a record.
    connect(
        records, &CAxBlockManager::blockAdded, this,
        [this] {
            if (const CAxHandleAdapter* current = viewer->GetCurHandleAdapter())
                OnCurrentBlock(current->GetHandleID());
        },
        Qt::QueuedConnection);
    connect(records, &CAxBlockManager::blockChanged, this, [this](const QString& id) {
        if (id != blockID)
            return;
        title->setText(tr("Tasks of %1").arg(Block()->GetBlockName()));
        parameters->ShowSizes();
    });
    connect(routes, &TaskRoutes::Planned, this, &TaskPanel::OnPlanned);
    // A dangerous route stays one when another block is chosen, or none.
    dangersRest.setSingleShot(true);
    dangersRest.setInterval(0);
    connect(&dangersRest, &QTimer::timeout, this, [this] { dangers.Show(routes->ShownWarnings()); });
    connect(viewer, &CAxEarthViewer::signalBlockState, &dangersRest, QOverload<>::of(&QTimer::start));
    connect(routes, &TaskRoutes::Told, this, &TaskPanel::Told);
    connect(routes, &TaskRoutes::EntryClicked, this, &TaskPanel::OnEntryClicked);
    connect(parameters, &TaskParameters::HomeWanted, this, [this](bool wanted) {
        homeClick->Want(wanted ? blockID : QString());
        parameters->ShowSettingHome(homeClick->IsWanted());
    });
    connect(figures, &TaskFigures::PlaceWanted, this, &TaskPanel::FlyTo);
    connect(figures, &TaskFigures::FlightExportWanted, this, &TaskPanel::ExportFlight);
    ShowBlock({});
}

TaskPanel::~TaskPanel()
{
    // Their ends are told to nobody who is half gone.
    disconnect(routes, nullptr, this, nullptr);
    disconnect(homeClick, nullptr, this, nullptr);
}

void TaskPanel::BuildList()
{
    list->setObjectName(QStringLiteral("TaskList"));
    list->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    list->setMinimumHeight(fontMetrics().height() * 3);
    list->setContextMenuPolicy(Qt::ActionsContextMenu);
    add->setShortcut(QKeySequence(QStringLiteral("Ctrl+T")));
    add->setToolTip(tr("Plan a route over the current block"));
    remove->setShortcut(QKeySequence(Qt::Key_Delete));
    // Elsewhere the key belongs to blocks.
    remove->setShortcutContext(Qt::WidgetShortcut);
    remove->setToolTip(tr("Delete the chosen task, after a question"));
    exportRoute->setToolTip(tr("Write the route for a ground station or a map"));
    importRoute->setToolTip(tr("Show a route from a file of a ground station"));
    list->addAction(remove);
    for (QAction* action : {add, remove, exportRoute, importRoute}) {
        // A button has no letter to press; in Chinese it stands in brackets behind the text.
        QString text = action->text();
        text.remove(QRegularExpression(QStringLiteral("\\(&.\\)|&|\\.\\.\\.")));
        action->setIconText(text.section(QLatin1Char(' '), 0, 0));
    }
    add->setIconText(tr("Add task"));
    connect(add, &QAction::triggered, this, &TaskPanel::Add);
    connect(remove, &QAction::triggered, this, &TaskPanel::Delete);
    connect(exportRoute, &QAction::triggered, this, &TaskPanel::Export);
    connect(importRoute, &QAction::triggered, this, &TaskPanel::Import);
    connect(list, &QListWidget::currentItemChanged, this, [this] {
        if (isListing)
            return;
        ShowPlan();
        SelectRoute();
    });
    // The row that is chosen already, whose route stands out no more.
    connect(list, &QListWidget::itemClicked, this, &TaskPanel::SelectRoute);
    connect(list, &QListWidget::itemChanged, this, &TaskPanel::OnItemChanged);
}

QString TaskPanel::HiddenRoutes() const
{
    return routes->Hidden();
}

void TaskPanel::SetHiddenRoutes(const QString& kept)
{
    routes->SetHidden(kept);
}

QSize TaskPanel::sizeHint() const
{
    const int widest = std::max(parameters->sizeHint().width(), figures->sizeHint().width());
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return {widest + bar + 3 * fontMetrics().height(), QWidget::sizeHint().height()};
}

CAxBlock* TaskPanel::Block() const
{
    return CAxBlockManager::instance().GetBlock(blockID);
}

QString TaskPanel::ChosenID() const
{
    const QListWidgetItem* item = list->currentItem();
    return item ? item->data(Qt::UserRole).toString() : QString();
}

CAxTask* TaskPanel::Chosen() const
{
    const CAxBlock* block = Block();
    return block ? block->GetTask(ChosenID()) : nullptr;
}

void TaskPanel::OnCurrentBlock(const QString& id)
{
    if (homeClick->IsWanted() || !HasTasks(CAxBlockManager::instance().GetBlock(id)))
        return;
    if (id != blockID)
        ShowBlock(id);
    else
        SelectRoute();
}

void TaskPanel::OnCurrentTask(const QString& block, const QString& task)
{
    if (task.isEmpty() || block != blockID || task == ChosenID())
        return;
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->data(Qt::UserRole).toString() == task)
            list->setCurrentRow(i);
}

void TaskPanel::SelectRoute()
{
    if (!homeClick->IsWanted())
        viewer->SelectTask(blockID, ChosenID());
}

void TaskPanel::ShowBlock(const QString& id)
{
    homeClick->Want({});
    blockID = id;
    const CAxBlock* block = Block();
    title->setText(block ? tr("Tasks of %1").arg(block->GetBlockName()) : tr("No block is chosen"));
    parameters->ShowBlock(id);
    ListTasks({});
}

void TaskPanel::ListTasks(const QString& chosenID)
{
    {
        const QScopedValueRollback<bool> guard(isListing, true);
        list->clear();
        const CAxBlock* block = Block();
        for (const CAxTask* task : block ? block->GetMissionList() : QList<CAxTask*>()) {
            auto* item = new QListWidgetItem(task->GetTaskName(), list);
            item->setData(Qt::UserRole, task->GetTaskID());
            item->setFlags(item->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
            Mark(item);
            if (task->GetTaskID() == chosenID || !list->currentItem())
                list->setCurrentItem(item);
        }
    }
    ShowPlan();
    const CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    if (current && current->GetHandleID() == blockID)
        SelectRoute();
}

void TaskPanel::Mark(QListWidgetItem* item)
{
    const QScopedValueRollback<bool> guard(isListing, true);
    const QString taskID = item->data(Qt::UserRole).toString();
    item->setCheckState(routes->IsShown(blockID, taskID) ? Qt::Checked : Qt::Unchecked);
    const auto plan = routes->PlanOf(blockID, taskID);
    const QString trouble = !plan                     ? QString()
                            : !plan->plan.IsPlanned() ? plan->plan.fault
                                                      : PlanWarnings::Summary(plan->plan.warnings);
    item->setIcon(trouble.isEmpty() ? QIcon() : style()->standardIcon(QStyle::SP_MessageBoxWarning));
    item->setToolTip(!trouble.isEmpty() ? trouble
                                        : tr("The box shows or hides the route; without a route on the "
                                             "map the block can be edited, and is planned anew"));
}

void TaskPanel::ShowPlan()
{
    const CAxTask* task = Chosen();
    shown = task ? routes->PlanOf(blockID, task->GetTaskID()) : nullptr;
    const bool isPlanned = shown && shown->plan.IsPlanned();
    figures->Show(shown);
    parameters->ShowFault(shown && shown->hasFigures ? shown->plan.fault : QString());
    parameters->ShowPlaces();
    parameters->ShowFlownHeading(isPlanned && shown->hasFigures ? std::make_optional(shown->plan.heading)
                                                                : std::nullopt);
    dangersRest.start();
    remove->setEnabled(task);
    exportRoute->setEnabled(isPlanned);
    const int points = isPlanned ? static_cast<int>(std::min<std::size_t>(shown->plan.points.size(),
                                                                          std::numeric_limits<int>::max()))
                                 : 0;
    flown->SetTask(blockID, ChosenID(), isPlanned && shown->request.isThreeDirections ? points / 3 : points);
    emit PlanShown(isPlanned ? shown : nullptr);
}

void TaskPanel::OnPlanned(const QString& block, const QString& task)
{
    dangersRest.start();
    if (block != blockID)
        return;
    const CAxBlock* record = Block();
    if (!record || record->GetMissionList().size() != list->count())
        return ListTasks(ChosenID());
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->data(Qt::UserRole).toString() == task)
            Mark(list->item(i));
    if (task == ChosenID())
        ShowPlan();
}

void TaskPanel::OnItemChanged(QListWidgetItem* item)
{
    const CAxBlock* block = Block();
    const QString taskID = item->data(Qt::UserRole).toString();
    CAxTask* task = block ? block->GetTask(taskID) : nullptr;
    if (isListing || !task)
        return;
    const bool isChecked = item->checkState() == Qt::Checked;
    const QString name = item->text().trimmed();
    if (name != task->GetTaskName() && HasTaskNamed(*block, name))
        emit Told(tr("The name already exists !"));
    else if (constexpr int mostLetters = 200; name.size() > mostLetters)
        emit Told(tr("The name must not be longer than %1 letters.").arg(mostLetters));
    else if (!name.isEmpty() && name != task->GetTaskName()) {
        task->SetTaskName(name);
        CAxControl::GetInstance()->SetProjectModified(true);
    }
    {
        const QScopedValueRollback<bool> guard(isListing, true);
        item->setText(task->GetTaskName());
    }
    // May show a box, during which the list may change.
    if (isChecked != routes->IsShown(blockID, taskID))
        routes->SetShown(blockID, taskID, isChecked);
    dangersRest.start();
}

void TaskPanel::Add()
{
    const CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    CAxBlock* block =
        current && current->GetHandleOperation() == OperationIdle ? current->GetContainedBlock() : nullptr;
    if (!HasTasks(block))
        block = Block();
    if (!block || block->GetAnchor().isEmpty())
        return emit Told(tr("Draw a block or choose one; a task is planned over it."));
    int number = block->GetMissionList().size() + 1;
    while (HasTaskNamed(*block, tr("Task %1").arg(number)))
        ++number;
    AddToBlock(*block,
               std::make_unique<CAxTask>(CreateUniqueID(), tr("Task %1").arg(number), block->GetTaskPara()));
}

void TaskPanel::AddToBlock(CAxBlock& block, std::unique_ptr<CAxTask> task)
{
    const CAxTask* added = block.AddTask(std::move(task));
    if (!added)
        return;
    CAxControl::GetInstance()->SetProjectModified(true);
    if (block.GetBlockID() != blockID)
        ShowBlock(block.GetBlockID());
    ListTasks(added->GetTaskID());
}

void TaskPanel::Delete()
{
    const CAxTask* task = Chosen();
    if (!task)
        return;
    const QString block = blockID;
    const QString taskID = task->GetTaskID();
    CAxMessageBox box(window());
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(tr("Delete task"));
    QStringList lines{tr("Do you want to delete the task \"%1\"?").arg(task->GetTaskName()),
                      CarriedMissions::Of(viewer).Warning(block, taskID)};
    lines.removeAll({});
    box.SetMsgText(lines.join(QLatin1Char('\n')));
    box.SetBtnOKText(tr("Delete"));
    box.SetCancelDefault(true);
    if (box.exec() != QDialog::Accepted)
        return;
    CAxBlock* record = CAxBlockManager::instance().GetBlock(block);
    if (record && record->RemoveTask(taskID))
        CAxControl::GetInstance()->SetProjectModified(true);
    if (block == blockID)
        ListTasks({});
}

TaskFiles::Wanted TaskPanel::ToExport(const CAxTask& task) const
{
    TaskFiles::Wanted wanted;
    wanted.name = task.GetTaskName();
    wanted.route = [this, block = blockID, taskID = task.GetTaskID()](QString& fault) {
        std::shared_ptr<const ShownPlan> route = routes->PlanNow(block, taskID);
        fault = route ? route->plan.fault : tr("The task is gone.");
        return route && route->plan.IsPlanned() ? route : nullptr;
    };
    if (const auto* read = dynamic_cast<const AxMissionTask*>(&task))
        wanted.fixed = read->Mission();
    wanted.isWholeArea = shown && shown->hasFigures && shown->request.kind == AxPlanRequest::Kind::Area;
    return wanted;
}

void TaskPanel::Export()
{
    if (const CAxTask* task = shown ? Chosen() : nullptr)
        Write(ToExport(*task));
}

void TaskPanel::ExportFlight(int number)
{
    const CAxTask* task = shown ? Chosen() : nullptr;
    if (!task)
        return;
    TaskFiles::Wanted wanted = ToExport(*task);
    wanted.name = tr("%1, flight %2").arg(wanted.name).arg(number + 1);
    wanted.isWholeArea = false;
    wanted.route = [former = shown, number, now = wanted.route](QString& fault) {
        std::shared_ptr<const ShownPlan> route = now(fault);
        if (!route)
            return route;
        const std::vector<AxPlanFlight> flights = AxSplitIntoFlights(route->request, route->plan);
        if (route != former || number < 0 || flights.size() <= static_cast<std::size_t>(number)) {
            fault = tr("The route has changed, and with it the flights. Choose one of the new ones.");
            return std::shared_ptr<const ShownPlan>();
        }
        return RouteOf(*route, flights[static_cast<std::size_t>(number)]);
    };
    Write(wanted);
}

void TaskPanel::Write(const TaskFiles::Wanted& wanted)
{
    const QString file = TaskFiles::Export(window(), wanted);
    if (!file.isEmpty())
        emit Told(tr("Saved %1").arg(file));
}

void TaskPanel::Import()
{
    std::optional<TaskFiles::Read> read = TaskFiles::Import(window());
    if (!read)
        return;
    CAxBlock* block = BlockOfRoute(*viewer, Block(), *read);
    if (!block)
        return emit Told(tr("The route cannot be shown."));
    const QString id = block->GetBlockID();
    const QString name = FreeName(*block, read->name);
    AddToBlock(*block, std::make_unique<AxMissionTask>(CreateUniqueID(), name, std::move(read->mission),
                                                       std::move(read->points)));
    viewer->slotFocusBlock(id);
}

void TaskPanel::OnEntryClicked(const QString& block, int entry)
{
    CAxBlock* record = CAxBlockManager::instance().GetBlock(block);
    if (homeClick->IsWanted() || !record || record->GetEnterDirection() == entry)
        return;
    record->SetEnterDirection(entry);
    CAxControl::GetInstance()->SetProjectModified(true);
    parameters->ShowPlaces();
}

void TaskPanel::OnHomeWanted(bool wanted)
{
    parameters->ShowSettingHome(wanted);
    if (wanted && Block())
        emit Told(tr("Click home of %1 on the map; Escape gives it up.").arg(Block()->GetBlockName()));
}

void TaskPanel::FlyTo(const QPointF& place)
{
    CAxEarthManipulator* camera = viewer->getManipulator();
    const osgEarth::Viewpoint now = camera->getViewpoint();
    QList<osg::Vec3d> middle{osg::Vec3d(place.x(), place.y(), 0.0)};
    camera->GetElevations(middle, false);
    camera->setViewpoint(osgEarth::Viewpoint("", place.x(), place.y(), middle.constFirst().z(),
                                             now.getHeading(), nearbyPitch, nearbyRange),
                         flightSeconds);
}
