#pragma once
#include "interaction/measure/AxMeasureAdapter.h"

/**
 * Draws the area whose cut and fill are wanted, as CAxMeasureArea does: clicks set its corners, a double
 * click the last one. What lies in it is computed by AxVolumeAnalysis, with what its Next() says, under the
 * measurement's ID; the figures come into the measurement from there (AxAddMeasureTools()).
 *
 * Ownership and thread as of AxMeasureAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxMeasureVolume : public AxMeasureAdapter
{
    Q_OBJECT
public:
    CAxMeasureVolume(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements);

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::Closed, 3, true}; }
    /// Area and perimeter on the ellipsoid.
    AxMeasureWork Work() const override;
    bool IsReadHere() const override { return false; }

protected:
    QVector<Label> Labels(const AxMeasurement& measurement) const override;
    QString LiveText(const AxMeasuredValues& values) const override;
    QString Hint() const override;
};
