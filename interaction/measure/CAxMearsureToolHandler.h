#pragma once
#include "interaction/measure/AxMeasureAdapter.h"

/**
 * Measures the length of a path along the ellipsoid and over the ground, with bearing, slope and height
 * difference: clicks set its points, a double click the last one.
 *
 * Ownership and thread as of AxMeasureAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxMearsureToolHandler : public AxMeasureAdapter
{
    Q_OBJECT
public:
    CAxMearsureToolHandler(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements);

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::Open, 2, true}; }
    AxMeasureWork Work() const override;

protected:
    QVector<Label> Labels(const AxMeasurement& measurement) const override;
    QString LiveText(const AxMeasuredValues& values) const override;
    QString Hint() const override;
};
