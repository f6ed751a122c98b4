#pragma once
#include "interaction/measure/AxDraggedMeasure.h"

#include <osg/Matrixd>

/**
 * Measures a rectangle of ground, from corner to corner by a drag or two clicks: its sides, its area, and the
 * plane that fits the ground in it best, with its slope, where it falls to, and how rough the ground is
 * against it.
 *
 * Ownership and thread as of AxMeasureAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxMeasurePlane : public AxDraggedMeasure
{
    Q_OBJECT
public:
    CAxMeasurePlane(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements);

    /// Along what the sides run, before the first corner is set: the matrix turns the axes to the east, to
    /// the north and upward at the centre (geocentric metres; 0, 0, 0 stands for the first corner), and the
    /// width runs along the first of them, as it is seen from above at the first corner. Until set to the
    /// east.
    void SetPlane(const osg::Vec3d& center, const osg::Matrixd& matrix);

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::Closed, 4, false}; }
    AxMeasureWork Work() const override;
    std::vector<osg::Vec3d> Outline() override;

protected:
    QVector<Label> Labels(const AxMeasurement& measurement) const override;
    QString Hint() const override;
    void take(const Place& place) override;

private:
    std::vector<osg::Vec3d> rectangle(const osg::Vec3d& from, const osg::Vec3d& to) const;
    double bearingAt(const osg::Vec3d& place) const;

    osg::Vec3d planeCenter;
    osg::Matrixd planeMatrix;
};
