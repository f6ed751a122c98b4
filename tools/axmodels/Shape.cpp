#include "Shape.h"

#include <cmath>

namespace {
constexpr int roundSides = 12;
constexpr int rodSides = 6;
constexpr float turn = 6.2831853f;

osg::Vec3 OnSection(const Section& section, float x, int side)
{
    const float angle = turn * static_cast<float>(side) / roundSides;
    return {x + section.halfWidth * std::cos(angle), section.y,
            section.z + section.halfHeight * std::sin(angle)};
}

osg::Vec3 AcrossSection(const Section& section, int side)
{
    const float angle = turn * static_cast<float>(side) / roundSides;
    osg::Vec3 across(std::cos(angle) * section.halfHeight, 0.0f, std::sin(angle) * section.halfWidth);
    if (across.length2() < 1e-12f)
        across = {std::cos(angle), 0.0f, std::sin(angle)};
    across.normalize();
    return across;
}
} // namespace

void Shape::triangle(const osg::Vec3& a, const osg::Vec3& b, const osg::Vec3& c)
{
    osg::Vec3 across = (b - a) ^ (c - a);
    if (across.length2() < 1e-16f)
        return;
    across.normalize();
    for (const osg::Vec3& place : {a, b, c}) {
        places.push_back(place);
        normals.push_back(across);
    }
}

void Shape::triangle(const osg::Vec3 (&points)[3], const osg::Vec3 (&across)[3])
{
    if (((points[1] - points[0]) ^ (points[2] - points[0])).length2() < 1e-16f)
        return;
    for (int i = 0; i < 3; ++i) {
        places.push_back(points[i]);
        normals.push_back(across[i]);
    }
}

void Shape::prism(const std::vector<osg::Vec3>& below, const std::vector<osg::Vec3>& above)
{
    for (std::size_t i = 1; i + 1 < above.size(); ++i) {
        triangle(above[0], above[i], above[i + 1]);
        triangle(below[0], below[i + 1], below[i]);
    }
    for (std::size_t i = 0; i < above.size(); ++i) {
        const std::size_t next = (i + 1) % above.size();
        triangle(below[i], below[next], above[next]);
        triangle(below[i], above[next], above[i]);
    }
}

Shape& Shape::Body(const std::vector<Section>& sections, float x)
{
    for (std::size_t i = 0; i + 1 < sections.size(); ++i) {
        const Section& back = sections[i];
        const Section& front = sections[i + 1];
        // The surface leans as much as the body gets thinner.
        const auto lean = [&](const Section& section, int side) {
            const float slope = (back.halfWidth + back.halfHeight - front.halfWidth - front.halfHeight) /
                                (2.0f * (front.y - back.y));
            osg::Vec3 across = AcrossSection(section, side) + osg::Vec3(0.0f, slope, 0.0f);
            across.normalize();
            return across;
        };
        for (int side = 0; side < roundSides; ++side) {
            const osg::Vec3 corners[4] = {OnSection(back, x, side), OnSection(back, x, side + 1),
                                          OnSection(front, x, side + 1), OnSection(front, x, side)};
            const osg::Vec3 across[4] = {lean(back, side), lean(back, side + 1), lean(front, side + 1),
                                         lean(front, side)};
            triangle({corners[0], corners[2], corners[1]}, {across[0], across[2], across[1]});
            triangle({corners[0], corners[3], corners[2]}, {across[0], across[3], across[2]});
        }
    }
    for (int side = 0; side < roundSides; ++side) {
        const Section& back = sections.front();
        const Section& front = sections.back();
        triangle({x, back.y, back.z}, OnSection(back, x, side), OnSection(back, x, side + 1));
        triangle({x, front.y, front.z}, OnSection(front, x, side + 1), OnSection(front, x, side));
    }
    return *this;
}

Shape& Shape::Plate(const std::vector<osg::Vec2>& outline, float z, float thickness, float dihedral)
{
    std::vector<osg::Vec3> below, above;
    for (const osg::Vec2& point : outline) {
        const float height = z + dihedral * std::abs(point.x());
        below.emplace_back(point.x(), point.y(), height - 0.5f * thickness);
        above.emplace_back(point.x(), point.y(), height + 0.5f * thickness);
    }
    prism(below, above);
    return *this;
}

Shape& Shape::Fin(const std::vector<osg::Vec2>& outline, float x, float thickness)
{
    std::vector<osg::Vec3> left, right;
    for (const osg::Vec2& point : outline) {
        left.emplace_back(x - 0.5f * thickness, point.x(), point.y());
        right.emplace_back(x + 0.5f * thickness, point.x(), point.y());
    }
    prism(left, right);
    return *this;
}

Shape& Shape::Rod(const osg::Vec3& from, const osg::Vec3& to, float radius)
{
    osg::Vec3 along = to - from;
    along.normalize();
    osg::Vec3 side =
        along ^ (std::abs(along.z()) < 0.9f ? osg::Vec3(0.0f, 0.0f, 1.0f) : osg::Vec3(1.0f, 0.0f, 0.0f));
    side.normalize();
    const osg::Vec3 other = along ^ side;
    const auto out = [&](int i) {
        const float angle = turn * static_cast<float>(i) / rodSides;
        return side * std::cos(angle) + other * std::sin(angle);
    };
    for (int i = 0; i < rodSides; ++i) {
        const osg::Vec3 a = out(i), b = out(i + 1);
        triangle({from + a * radius, from + b * radius, to + b * radius}, {a, b, b});
        triangle({from + a * radius, to + b * radius, to + a * radius}, {a, b, a});
        triangle(from, from + b * radius, from + a * radius);
        triangle(to, to + a * radius, to + b * radius);
    }
    return *this;
}

Shape& Shape::Propeller(const osg::Vec3& hub, float radius, bool ahead, float angle)
{
    const float chord = 0.16f * radius;
    const float thickness = 0.05f * radius;
    for (const float half : {0.0f, 0.5f * turn}) {
        const float c = std::cos(angle + half), s = std::sin(angle + half);
        std::vector<osg::Vec3> below, above;
        for (const osg::Vec2& point : {osg::Vec2(0.0f, -0.5f * chord), osg::Vec2(0.6f * radius, -chord),
                                       osg::Vec2(radius, -0.3f * chord), osg::Vec2(radius, 0.3f * chord),
                                       osg::Vec2(0.0f, 0.5f * chord)}) {
            const osg::Vec2 turned(point.x() * c - point.y() * s, point.x() * s + point.y() * c);
            const osg::Vec3 place = hub + (ahead ? osg::Vec3(turned.x(), 0.0f, -turned.y())
                                                 : osg::Vec3(turned.x(), turned.y(), 0.0f));
            const osg::Vec3 up = ahead ? osg::Vec3(0.0f, thickness, 0.0f) : osg::Vec3(0.0f, 0.0f, thickness);
            below.push_back(place);
            above.push_back(place + up);
        }
        prism(below, above);
    }
    return *this;
}

Shape& Shape::Box(const osg::Vec3& low, const osg::Vec3& high)
{
    return Plate({{low.x(), low.y()}, {high.x(), low.y()}, {high.x(), high.y()}, {low.x(), high.y()}},
                 0.5f * (low.z() + high.z()), high.z() - low.z());
}

void Shape::PaintOn(osg::Geometry& model, const Paint& paint) const
{
    auto& vertices = static_cast<osg::Vec3Array&>(*model.getVertexArray());
    auto& across = static_cast<osg::Vec3Array&>(*model.getNormalArray());
    auto& colors = static_cast<osg::Vec4Array&>(*model.getColorArray());
    vertices.insert(vertices.end(), places.begin(), places.end());
    across.insert(across.end(), normals.begin(), normals.end());
    colors.insert(colors.end(), places.size(), osg::Vec4(paint.color, 1.0f));
}
