#include "camera/CameraFlight.h"

#include <algorithm>
#include <cmath>

namespace osgEarth::Util {
namespace {
/// Trade-off between zooming and panning; the cited study found people like about 1.4.
constexpr double kRho = 1.4;

/// Below this angle the course of a great circle is noise.
constexpr double kSamePlace = 1e-9;

double courseAlong(const osg::Vec3d& up, const osg::Vec3d& onward)
{
    const double longitude = std::atan2(up.y(), up.x());
    const double latitude = std::atan2(up.z(), std::hypot(up.x(), up.y()));
    const osg::Vec3d local = frameAt(latitude, longitude).inverse() * onward;
    return std::atan2(local.x(), local.y());
}

double between(double a, double b, double t)
{
    return a + (b - a) * t;
}
} // namespace

double eased(double time)
{
    const double t = std::clamp(time, 0.0, 1.0);
    return t * t * t * (t * (t * 6.0 - 15.0) + 10.0);
}

CameraFlight::CameraFlight(const FlightEnd& from, const FlightEnd& to, double earthRadius, bool arc)
    : _from(from), _to(to), _start(upAt(from.place.latitude, from.place.longitude)), _arc(arc)
{
    const osg::Vec3d end = upAt(to.place.latitude, to.place.longitude);
    _angle = std::atan2((_start ^ end).length(), _start * end);
    _onward = end - _start * (_start * end);
    if (_onward.normalize() < kSamePlace) {
        // Same place or its antipode: any course will do; take the meridian.
        _onward = frameAt(from.place.latitude, from.place.longitude) * osg::Vec3d(0, 1, 0);
    }
    _ground = _angle * earthRadius;
    if (_angle < kSamePlace)
        _turn = wrapAngle(to.heading - from.heading);
    else {
        const osg::Vec3d arriving = _onward * std::cos(_angle) - _start * std::sin(_angle);
        const double before = from.heading - courseAlong(_start, _onward);
        _turn = wrapAngle(to.heading - courseAlong(end, arriving) - before);
    }

    const double w0 = _from.range;
    const double w1 = _to.range;
    if (_arc && _ground > 1e-3 * std::max(w0, w1)) {
        const double rho2 = kRho * kRho;
        const double shift = rho2 * rho2 * _ground * _ground;
        const double b0 = (w1 * w1 - w0 * w0 + shift) / (2.0 * w0 * rho2 * _ground);
        const double b1 = (w1 * w1 - w0 * w0 - shift) / (2.0 * w1 * rho2 * _ground);
        _r0 = -std::asinh(b0);
        _length = (-std::asinh(b1) - _r0) / kRho;
    } else {
        _arc = false;
        _length = std::abs(std::log(w1 / w0)) + _ground / std::max(w0, w1);
    }
}

void CameraFlight::travel(double share, double& ground, double& range) const
{
    if (!_arc) {
        ground = share;
        range = std::exp(between(std::log(_from.range), std::log(_to.range), share));
        return;
    }
    const double s = share * _length;
    const double rho2 = kRho * kRho;
    ground = _from.range / rho2 * (std::cosh(_r0) * std::tanh(kRho * s + _r0) - std::sinh(_r0)) / _ground;
    range = _from.range * std::cosh(_r0) / std::cosh(kRho * s + _r0);
}

FlightEnd CameraFlight::at(double share) const
{
    if (!(share > 0.0))
        return _from;
    if (share >= 1.0)
        return _to;
    double ground = 0.0;
    FlightEnd now;
    travel(share, ground, now.range);
    ground = std::clamp(ground, 0.0, 1.0);

    const double angle = _angle * ground;
    const osg::Vec3d up = _start * std::cos(angle) + _onward * std::sin(angle);
    now.place.longitude = std::atan2(up.y(), up.x());
    now.place.latitude = std::atan2(up.z(), std::hypot(up.x(), up.y()));
    now.place.height = between(_from.place.height, _to.place.height, ground);
    now.pitch = between(_from.pitch, _to.pitch, share);
    if (_angle < kSamePlace)
        now.heading = wrapAngle(_from.heading + _turn * share);
    else {
        // Headings are held against the course, which is steady where north is not.
        const osg::Vec3d onward = _onward * std::cos(angle) - _start * std::sin(angle);
        const double before = _from.heading - courseAlong(_start, _onward);
        now.heading = wrapAngle(courseAlong(up, onward) + before + _turn * ground);
    }
    return now;
}
} // namespace osgEarth::Util
