#pragma once
#include "interaction/measure/AxMeasureAdapter.h"
#include "scene/shape/AxShapeClamp.h"

#include <osg/Vec2f>

#include <memory>

/**
 * Measures how much higher one place is than another, with the horizontal distance, the straight line and the
 * slope: a drag from one to the other, or a click on each. A triangle stands on the map, upright at the
 * higher place. A place on the ground has the ground's height, another one, as on a model, its own.
 *
 * Ownership and thread as of AxMeasureAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxMeasureAltitudeHandler : public AxMeasureAdapter
{
    Q_OBJECT
public:
    CAxMeasureAltitudeHandler(CAxEarthViewer* viewer, QObject* parent, AxMeasurements& measurements);
    ~CAxMeasureAltitudeHandler() override;

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::Open, 2, false}; }
    AxMeasureWork Work() const override;

public slots:
    void slotMousePressed(float windowX, float windowY) override;
    void slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDragging(float windowX, float windowY) override;
    void slotDragging(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotMouseRelease(float windowX, float windowY) override;
    void slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

protected:
    QString Hint() const override;
    void drawShape() override;
    bool isOnGround() const override { return false; }

private:
    struct Place
    {
        osg::Vec3d lngLat;
        osg::Vec3d world;
    };
    struct Press
    {
        Place place;
        osg::Vec2f window; ///< pixels
    };

    void take(const Place& place);
    bool isTremble(float windowX, float windowY) const;
    void followGround();
    bool layOnGround();

    std::optional<Press> press; ///< of the left button that is held
    Place underMouse;
    std::vector<bool> ofGround; ///< of the points: its altitude is the ground's
    std::unique_ptr<AxShapeClamp> clamp;
};
