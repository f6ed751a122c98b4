#pragma once
#include "viewer/AxShot.h"

#include <AxBaseUI/CAxBaseDialog.h>

#include <QSize>

#include <vector>

class LimitedNumber;
class QLabel;
class QPushButton;

/// Asks how a flight along a route is to be pictured: how far apart, looking where, how large. GUI thread.
class RoutePicturesBox : public CAxBaseDialog
{
    Q_OBJECT
public:
    static constexpr std::size_t most = 10000; ///< pictures

    /// Places in degrees, degrees and metres as the map has them.
    RoutePicturesBox(std::vector<osg::Vec3d> route, double length, QWidget* parent);

    std::vector<AxShot> Shots() const;

private:
    std::vector<AxShotPose> Poses() const;
    void Follow();

    const std::vector<osg::Vec3d> route;
    LimitedNumber* step;
    LimitedNumber* pitch;
    LimitedNumber* field;
    LimitedNumber* width;
    LimitedNumber* height;
    QLabel* told;
};
