#pragma once
#include <AxData/planner/AxPlanner.h>
#include <AxData/planner/AxPlanPlane.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace Planned {
using Role = AxPlanPoint::Role;
constexpr double pi = 3.14159265358979323846;

/// Blocks of many shapes and sizes in many places, the same in every run.
struct RandomBlock
{
    explicit RandomBlock(unsigned seed) : random(seed)
    {
        const QPointF places[] = {{-105.0, 37.4}, {12.0, 0.001}, {179.99, -17.0}, {24.0, 78.0}};
        middle = places[seed % 4];
        radius = std::pow(10.0, Within(2.0, 3.3));
        const int corners = 3 + static_cast<int>(Within(0.0, 30.0));
        request.outline = Star(corners, radius);
        if (seed % 3 == 0)
            request.holes = {Star(5, 0.2 * radius)};
        request.height = Within(60.0, 200.0);
        request.sideOverlap = Within(0.3, 0.8);
        request.forwardOverlap = Within(0.3, 0.8);
        if (seed % 2) {
            request.aircraft.turnRadius = Within(20.0, 90.0);
            request.aircraft.leadIn = Within(0.0, 80.0);
        }
        if (seed % 5 == 0)
            request.heading = Within(-360.0, 360.0);
    }
    double Within(double from, double to) { return std::uniform_real_distribution<double>(from, to)(random); }
    QList<QPointF> Star(int corners, double size)
    {
        QList<QPointF> ring;
        for (int i = 0; i < corners; ++i) {
            const double angle = 2.0 * pi * (i + Within(-0.3, 0.3)) / corners;
            const double away = size * Within(0.35, 1.0);
            ring += AxPlanPlane({middle}).ToLngLat({away * std::cos(angle), away * std::sin(angle)});
        }
        return ring;
    }

    std::mt19937 random;
    QPointF middle;
    double radius = 0.0;
    AxPlanRequest request;
};

inline AxPlanLine Box(double west, double south, double east, double north)
{
    return {{west, south}, {east, south}, {east, north}, {west, north}};
}

template <typename Place> CAxPoint2D At(const AxPlanPlane& plane, const Place& place)
{
    return plane.ToPlane(QPointF(place.longitude, place.latitude));
}

inline int Count(const std::vector<AxPlanWarning>& warnings, AxPlanWarning::Kind kind)
{
    return static_cast<int>(std::count_if(warnings.begin(), warnings.end(),
                                          [kind](const auto& warning) { return warning.kind == kind; }));
}

/// Of a ring in metres around a place, from 100 m above it.
inline AxPlanRequest RequestOver(const AxPlanLine& ring, const QPointF& middle = {10.0, 45.0})
{
    AxPlanRequest request;
    for (const CAxPoint2D& corner : ring)
        request.outline += AxPlanPlane({middle}).ToLngLat(corner);
    request.height = 100.0;
    return request;
}
} // namespace Planned
