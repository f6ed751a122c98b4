#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxAreaOperations.h>
#include <AxData/CAxBlock.h>

#include <QList>
#include <QPointF>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class AxObjects;
class AxViewerParts;
class CAxEarthViewer;
class CAxHandleAdapter;

/**
 * What is done to whole blocks, of those that are on the map, by their IDs. Each operation is one step of the
 * undo stack. What comes out of it is judged like a drawing; a box tells why something is refused, and then
 * nothing has changed. Refused are blocks that are locked, have tasks or routes, or are being edited, and
 * areas with holes, which a block cannot have.
 *
 * A block that becomes another area keeps its ID. Where it becomes several, or a polygon out of another kind,
 * new blocks take its place, which have its parameters, its home and the beginning of its name. Strips and
 * video blocks count as the area that they cover.
 *
 * Operations answer with the IDs of the blocks that are new or have changed: none when it was refused. Boxes
 * let events run meanwhile. Belongs to the viewer. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxBlockOperations
{
public:
    /// For the viewer, whose objects they are.
    AxBlockOperations(AxObjects& objects, AxViewerParts& viewer, CAxEarthViewer* earthViewer);

    /// Puts blocks in the place of others, either of which may be none. The new records come with ID
    /// (CreateUniqueID()), name, vertices and parameters; a name that is taken gets a number behind it. They
    /// are not judged: AxBlockAdapter::Fault() tells of those that a drawing would be refused for. `edit` is
    /// what the undo stack calls it, with the blocks' names behind it. None of the others may be locked, and
    /// their tasks go with them until they come back. `goOn`, which may let events run, is told after each
    /// record how many are there; when it says no, all is as it was before, and there is no step.
    QStringList Replace(const QStringList& ids, std::vector<std::unique_ptr<CAxBlock>> records,
                        const QString& edit, const std::function<bool(int done)>& goOn = {});

    /// One of the operations on a single block, on each of several as one step that is called `edit`; `run`
    /// answers as the operation does. Blocks that refuse it stay as they are, and one box at the end tells of
    /// them all. With a single block it is that operation. Those that were selected together are so
    /// afterwards, or what came of them.
    QStringList OnEach(const QStringList& ids, const QString& edit,
                       const std::function<QStringList(const QString& id)>& run);

    /// Beside the blocks, to the east, with all but the tasks. Locked blocks and those with tasks may be
    /// copied.
    QStringList Duplicate(const QStringList& ids);
    /// One polygon block out of all, in the place of the first.
    QStringList Unite(const QStringList& ids);
    /// The first without what the others cover; these stay as they are.
    QStringList Subtract(const QString& id, const QStringList& others);
    /// Cut by a line of (longitude, latitude) in degrees. Where it crosses the line of a strip, that becomes
    /// strips of the same widths, none shorter than 50 m; elsewhere its area is cut.
    QStringList Split(const QString& id, const QList<QPointF>& line);
    /// Lets the operator draw that line: a double click cuts, Escape leaves the block as it is. False when
    /// the block may not be split, or something else is being drawn.
    bool BeginSplit(const QString& id);
    /// Grown by so many metres on all sides, or shrunk; all but video blocks. A strip gets wider, or
    /// narrower, by so much to both sides, and its ends stay.
    QStringList Buffer(const QString& id, double metres);
    /// With fewer vertices, no edge more than so many metres away; polygons and strips.
    QStringList Simplify(const QString& id, double metres);
    /// Turned clockwise around its middle; all but video blocks.
    QStringList Rotate(const QString& id, double degrees);
    /// Stretched from its middle; a strip keeps its widths.
    QStringList Scale(const QString& id, double factor);

private:
    /// Null, with the reason told, when it may not be changed.
    CAxHandleAdapter* changeable(const QString& id) const;
    QString reasonToStay(const QString& id) const;
    void tellUnchanged(const QStringList& reasons, int all) const;
    /// The object of one of the kinds that the operation is for; null, with the reason told, for others.
    CAxHandleAdapter* changeable(const QString& id, std::initializer_list<CAxBlock::EBlockType> kinds) const;
    QStringList become(CAxHandleAdapter& object, const AxAreaOperations::Result& result, const QString& edit);
    QStringList become(CAxHandleAdapter& object, const QList<QPointF>& vertices, const QString& edit);
    QStringList becomeParts(CAxHandleAdapter& object, CAxBlock::EBlockType type,
                            const QList<QList<QPointF>>& rings, const QString& edit);
    QStringList judgeAndReplace(const QStringList& ids, std::vector<std::unique_ptr<CAxBlock>> records,
                                const QString& edit);
    bool isAcceptable(const AxAreaOperations::Result& result, const QString& name) const;
    void tell(const QString& reason) const;

    AxObjects& objects;
    AxViewerParts& parts;
    CAxEarthViewer* const earthViewer;
};
