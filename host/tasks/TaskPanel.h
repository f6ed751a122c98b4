#pragma once
#include "host/tasks/ShownPlan.h"
#include "host/tasks/TaskFiles.h"
#include "host/tasks/WarningMarks.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class CAxBlock;
class CAxEarthViewer;
class CAxTask;
class FlownSlider;
class HomeClick;
class QAction;
class QLabel;
class QListWidget;
class QListWidgetItem;
class TaskFigures;
class TaskParameters;
class TaskRoutes;

/**
 * The tasks of the viewer's current block: their list, what is to be flown, what it amounts to, files. While
 * no block is current the last one stays. A double click or F2 renames a task, Delete deletes it after a
 * question, its box shows or hides its route. The chosen task's route stands out on the map, and a click on a
 * route there chooses its task. GUI thread.
 */
class TaskPanel : public QWidget
{
    Q_OBJECT
public:
    /// The viewer outlives the panel.
    explicit TaskPanel(CAxEarthViewer* viewer, QWidget* parent = nullptr);
    ~TaskPanel() override;

    /// Wide enough for the parameters.
    QSize sizeHint() const override;

    /// Adds a task to the current block; writes the chosen task's route to a file; reads one. For a menu.
    QAction* AddAction() const { return add; }
    QAction* ExportAction() const { return exportRoute; }
    QAction* ImportAction() const { return importRoute; }

    /// Which routes are not shown, as a text that goes with the project; given back before its records come.
    QString HiddenRoutes() const;
    void SetHiddenRoutes(const QString& kept);

signals:
    /// What is planned for the chosen task, whenever it changes; null for none.
    void PlanShown(std::shared_ptr<const ShownPlan> shown);
    /// Something that the status bar shows.
    void Told(const QString& text);

private:
    void BuildList();
    CAxBlock* Block() const;
    CAxTask* Chosen() const;
    QString ChosenID() const;
    void ShowBlock(const QString& id);
    void ListTasks(const QString& chosenID);
    void ShowPlan();
    void Mark(QListWidgetItem* item);
    void OnCurrentBlock(const QString& id);
    void OnCurrentTask(const QString& block, const QString& task);
    void SelectRoute();
    void OnPlanned(const QString& block, const QString& task);
    void OnItemChanged(QListWidgetItem* item);
    void OnEntryClicked(const QString& block, int entry);
    void Add();
    void Delete();
    TaskFiles::Wanted ToExport(const CAxTask& task) const;
    void Export();
    void ExportFlight(int number);
    void Write(const TaskFiles::Wanted& wanted);
    void Import();
    void AddToBlock(CAxBlock& block, std::unique_ptr<CAxTask> task);
    void OnHomeWanted(bool wanted);
    void FlyTo(const QPointF& place);

    CAxEarthViewer* viewer;
    TaskRoutes* routes;
    HomeClick* homeClick;
    WarningMarks dangers; ///< of all routes that are shown
    QTimer dangersRest;   ///< until they are shown anew
    QString blockID;
    QLabel* title;
    QListWidget* list;
    TaskParameters* parameters;
    TaskFigures* figures;
    FlownSlider* flown;
    QAction* add;
    QAction* remove;
    QAction* exportRoute;
    QAction* importRoute;
    std::shared_ptr<const ShownPlan> shown;
    bool isListing = false;
};
