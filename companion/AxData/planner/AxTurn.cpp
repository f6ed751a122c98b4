#include <AxAlgorthm/AxConstants.h>
#include <AxData/planner/AxTurn.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {
double WithinTurn(double angle)
{
    const double turned = std::fmod(angle, 2.0 * PI);
    return turned < 0.0 ? turned + 2.0 * PI : turned;
}

/// Three pieces: 1 turns left, -1 right, 0 flies straight; lengths in radii.
struct Way
{
    std::array<int, 3> pieces{};
    std::array<double, 3> lengths{};

    double Length() const { return lengths[0] + lengths[1] + lengths[2]; }
};

/// One of the six kinds between (0, 0) on course a and (d, 0) on course b, for radius 1; of endless length
/// where the kind has none. Formulas after Shkel and Lumelsky, Robotics and Autonomous Systems 34 (2001).
Way WayOfKind(const std::array<int, 3>& pieces, double d, double a, double b)
{
    constexpr double endless = std::numeric_limits<double>::infinity();
    const double sa = std::sin(a);
    const double sb = std::sin(b);
    const double ca = std::cos(a);
    const double cb = std::cos(b);
    const double cab = std::cos(a - b);
    Way way{pieces, {endless, 0.0, 0.0}};
    const auto set = [&way](double t, double p, double q) {
        way.lengths = {WithinTurn(t), p, WithinTurn(q)};
    };
    if (pieces[1] != 0) { // RLR or LRL
        const int side = pieces[0];
        const double cosine = (6.0 - d * d + 2.0 * cab - 2.0 * side * d * (sa - sb)) / 8.0;
        if (std::abs(cosine) > 1.0)
            return way;
        const double p = WithinTurn(2.0 * PI - std::acos(cosine));
        const double t = side < 0 ? a - std::atan2(ca - cb, d - sa + sb) + 0.5 * p
                                  : -a + std::atan2(-ca + cb, d + sa - sb) + 0.5 * p;
        set(t, p, side < 0 ? a - b - t + p : b - a - t + p);
        return way;
    }
    if (pieces[0] == pieces[2]) { // LSL or RSR
        const double side = pieces[0];
        const double square = 2.0 + d * d - 2.0 * cab + 2.0 * side * d * (sa - sb);
        if (square < 0.0)
            return way;
        const double toward = std::atan2(side * (cb - ca), d + side * (sa - sb));
        set(side * (toward - a), std::sqrt(square), side * (b - toward));
        return way;
    }
    const double side = pieces[0]; // LSR or RSL
    const double square = -2.0 + d * d + 2.0 * cab + 2.0 * side * d * (sa + sb);
    if (square < 0.0)
        return way;
    const double p = std::sqrt(square);
    const double toward = std::atan2(-side * (ca + cb), d + side * (sa + sb)) - std::atan2(-2.0 * side, p);
    set(side * (toward - a), p, side * (toward - b));
    return way;
}

Way ShortestWay(double d, double a, double b)
{
    static constexpr std::array<std::array<int, 3>, 6> kinds{
        {{1, 0, 1}, {-1, 0, -1}, {1, 0, -1}, {-1, 0, 1}, {-1, 1, -1}, {1, -1, 1}}};
    Way shortest = WayOfKind(kinds[0], d, a, b);
    for (std::size_t i = 1; i < kinds.size(); ++i) {
        const Way way = WayOfKind(kinds[i], d, a, b);
        if (way.Length() < shortest.Length())
            shortest = way;
    }
    return shortest;
}

AxPlanPose After(const AxPlanPose& pose, int piece, double length, double radius)
{
    const double x = pose.place.x();
    const double y = pose.place.y();
    const double s = std::sin(pose.course);
    const double c = std::cos(pose.course);
    if (piece == 0)
        return {{x + radius * length * c, y + radius * length * s}, pose.course};
    const double course = pose.course + piece * length;
    return {{x + piece * radius * (std::sin(course) - s), y - piece * radius * (std::cos(course) - c)},
            course};
}
} // namespace

AxPlanLine AxTurnBetween(const AxPlanPose& from, const AxPlanPose& to, double radius)
{
    constexpr double mostTurn = PI / 9.0;
    if (!(radius > 0.0))
        return {};
    const double x = to.place.x() - from.place.x();
    const double y = to.place.y() - from.place.y();
    const double bearing = std::atan2(y, x);
    const Way way = ShortestWay(std::hypot(x, y) / radius, WithinTurn(from.course - bearing),
                                WithinTurn(to.course - bearing));
    AxPlanLine line;
    AxPlanPose pose = from;
    for (std::size_t i = 0; i < 3; ++i) {
        const int steps =
            way.pieces[i] == 0 ? 1 : std::max(1, static_cast<int>(std::ceil(way.lengths[i] / mostTurn)));
        if (way.lengths[i] < 1e-9)
            continue;
        for (int step = 0; step < steps; ++step) {
            pose = After(pose, way.pieces[i], way.lengths[i] / steps, radius);
            line.push_back(pose.place);
        }
    }
    if (!line.empty())
        line.pop_back(); // the end
    return line;
}
