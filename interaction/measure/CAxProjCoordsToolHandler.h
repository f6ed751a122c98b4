#pragma once
#include "interaction/measure/AxMeasureAdapter.h"

#include <AxAlgorthm/AxCoordinateSystem.h>

/**
 * Tells the coordinates of the place under the mouse in the viewer's system, with the height of the ground
 * there; a click leaves them on the map as a measurement. They stay in the system in which they were taken.
 *
 * Ownership and thread as of AxMeasureAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxProjCoordsToolHandler : public AxMeasureAdapter
{
    Q_OBJECT
public:
    CAxProjCoordsToolHandler(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements);

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::None, 1, false}; }
    AxMeasureWork Work() const override;
    /// Puts the tool down as well, which begins anew with each move of the mouse.
    bool CancelHandle() override;

public slots:
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDoubleClicked(osg::Vec3d, osg::Vec3d) override {}

protected:
    QVector<Label> Labels(const AxMeasurement& measurement) const override;
    void drawShape() override {}

private:
    QString textAt(const osg::Vec3d& place, double height) const;

    AxCoordinateSystem system;
};
