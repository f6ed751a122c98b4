#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QString>

/// The four texts of the coordinate read-out, digits in the C locale.
struct AXEARTHVIEWER_EXPORT AxReadOut
{
    QString longitude;
    QString latitude;
    QString altitude;
    QString range;

    /// Degrees, degrees, metres and metres, with six and two decimals. NaN is shown as zero.
    static AxReadOut Of(double longitude, double latitude, double altitude, double range);
};
