#pragma once
#include "interaction/objects/AxShapeFactories.h"
#include "scene/AxObjectBook.h"

#include <osg/Node>

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

class AxBlockOperations;
class AxEditHistory;
class AxViewerParts;

/**
 * The map objects of a viewer: those that are registered under their handle IDs, in step with the block
 * records, and those that are drawn but not registered yet. It destroys the ones that are removed.
 *
 * Owned by the viewer. Who hears of a change may remove objects meanwhile. GUI thread.
 */
class AxObjects : public QObject, public AxObjectBook
{
    Q_OBJECT
public:
    AxObjects(AxViewerParts& viewer, CAxEarthViewer* earthViewer);
    ~AxObjects() override;
    void SetHistory(AxEditHistory* edits) { history = edits; }
    AxShapeFactories& Factories() { return factories; }

    // The registry (AxObjects.cpp)

    bool Add(CAxHandleAdapter* object) override;
    bool Remove(CAxHandleAdapter* object, bool deleteBlock) override;
    void RemoveAll(bool deleteBlock);
    /// Removes the current object's entry and block record and leaves nothing current. The object itself
    /// stays.
    void RemoveCurrentEntry();
    /// All objects, registered or not.
    void DestroyAll();
    void Forget(CAxHandleAdapter* object) override;
    CAxHandleAdapter* Find(const QString& id) const override;
    CAxHandleAdapter* Find(const osg::Node* featureNode) const override;
    /// The object to whose name label a node path leads, or null.
    CAxHandleAdapter* FindByName(const osg::NodePath& path) const;
    QList<CAxHandleAdapter*> OfKind(CAxBlock::EBlockType type) const override;
    QList<CAxHandleAdapter*> All() const override;
    /// Draws a block record that has no object yet, or keeps its object hidden; null, with a line in the log,
    /// when it cannot be drawn.
    CAxHandleAdapter* Import(const QString& blockID, bool visible = true);
    /// Makes the object that a tool draws, current and in its drawing; null for a tool that draws nothing.
    CAxHandleAdapter* BeginDrawing(EToolType tool);
    /// The same with an object that somebody has made.
    CAxHandleAdapter* BeginDrawing(CAxHandleAdapter* object);
    /// Takes a refused drawing up again, and its tool; false, with nothing changed, while somebody is drawing
    /// or dragging, or may not draw.
    bool ResumeDrawing(EToolType tool, const std::vector<osg::Vec3d>& vertices);
    void KeepRefused(EToolType tool, const std::vector<osg::Vec3d>& vertices) override;
    void KeepDrawn(const QString& id) override;

    // The selection and what is done to it (AxObjectsSelection.cpp)

    CAxHandleAdapter* Current() const override { return current; }
    void SetCurrent(CAxHandleAdapter* object) override;
    CAxHandleAdapter* Aside() const override;
    /// Has the drawing of the current object wait, nothing being current. False without one, or one that has
    /// no point yet, and while another one waits.
    bool PutAside();
    /// That drawing goes on, its object being current again.
    void TakeAgain();
    const QList<CAxHandleAdapter*>& Selected() const override { return selected; }
    void SelectNode(const osg::Node* featureNode, bool multi, bool report) override;
    bool SelectSeveral(const QList<CAxHandleAdapter*>& wanted) override;
    void ClearSelected() override;
    const QString& SelectedTask() const override { return selectedTask; }
    /// Has the route of a task of that object stand out, and no other; the object is to be current. None for
    /// an empty ID.
    void SelectTask(CAxHandleAdapter* object, const QString& taskID);
    /// Empties the selection without telling of it.
    void EmptySelected();
    /// Nothing is current and nothing selected any more.
    void LeaveSelection();
    /// Gives up what is going on with the current and the selected objects; true when there was something.
    bool GiveUpOperation();
    /// The same for a drag of a vertex or a block only, not for a drawing.
    void GiveUpEdit();
    /// Of the current object: the vertex that the mouse is over, -1 without.
    int HoveredVertex() const;
    /// Takes that vertex away; false when there is none.
    bool DeleteHoveredVertex();
    QUndoStack& Edits() const override;
    const AxEditAids& Aids() const override;
    bool Rename(const QString& id, const QString& name) override;
    /// Deletes blocks as one step of the undo stack, and returns the IDs of those that were there and not
    /// locked.
    QStringList Delete(const QStringList& ids);
    void IntersectModelLayers(CAxHandleAdapter* object) override;
    /// The same when models have changed: the host hears of it where it is another answer.
    void TestModelLayersAgain(CAxHandleAdapter* object);
    /// Tells the names of the model layers that a ring (degrees) meets; none for no function.
    using LayersMet = std::function<QStringList(const std::vector<osg::Vec3d>& ring)>;
    void SetModelLayers(LayersMet met) { layersMet = std::move(met); }

    // Blocks in the place of others (AxObjectsReplacing.cpp)

    AxBlockOperations& Operations();
    /// As AxBlockOperations::Replace(); nothing happens when one of the blocks is locked or not there.
    QStringList Replace(const QStringList& ids, std::vector<std::unique_ptr<CAxBlock>> records,
                        const QString& edit, const std::function<bool(int done)>& goOn = {});
    /// Whether a drawing of the record's shape would be accepted; a box tells the operator why it is not.
    bool IsAccepted(const CAxBlock& record);

signals:
    /// Another object is current, or none; the ID is then empty.
    void currentChanged(QString id);
    void selectedChanged(QStringList ids);
    /// Another task is selected, or none; both IDs are then empty.
    void taskChanged(QString blockID, QString taskID);
    /// An object was drawn from its record.
    void imported(QString id);
    /// A move was given up in its middle.
    void moveGivenUp();

private:
    bool isDrawing() const;
    bool isMeasuringNothing() const;
    bool isAtRest(const CAxHandleAdapter* object) const;
    void join(CAxHandleAdapter* object);
    void tellSelected();
    int removeEntry(CAxHandleAdapter* object, bool deleteBlock);
    void destroy(CAxHandleAdapter* object);
    void testModelLayers(CAxHandleAdapter* object, bool isNewsOnly);

    AxViewerParts& parts;
    CAxEarthViewer* const earthViewer;
    AxEditHistory* history = nullptr;
    AxShapeFactories factories;
    std::unique_ptr<AxBlockOperations> operations;
    std::map<QString, CAxHandleAdapter*> registry;
    std::set<const CAxHandleAdapter*> registered; ///< the same without the order of IDs
    /// Drawings that are not registered yet, and objects that end with the slot they run in.
    QList<QPointer<CAxHandleAdapter>> unregistered;
    CAxHandleAdapter* current = nullptr;
    QPointer<CAxHandleAdapter> aside; ///< may have ended meanwhile: Aside()
    bool asideHasHandles = false;
    QList<CAxHandleAdapter*> selected;
    QString selectedTask; ///< of the current object
    LayersMet layersMet;
    std::map<QString, QStringList> metByObject; ///< names of model layers, as they were told
};
