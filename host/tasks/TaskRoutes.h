#pragma once
#include "host/tasks/ShownPlan.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <map>
#include <memory>
#include <set>

class CAxBlock;
class CAxEarthViewer;
class CAxHandleAdapter;
class CAxTask;
class CAxTaskPolygon;

namespace osg {
class Drawable;
}

/**
 * The routes of all tasks on the map. It follows the block records: a task whose block is drawn gets a route,
 * a route goes with its task or its block, and what is to be flown is planned anew once the record has rested
 * for a moment, whoever changed it. A task that allows no route has none on the map. Owned by its parent,
 * below the viewer; GUI thread.
 */
class TaskRoutes : public QObject
{
    Q_OBJECT
public:
    /// The viewer outlives it.
    TaskRoutes(CAxEarthViewer* viewer, QObject* parent);
    ~TaskRoutes() override;

    /// What is planned for a task, with its fault where it allows no route; null before it was planned.
    std::shared_ptr<const ShownPlan> PlanOf(const QString& blockID, const QString& taskID) const;
    /// The same by the records as they are at this moment, planned at once where they have changed; null when
    /// the task is gone.
    std::shared_ptr<const ShownPlan> PlanNow(const QString& blockID, const QString& taskID);

    /// A route that is not shown is not drawn, so that its block can be edited when it has no other. It is
    /// planned anew all the same, and Told() says so.
    bool IsShown(const QString& blockID, const QString& taskID) const;
    void SetShown(const QString& blockID, const QString& taskID, bool shown);
    /// The warnings of all routes that are on the map, whichever block is chosen.
    std::vector<AxPlanWarning> ShownWarnings() const;

    /// Which routes are not shown, as a text that a project keeps; empty for none.
    QString Hidden() const;
    /// For records that are about to come: what is on the map already stays as it is. A text that is none of
    /// Hidden() hides nothing.
    void SetHidden(const QString& kept);

    /// Draws the points of the route from the first to that one as flown; the whole route again for -1.
    void ShowFlown(const QString& blockID, const QString& taskID, int point);

signals:
    /// A task was planned anew, or is gone.
    void Planned(const QString& blockID, const QString& taskID);
    /// The outline of a block with a task has changed; what that means for its route, for the operator.
    void Told(const QString& text);
    /// The operator has clicked the marker of an entry point, 0 to 3, of a block's route.
    void EntryClicked(const QString& blockID, int entry);

private:
    /// Block and task.
    using Key = std::pair<QString, QString>;
    struct Route
    {
        Route();
        ~Route();
        QByteArray planned; // for this state of the records
        QByteArray outline; // of the block in it
        QByteArray changed; // the state that they have taken since
        QElapsedTimer sinceChange;
        qint64 planMs = 0;
        std::shared_ptr<const ShownPlan> plan;
        std::unique_ptr<CAxTaskPolygon> drawn;
        bool isFlownShown = false;
    };

    // Whoever holds a route keeps it over what runs events.
    using Held = std::shared_ptr<Route>;

    QByteArray StateOf(CAxBlock& block, const CAxTask& task) const;
    void Look();
    void Update(const Key& key, CAxBlock& block, CAxTask& task, const Held& route);
    void Renew(const Key& key, CAxBlock& block, CAxTask& task, const Held& route);
    void Plan(CAxBlock& block, CAxTask& task, Route& route);
    AxPlanResult AskPlanner(CAxBlock& block, CAxTask& task) const;
    void Draw(const Key& key, const Held& route);
    QList<QPointF> EntriesOf(const Key& key, const ShownPlan& shown) const;
    void OnBlockDeleted(const QString& blockID);
    void OnClicked(osg::Drawable* drawable);

    CAxEarthViewer* viewer;
    std::map<Key, Held> routes;
    std::set<Key> hidden;
    QTimer clock;
    bool isLooking = false;
    quint32 basis = 0; ///< counts the changes of heights and zones
};
