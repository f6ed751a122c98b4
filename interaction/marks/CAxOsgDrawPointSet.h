#pragma once
#include "interaction/objects/CAxHandleAdapter.h"

#include <AxData/project/AxProject.h>

#include <osg/Matrixd>

#include <QHash>
#include <QSet>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

class AxMarkGeometry;
class AxMarkHeights;
class AxMarkMouse;
class AxShapeClamp;
struct AxMarkChange;
struct AxMarkHeight;
struct AxPictureFrame;
struct AxViewRay;

/**
 * Mark points: named places with a height and a note, which stand on the ground as icons with their names. A
 * set is one object of the map without a block record; OfViewer() is the one that the pilot's clicks fill,
 * and a host may register further ones.
 *
 * Every edit is one step of the viewer's undo stack and marks the project as modified, except where it says
 * otherwise. Vertices are its marks in their order. Owned as any CAxHandleAdapter; GUI thread.
 */
class AXEARTHVIEWER_EXPORT CAxOsgDrawPointSet : public CAxHandleAdapter
{
    Q_OBJECT
public:
    CAxOsgDrawPointSet(CAxEarthViewer* viewer, QObject* parent);
    ~CAxOsgDrawPointSet() override;

    /// The set of the pilot's clicks, made when there is none; null before the map is loaded.
    static CAxOsgDrawPointSet* OfViewer(CAxEarthViewer* viewer);
    /// The same, but null where there is none yet.
    static CAxOsgDrawPointSet* FindOfViewer(const CAxEarthViewer* viewer);
    /// Its handle ID.
    static QString IDOfViewer();

    // The marks

    const QVector<AxProjectMark>& Marks() const { return marks; } ///< in their order
    /// -1 for an unknown ID.
    int IndexOf(const QString& id) const { return indices.value(id, -1); }
    /// Null for an unknown ID; until the next change.
    const AxProjectMark* Find(const QString& id) const;
    /// "Mark 1", or the next one that is free.
    QString NextName() const;

    /// A new mark at a place in degrees, on the ground; without a name it gets NextName(). Its ID, or empty
    /// when it was refused; `why` then says why.
    QString AddMark(double longitude, double latitude, const QString& name = {}, QString* why = nullptr);
    /// Adds marks from elsewhere, in one step that the undo stack calls `edit`: with IDs of their own, names
    /// that are taken are numbered, places that are none are left out, and heights are those of the ground
    /// where they are NaN. The IDs of those that were added.
    QStringList AddMarks(const QVector<AxProjectMark>& wanted, const QString& edit);
    /// Gives the mark of that ID name, place and note of `wanted`; its height follows the place. False,
    /// nothing changed, for an unknown ID, a place that is none, and a name that is empty, too long or taken.
    bool EditMark(const AxProjectMark& wanted, QString* why = nullptr);
    /// In one step; IDs that are not known are passed over.
    void RemoveMarks(const QStringList& ids);
    /// Puts marks as they are in the place of all others, as when a project was opened: no step of the undo
    /// stack, and the project is not modified by it. Steps over former marks come to nothing. The heights of
    /// those that follow the ground are found anew; one that is another modifies the project.
    void SetMarks(const QVector<AxProjectMark>& wanted);
    /// The map's ground is another one: finds the heights anew, but for those that a file gave.
    void ReadHeightsAgain();

    /// The marks that are selected, in the order in which they were.
    const QStringList& SelectedMarks() const { return selected; }
    /// The last of them; empty without.
    QString SelectedMark() const { return selected.isEmpty() ? QString() : selected.last(); }
    /// Selects that mark alone, and the set as the current object; an unknown ID selects none. Nothing
    /// happens in the middle of a drawing.
    void SelectMark(const QString& id);
    /// Selects these marks and no others; unknown IDs are passed over. Blocks that are selected stay so;
    /// where there are none the set becomes the current object.
    void SelectMarks(const QStringList& ids);
    /// Those that stand within a frame of the picture and are not behind the globe. `toClip` is the camera's
    /// view and projection, `eye` where it stands, geocentric metres.
    QStringList MarksIn(const osg::Matrixd& toClip, const osg::Vec3d& eye, const AxPictureFrame& frame) const;
    /// Opens the dialog with coordinates, height, name and note, in which all but the height can be changed,
    /// and waits for its end.
    void ShowInformation(const QString& id);

    // The mouse

    /// The mark whose icon or dot, as it is drawn, is under the line of sight; empty without.
    QString MarkUnder(const AxViewRay& ray) const;
    /// The same for a double click, which also finds a mark that others hide, by its icon, and none with
    /// tools that leave marks alone.
    QString MarkUnderDoubleClick(const AxViewRay& ray) const;
    /// The same for the mouse where it was last; empty once it has left the map, and with tools that leave
    /// marks alone.
    QString HoveredMark() const;
    /// For all sets: the mouse has left the map; `at` in the time of its events, seconds.
    static void ForgetPointer(AxViewerParts& parts, double at);
    /// The set that has a mark under the mouse as it was last; null without.
    static CAxOsgDrawPointSet* UnderMouse(AxViewerParts& parts);
    /// The set whose marks Delete is meant for now, and these: the one under the mouse, with the others if it
    /// is a selected one, or else those that are selected; null without.
    static CAxOsgDrawPointSet* ForDelete(AxViewerParts& parts, QStringList& ids);
    osg::Vec3d WorldOf(const QString& id) const; ///< geocentric metres, where it stands now
    /// A drag of a mark: the mark is where it was until the end, and is shown where the ground is met; it
    /// becomes a selected one. False when it cannot begin.
    bool BeginDrag(const QString& id);
    void DragTo(const AxViewRay& ray);
    void FinishDrag();

    /// For the undo stack: what has changed, or `back` to what was before. Heights of the ground that were
    /// found meanwhile stay, and are asked for again where a mark comes or stands elsewhere.
    void Apply(const QVector<AxMarkChange>& changes, bool back);

    // As an object of the map

    void RemoveMarkerPoint(QString name) override;
    /// Gives the marks these names in their order; names that cannot be taken, and those beyond the last
    /// mark, are passed over.
    void SetMarkerPointName(const QStringList& names) override;
    QStringList GetMarkerPointName() override;
    /// Adds marks at these places, named one after the other; no step of the undo stack.
    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;
    void ClearPoints() override; ///< as SetMarks() with none
    void SetAdapterVisible(bool visible, QString taskID) override;
    int CheckGeometry() override;
    bool CancelHandle() override;
    void DrawNameLabel() override {}
    std::vector<osg::Vec3d> Outline() override { return {}; }              ///< points enclose nothing
    void ResponseDoubleClickOnPoint(int index, osg::Vec3d point) override; ///< opens the information

public slots:
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDoubleClicked(osg::Vec3d, osg::Vec3d) override {}
    void slotMouseRelease(osg::Vec3d, osg::Vec3d) override {}
    void slotHandleMoved(double, double, double) override {}

signals:
    /// Marks have come, gone or changed. Of one that comes or goes the viewer tells by signalAddMarkPoint()
    /// and signalDelMarkPoint(), of everything else by signalResetBlockMarkPointListPage().
    void marksChanged();
    void selectedMarkChanged(QString id); ///< SelectedMarks() has changed; SelectedMark() of it
    void signalResetList();               ///< the viewer's signalResetBlockMarkPointListPage()

protected:
    void updateAdapter() override {}

private slots:
    void onCurrentChanged(const QString& id);
    void onSelectedChanged(const QStringList& ids);

private:
    QSet<QString> namesBut(const QString& id) const;
    bool commit(const QVector<AxMarkChange>& changes, const QString& text);
    void select(const QStringList& ids);
    void rebuild(const QSet<QString>& moved);
    void draw();
    bool layOnGround();
    osg::Vec3d placeOf(const AxProjectMark& mark) const; ///< on the ground as it is loaded
    void askHeights(const QVector<AxProjectMark>& of);
    void takeHeights(const QVector<AxMarkHeight>& found);
    void tell(const QVector<AxMarkChange>& changes, bool back);
    void endDragging();

    QVector<AxProjectMark> marks;
    QHash<QString, int> indices;
    std::vector<osg::Vec3d> worlds; ///< where they are drawn, geocentric metres
    QStringList selected;
    QString dragged;                  ///< empty: none
    std::optional<osg::Vec3d> dragTo; ///< degrees, degrees, metres
    EHandleOperation beforeDrag = OperationIdle;
    std::size_t toBeLaid = 0; ///< so many marks still have to be laid on changed ground
    std::size_t laidLast = 0;
    osg::ref_ptr<AxMarkGeometry> geometry;
    osg::ref_ptr<AxMarkMouse> mouse;
    class Ground;
    osg::ref_ptr<Ground> ground;
    std::unique_ptr<AxShapeClamp> clamp;
    std::unique_ptr<AxMarkHeights> heights;
};
