#include <AxAlgorthm/AxFootprint.h>
#include <AxAlgorthm/AxMath.h>

#include <array>
#include <cmath>

namespace {
struct Ray
{
    double right;
    double ahead;
    double down;
};

/// A corner ray after the camera is tilted about its right-hand axis.
Ray tilted(double right, double imageUp, double focal, double tilt)
{
    return {right, imageUp * std::cos(tilt) + focal * std::sin(tilt),
            focal * std::cos(tilt) - imageUp * std::sin(tilt)};
}
} // namespace

QList<QPointF> CalcFootprintMapCoordinate(double height, int imageWidth, int imageHeight, double scale,
                                          double heading, double cameraAngle)
{
    const bool usable = std::isfinite(height) && height > 0.0 && imageWidth > 0 && imageHeight > 0 &&
                        std::isfinite(scale) && scale > 0.0 && std::isfinite(heading) &&
                        std::isfinite(cameraAngle);
    if (!usable)
        return {};

    const double tilt = DegreeToRadians(cameraAngle);
    const double yaw = DegreeToRadians(heading);
    const double halfWidth = 0.5 * imageWidth;
    const double halfHeight = 0.5 * imageHeight;
    const std::array<QPointF, 4> image{QPointF(-halfWidth, halfHeight), QPointF(halfWidth, halfHeight),
                                       QPointF(halfWidth, -halfHeight), QPointF(-halfWidth, -halfHeight)};

    bool seesGround = false;
    QList<QPointF> corners;
    for (const QPointF& pixel : image) {
        const Ray ray = tilted(pixel.x(), pixel.y(), scale, tilt);
        const double level = std::hypot(ray.right, ray.ahead);
        double perUnit = 0.0;
        if (ray.down > 0.0) {
            seesGround = true;
            perUnit = height / ray.down;
        }
        if (ray.down <= 0.0 || perUnit * level > MaxFootprintDistance)
            perUnit = level > 0.0 ? MaxFootprintDistance / level : 0.0;
        const double right = ray.right * perUnit;
        const double ahead = ray.ahead * perUnit;
        corners.append(QPointF(right * std::cos(yaw) + ahead * std::sin(yaw),
                               ahead * std::cos(yaw) - right * std::sin(yaw)));
    }
    return seesGround ? corners : QList<QPointF>();
}
