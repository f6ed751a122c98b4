#include <osgEarth/Bounds>
#include <osgEarth/StringUtils>

#include <algorithm>
#include <cmath>

namespace osgEarth {
Bounds::Bounds(double xmin, double ymin, double xmax, double ymax)
{
    set(xmin, ymin, 0.0, xmax, ymax, 0.0);
}

bool Bounds::contains(double x, double y) const
{
    return isValid() && x >= xMin() && x <= xMax() && y >= yMin() && y <= yMax();
}

bool Bounds::contains(const Bounds& rhs) const
{
    return isValid() && rhs.isValid() && xMin() <= rhs.xMin() && xMax() >= rhs.xMax() &&
           yMin() <= rhs.yMin() && yMax() >= rhs.yMax();
}

Bounds Bounds::unionWith(const Bounds& rhs) const
{
    Bounds out = *this;
    out.expandBy(rhs);
    return out;
}

Bounds Bounds::intersectionWith(const Bounds& rhs) const
{
    if (!isValid() || !rhs.isValid())
        return {};
    Bounds out(std::max(xMin(), rhs.xMin()), std::max(yMin(), rhs.yMin()), std::min(xMax(), rhs.xMax()),
               std::min(yMax(), rhs.yMax()));
    return out.isValid() ? out : Bounds();
}

osg::Vec2d Bounds::center2d() const
{
    return {(xMin() + xMax()) / 2.0, (yMin() + yMax()) / 2.0};
}

double Bounds::radius2d() const
{
    return isValid() ? std::hypot(width(), height()) / 2.0 : 0.0;
}

std::string Bounds::toString() const
{
    return Stringify() << "(" << xMin() << "," << yMin() << " => " << xMax() << "," << yMax() << ")";
}
} // namespace osgEarth
