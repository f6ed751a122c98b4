#pragma once
#include "interaction/measure/AxMeasurement.h"
#include "interaction/measure/AxMeasurements.h"
#include "interaction/objects/CAxHandleAdapter.h"

#include <osgEarthAnnotation/LabelNode>
#include <osgEarthAnnotation/PlaceNode>

#include <optional>
#include <utility>
#include <vector>

class AxMeasureHit;

/**
 * What all measuring tools share. It is drawn by clicks, tells beside the mouse what it measures, and when it
 * is finished becomes an entry of AxMeasurements, which shows it until it is removed there. It leaves no
 * block record and no undo step behind, and is not picked as blocks are. Other ends of a drawing: a tool or
 * an object that is taken up meanwhile finishes it too, Escape removes it.
 *
 * A kind says what the points make (ShapeKind()) and how they are measured (Work()); more where it is drawn
 * with other gestures, or otherwise than as a line or ring on the ground.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT AxMeasureAdapter : public CAxHandleAdapter
{
    Q_OBJECT
public:
    AxMeasureAdapter(CAxEarthViewer* viewer, QObject* parent, EToolType tool, AxMeasurements& measurements);
    ~AxMeasureAdapter() override;

    EToolType Tool() const { return tool; }
    /// How the points are measured: live, with the ground in memory, and when they are finished, with the
    /// finest there is. What it returns keeps no pointer to the object.
    virtual AxMeasureWork Work() const = 0;
    /// Whether AxMeasurements reads the ground for it; for others whoever does tells it
    /// AxMeasurements::SetValues().
    virtual bool IsReadHere() const { return true; }
    /// Removes it, with all that it has drawn.
    void TakeOffMap();
    /// Writes these values beside the shape.
    void ShowMeasured(const AxMeasurement& measurement);
    /// Whether its lines and marks, or its texts, are seen at a place of the picture.
    bool IsShapeAt(const AxMeasureHit& hit) const;
    bool IsTextAt(const AxMeasureHit& hit) const;

    /// 1 when there are enough points.
    int CheckGeometry() override;
    void SetAdapterVisible(bool visible, QString taskID) override;
    void ClearPoints() override;
    /// These are its points, and it is not drawn any more.
    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;
    /// The points, and while it is drawn the place under the mouse behind them.
    std::vector<osg::Vec3d> Outline() override;
    std::vector<osg::Vec3d> InnerLine() override;
    /// Finishes the drawing and tells nobody but AxMeasurements.
    void EndHandle() override;
    /// Removes the drawing. The tool stays in hand.
    bool CancelHandle() override;

public slots:
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

protected:
    /// A text on the map.
    struct Label
    {
        osg::Vec3d
            place; ///< degrees, degrees, metres; the altitude counts where the shape is not on the ground
        QString text;
        bool isMain = false; ///< beside its place; others are centred on theirs, and give way to it
    };
    /// The texts of a finished measurement: unless a kind says otherwise all values beside the last point.
    virtual QVector<Label> Labels(const AxMeasurement& measurement) const;
    /// The text beside the mouse.
    virtual QString LiveText(const AxMeasuredValues& values) const;
    /// What a click before the first point, or the next one, does; below the values beside the mouse.
    virtual QString Hint() const;
    /// Draws the points as "Feature": a line or ring on the ground, seen on bright ground and on dark.
    virtual void drawShape();
    /// Whether the points lie on the ground as it is drawn, and follow it.
    virtual bool isOnGround() const { return true; }

    void updateAdapter() override;
    /// Puts lines through points in the air (degrees, degrees, metres) into the feature node as "Feature",
    /// dark below and bright above.
    void drawInAir(const std::vector<osg::Vec3d>& line);
    /// Where a pick counts: with all digits, or at what it snaps to; on the ground at the height of that
    /// which is in memory. Nothing beside the globe.
    std::optional<osg::Vec3d> placeOf(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos);
    /// Whether a pick lies on the ground and not on something above it, as a model.
    static bool isOfGround(const osg::Vec3d& lngLatPos, const osg::Vec3d& worldCoordPos);
    /// Adds a point; false where the last one is already.
    bool addPoint(const osg::Vec3d& place);
    /// Shows what is measured with that place as the next point.
    void showLive(const osg::Vec3d& place);
    void forgetCursor();
    /// Ends the drawing: listed, or removed when there are too few points; the host is told.
    void finish();

private:
    bool isLast(const osg::Vec3d& place) const;
    bool end();
    void drawMarks();
    void drawLabels(const QVector<Label>& wanted);
    void rankLabels();
    void dropNodes();
    osgEarth::GeoPoint pointOf(const osg::Vec3d& place) const;
    AxPathGround loadedGround() const;

    const EToolType tool;
    const QPointer<AxMeasurements> book;
    std::optional<osg::Vec3d> cursor;                                 ///< where the next point would be
    osg::ref_ptr<osg::Group> nodes;                                   ///< of the following two
    std::vector<osg::ref_ptr<osgEarth::Annotation::PlaceNode>> marks; ///< of the points
    /// A label, and whether it is a main one.
    std::vector<std::pair<osg::ref_ptr<osgEarth::Annotation::LabelNode>, bool>> texts;
};
