#include <AxAlgorthm/AxMath.h>
#include <AxAlgorthm/AxPathMeasure.h>

#include <GeographicLib/Geocentric.hpp>
#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/GeodesicLine.hpp>

#include <algorithm>
#include <array>
#include <cmath>

using GeographicLib::Geocentric;
using GeographicLib::Geodesic;
using GeographicLib::GeodesicLine;

namespace {
constexpr double unknown = AxPathLeg::unknown;

std::vector<CAxVector3D> UsableOf(const std::vector<CAxVector3D>& places)
{
    std::vector<CAxVector3D> usable;
    std::copy_if(places.begin(), places.end(), std::back_inserter(usable), [](const CAxVector3D& place) {
        return std::isfinite(place.x()) && std::abs(place.y()) <= 90.0;
    });
    return usable;
}

double Turned(double azimuth)
{
    const double turned = azimuth < 0.0 ? azimuth + 360.0 : azimuth;
    return turned < 360.0 ? turned : 0.0;
}

// Two places closer than a hundredth of a millimetre have no direction.
constexpr double leastDirected = 1e-5;

AxPathLeg LegBetween(const CAxVector3D& from, const CAxVector3D& to)
{
    AxPathLeg leg;
    double azimuth = 0.0;
    double atEnd = 0.0;
    Geodesic::WGS84().Inverse(from.y(), from.x(), to.y(), to.x(), leg.length, azimuth, atEnd);
    if (leg.length > leastDirected)
        leg.bearing = Turned(azimuth);
    leg.rise = to.z() - from.z();
    return leg;
}

using Point = std::array<double, 3>;

Point InSpace(double longitude, double latitude, double altitude)
{
    Point point{};
    Geocentric::WGS84().Forward(latitude, longitude, altitude, point[0], point[1], point[2]);
    return point;
}

double Between(const Point& a, const Point& b)
{
    return std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
}

double LengthOf(const std::vector<CAxVector3D>& places)
{
    double length = 0.0;
    for (std::size_t i = 1; i < places.size(); ++i)
        length += LegBetween(places[i - 1], places[i]).length;
    return length;
}

double StepFor(double length, double step, std::size_t most)
{
    return std::max(step, length / static_cast<double>(std::max<std::size_t>(most, 1)));
}

// Calls with (part of the leg in metres, longitude, latitude), the start not, the end included, until told to
// stop by false.
template <typename Each> bool WalkLeg(const CAxVector3D& from, const CAxVector3D& to, double step, Each each)
{
    const GeodesicLine line = Geodesic::WGS84().InverseLine(
        from.y(), from.x(), to.y(), to.x(), Geodesic::LATITUDE | Geodesic::LONGITUDE | Geodesic::DISTANCE_IN);
    const double length = line.Distance();
    const auto parts = static_cast<std::size_t>(std::max(1.0, std::ceil(length / step - 1e-9)));
    for (std::size_t i = 1; i < parts; ++i) {
        const double along = length * static_cast<double>(i) / static_cast<double>(parts);
        double latitude = 0.0;
        double longitude = 0.0;
        line.Position(along, latitude, longitude);
        if (!each(along, longitude, latitude))
            return false;
    }
    return each(length, std::remainder(to.x(), 360.0), to.y());
}

struct Look
{
    std::optional<double> height;
    Point point{};
};

Look LookAt(const AxHeightAt& height, double longitude, double latitude)
{
    Look look{height(longitude, latitude), {}};
    if (look.height && !std::isfinite(*look.height))
        look.height.reset();
    if (look.height)
        look.point = InSpace(longitude, latitude, *look.height);
    return look;
}

void AddStep(AxPathLeg& leg, const Look& from, const Look& to)
{
    if (!from.height || !to.height) {
        leg.overGround = leg.ascent = leg.descent = unknown;
        return;
    }
    const double rise = *to.height - *from.height;
    leg.overGround += Between(from.point, to.point);
    leg.ascent += std::max(rise, 0.0);
    leg.descent += std::max(-rise, 0.0);
}

void SumUp(AxPathFigures& figures, const CAxVector3D& start, const CAxVector3D& end, bool hasGround)
{
    AxPathLeg& total = figures.total;
    total.bearing = LegBetween(start, end).bearing;
    total.rise = 0.0;
    if (hasGround)
        total.overGround = total.ascent = total.descent = 0.0;
    for (const AxPathLeg& leg : figures.legs) {
        total.length += leg.length;
        total.overGround += leg.overGround;
        total.rise += leg.rise;
        total.ascent += leg.ascent;
        total.descent += leg.descent;
    }
}
} // namespace

double AxPathLeg::Slope() const
{
    return length > 0.0 || rise != 0.0 ? RadiansToDegree(std::atan2(rise, length)) : unknown;
}

AxPathFigures AxMeasurePath(const std::vector<CAxVector3D>& all, const AxPathGround& ground,
                            const std::atomic<bool>* isOff)
{
    AxPathFigures figures;
    const std::vector<CAxVector3D> places = UsableOf(all);
    for (std::size_t i = 1; i < places.size(); ++i)
        figures.legs.push_back(LegBetween(places[i - 1], places[i]));
    if (figures.legs.empty())
        return figures;
    const bool hasGround = static_cast<bool>(ground.height);
    if (hasGround) {
        figures.step = StepFor(LengthOf(places), ground.step, ground.most);
        Look before = LookAt(ground.height, places.front().x(), places.front().y());
        for (std::size_t i = 0; i < figures.legs.size(); ++i) {
            AxPathLeg& leg = figures.legs[i];
            leg.overGround = leg.ascent = leg.descent = 0.0;
            const std::optional<double> start = before.height;
            const auto each = [&](double, double longitude, double latitude) {
                const Look look = LookAt(ground.height, longitude, latitude);
                AddStep(leg, before, look);
                before = look;
                return !(isOff && *isOff);
            };
            if (!WalkLeg(places[i], places[i + 1], figures.step, each))
                return figures;
            leg.rise = start && before.height ? *before.height - *start : unknown;
        }
    }
    SumUp(figures, places.front(), places.back(), hasGround);
    return figures;
}

std::vector<AxPathPlace> AxPlacesAlong(const std::vector<CAxVector3D>& all, double step, std::size_t most)
{
    std::vector<AxPathPlace> found;
    const std::vector<CAxVector3D> places = UsableOf(all);
    if (places.empty())
        return found;
    const double wanted = StepFor(LengthOf(places), step, most);
    found.push_back({0.0, std::remainder(places.front().x(), 360.0), places.front().y(), 0});
    for (std::size_t i = 1; i < places.size(); ++i) {
        const double before = found.back().along;
        WalkLeg(places[i - 1], places[i], wanted, [&](double along, double longitude, double latitude) {
            found.push_back({before + along, longitude, latitude, i - 1});
            return true;
        });
    }
    return found;
}

double AxSlantDistance(const CAxVector3D& from, const CAxVector3D& to)
{
    return Between(InSpace(from.x(), from.y(), from.z()), InSpace(to.x(), to.y(), to.z()));
}
