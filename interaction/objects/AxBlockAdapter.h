#pragma once
#include "interaction/objects/AxBlockForm.h"
#include "interaction/objects/AxVerdict.h"
#include "interaction/objects/CAxHandleAdapter.h"

#include <functional>

class AxPage;

/**
 * What all kinds of survey block share: their colours, their rubber band, how they are shown, judged and
 * edited. A kind says what its vertices make and how it is drawn with the mouse. It draws the finished
 * vertices as "Feature" and, while it is being drawn, what the next click would make as "Stipple".
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT AxBlockAdapter : public CAxHandleAdapter
{
    Q_OBJECT
public:
    /// A kind names the type of the records that it draws. The object joins the scene of the viewer.
    AxBlockAdapter(CAxEarthViewer* viewer, QObject* parent, CAxBlock::EBlockType type);
    ~AxBlockAdapter() override;

    /// The object with all that belongs to it.
    void SetAdapterVisible(bool visible, QString taskID) override;
    /// The code of Judge() as AxVerdict.h has it.
    int CheckGeometry() override;
    /// Why a drawing of this shape would be refused, in words for the operator; empty when it would not be.
    /// A block that comes from elsewhere is drawn all the same, and a host says so by this. Nobody is told.
    virtual QString Fault();
    /// km² inside the outline, the same for both directions of it; 0 for a line. See AxBlockArea().
    double GetArea();
    /// Longitude and latitude in degrees, altitude in metres. Points that are not finite leave the object as
    /// it was.
    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;
    /// Shows the finished object, with name and handles.
    void HandleEnd() override;
    /// Another colour with routes than without.
    void UpdateColor() override;
    void ClearPoints() override;
    /// Those that stretch and turn it as a whole, where the aids ask for them and its vertices may come and
    /// go.
    std::vector<AxFurtherHandle> FurtherHandles() override;
    /// Shows the lengths of the edges and the size beside the vertex.
    void slotPointMoved(double lng, double lat, double alt, int index) override;
    void ResponseHandlePointMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void ResponseHandleMoved(osg::Vec3d worldCoordPos, osg::Vec3d lngLatPos) override;

protected:
    /// Takes the values of a form, in the order of its measures, or says which of them is wrong.
    using TakeMeasures = std::function<AxBlockForm::Taken(const QList<double>& values)>;

    /// Judges the shape by itself, after it was found to have a feature node and, as a ring, at least three
    /// vertices.
    virtual AxVerdict JudgeShape() = 0;
    /// What Fault() says of the shape by itself, under the same conditions; empty unless a kind says
    /// otherwise.
    virtual QString ShapeFault();
    /// The whole verdict: the shape, then the zones under it, then the model layers that it touches.
    virtual AxVerdict Judge();

    /// False for a pick beside the globe.
    static bool IsOverGround(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos);
    /// Where a click of the drawing counts: a vertex or an edge of another object close by on the screen,
    /// else the place itself; degrees, degrees, metres.
    osg::Vec3d Snapped(const osg::Vec3d& lngLatPos);
    /// Draws what the next click would make as "Stipple", in place of the one before.
    void DrawRubberBand(const std::vector<osg::Vec3d>& points, bool closed);
    /// A text that follows the cursor until the drawing ends; the place in degrees, degrees, metres.
    void ShowBesideCursor(const osg::Vec3d& lngLatPos, const QString& text);
    /// What stands beside a vertex that is dragged, lengths and sizes; `vertex` is beyond the last one when all
    /// of them are.
    virtual QString DragText(std::size_t vertex);
    /// The handles in step with the vertices; the first vertex makes the editor.
    void ShowHandles();
    /// The widget for boxes, or null.
    QWidget* BoxParent() const;

    // Dialogs. They let events run; who opens one holds a Running and asks it afterwards.

    /// That of a vertex: its coordinates, and "Delete", which ends with `tooFewText` where the kind needs all
    /// that there are. In its place a box says why a block that is locked or has routes has none.
    void ShowVertexDialog(int index, const QString& tooFewText);
    /// Opens the form of the block until it is left, or its name and, where they have changed, its measures
    /// are taken. `take` gets the measures in the order of the form, metres or degrees, each in its range;
    /// where it does not take them it has told why. True when it ended with OK. Measures of a locked block
    /// are shown only.
    bool FillIn(const AxBlockForm& form, const TakeMeasures& take);
    /// Gives a form the line with the area.
    void SetArea(AxBlockForm& form);
    /// False, with the reason told, for a name that is empty, too long or that of another block.
    bool MayBeCalled(const QString& name);
    /// Gives the block the name, which may be taken, after a question.
    void AskAndRename(const QString& name);

private:
    bool hasRim();
    void dragRim(std::size_t handle, const osg::Vec3d& place);
    bool isFreeToEdit();
    int askUntilTaken(const AxPage& page, const std::function<bool()>& take);
    bool tellRange(const AxBlockForm& form, int index, const QString& typed, double value);
    /// False, with the reason told, for values that cannot be taken.
    bool moveVertexTo(int index, const QString& latitude, const QString& longitude);
    void deleteVertexOfBlock(int index, const QString& tooFewText);
};
