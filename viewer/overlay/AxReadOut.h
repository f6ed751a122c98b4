#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxCoordinateSystem.h>

#include <QString>

/// The texts of the coordinate read-out, digits in the C locale.
struct AXEARTHVIEWER_EXPORT AxReadOut
{
    QString longitude; ///< or what the system has first
    QString latitude;  ///< or what it has second; empty where one text tells all
    QString altitude;
    QString range;
    QString system; ///< empty for the default one

    /// Degrees, degrees, metres and metres. In the default system with six and two decimals, and NaN is shown
    /// as zero; in others there is a dash where there is no place, or none within the system's area.
    static AxReadOut Of(double longitude, double latitude, double altitude, double range,
                        const AxCoordinateSystem& system = {});
};
