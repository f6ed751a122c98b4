#pragma once
#include "interaction/CAxHandleAdapter.h"

/**
 * A polygon survey block: its corners are clicked on the globe, a double click
 * ends the drawing, and from then on single corners, or the block as a whole,
 * are moved. It draws the finished corners as "Feature" and, while it is being
 * drawn, the rubber band to the cursor as "Stipple".
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAx3DGeometry : public CAxHandleAdapter
{
    Q_OBJECT
public:
    CAx3DGeometry(CAxEarthViewer* viewer, QObject* parent);
    ~CAx3DGeometry() override;

    /// km², the same for both directions of the ring; see AxBlockArea().
    double GetArea();

    void SetAdapterVisible(bool visible, QString taskID) override;
    /// 1 accepts. -1: there is no feature node. -2, after a box that tells why: fewer
    /// than three corners, a ring that crosses itself, or one over a no-fly zone. A
    /// last corner on top of the one before it is dropped.
    int CheckGeometry() override;
    /// Points that are not finite leave the object as it was.
    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;
    void HandleEnd() override;
    /// Another colour with routes than without.
    void UpdateColor() override;
    void ClearPoints() override;
    void ResponseHandlePointMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void ResponseHandleMoved(osg::Vec3d worldCoordPos, osg::Vec3d lngLatPos) override;
    /// The dialog of one corner: its coordinates, and "Delete".
    void ResponseDoubleClickOnPoint(int index, osg::Vec3d point) override;
    /// The dialog of the block: its name and area. A block with routes has none.
    void ResponseDoubleClickOnBlock() override;

public slots:
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

private:
    void moveVertexTo(int index, const QString& latitude, const QString& longitude);
    void deleteVertexOfBlock(int index);
};
