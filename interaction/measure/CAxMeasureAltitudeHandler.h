#pragma once
#include "interaction/measure/AxDraggedMeasure.h"
#include "scene/shape/AxShapeClamp.h"

#include <memory>

/**
 * Measures how much higher one place is than another, with the horizontal distance, the straight line and the
 * slope: a drag from one to the other, or a click on each. A triangle stands on the map, upright at the
 * higher place. A place on the ground has the ground's height, another one, as on a model, its own.
 *
 * Ownership and thread as of AxMeasureAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxMeasureAltitudeHandler : public AxDraggedMeasure
{
    Q_OBJECT
public:
    CAxMeasureAltitudeHandler(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements);
    ~CAxMeasureAltitudeHandler() override;

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::Open, 2, false}; }
    AxMeasureWork Work() const override;

protected:
    QString Hint() const override;
    void take(const Place& place) override;
    void drawShape() override;
    bool isOnGround() const override { return false; }

private:
    void followGround();
    bool layOnGround();

    std::vector<bool> ofGround; ///< of the points: its altitude is the ground's
    std::unique_ptr<AxShapeClamp> clamp;
};
