#pragma once
#include "interaction/measure/AxMeasureAdapter.h"

#include <osg/Vec2f>

#include <optional>

/**
 * A measurement between two places: a drag from one to the other, or a click on each.
 *
 * Ownership and thread as of AxMeasureAdapter.
 */
class AXEARTHVIEWER_EXPORT AxDraggedMeasure : public AxMeasureAdapter
{
    Q_OBJECT
public:
    using AxMeasureAdapter::AxMeasureAdapter;

public slots:
    void slotMousePressed(float windowX, float windowY) override;
    void slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDragging(float windowX, float windowY) override;
    void slotDragging(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotMouseRelease(float windowX, float windowY) override;
    void slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

protected:
    /// What the mouse tells of a place.
    struct Place
    {
        osg::Vec3d lngLat; ///< degrees, degrees, metres
        osg::Vec3d world;  ///< geocentric, metres
    };
    /// The first place, or the second one; it may be beside the globe.
    virtual void take(const Place& place) = 0;

private:
    struct Press
    {
        Place place;
        osg::Vec2f window; ///< pixels
    };

    bool isTremble(float windowX, float windowY) const;

    std::optional<Press> press; ///< of the left button that is held
    Place underMouse;
};
