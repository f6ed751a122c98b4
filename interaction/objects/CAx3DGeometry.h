#pragma once
#include "interaction/objects/AxBlockAdapter.h"

/**
 * A polygon survey block: its corners are clicked on the globe, a double click
 * ends the drawing, and from then on single corners, or the block as a whole,
 * are moved. CheckGeometry() answers -2, after a box that tells why, for fewer than
 * three corners, a ring that crosses itself, and one over a no-fly zone.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAx3DGeometry : public AxBlockAdapter
{
    Q_OBJECT
public:
    CAx3DGeometry(CAxEarthViewer* viewer, QObject* parent);
    ~CAx3DGeometry() override;

    /// The dialog of one corner: its coordinates, and "Delete". In its place a box says why a block that is
    /// locked or has routes has none.
    void ResponseDoubleClickOnPoint(int index, osg::Vec3d point) override;
    /// The dialog of the block: its name and area. A block with routes has none.
    void ResponseDoubleClickOnBlock() override;

public slots:
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

protected:
    /// Refuses a ring that crosses itself. A last corner on top of the one before it is dropped.
    AxVerdict JudgeShape() override;
    QString ShapeFault() override;
};
