#pragma once
#include "interaction/measure/AxMeasureAdapter.h"

/**
 * Measures the area of a polygon on the ellipsoid and over the ground, and its perimeter: clicks set its
 * corners, a double click the last one. An outline that crosses itself has no area, and says so.
 *
 * Ownership and thread as of AxMeasureAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxMeasureArea : public AxMeasureAdapter
{
    Q_OBJECT
public:
    CAxMeasureArea(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements);

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::Closed, 3, true}; }
    AxMeasureWork Work() const override;

protected:
    QVector<Label> Labels(const AxMeasurement& measurement) const override;
    QString LiveText(const AxMeasuredValues& values) const override;
    QString Hint() const override;

private:
    static QString TextOf(const AxMeasuredValues& values, bool isLive);
};
