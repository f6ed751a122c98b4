#include <algorithm>
#include <cmath>
#include <osgEarthSymbology/Geometry>

namespace osgEarth::Symbology {
Geometry::~Geometry() = default;
PointSet::~PointSet() = default;
LineString::~LineString() = default;
Ring::~Ring() = default;
Polygon::~Polygon() = default;
MultiGeometry::~MultiGeometry() = default;

namespace {
double distance2D(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::hypot(b.x() - a.x(), b.y() - a.y());
}

double signedArea(const Vec3dVector& p)
{
    // Counted from the first point, which keeps the precision of large coordinates.
    double sum = 0.0;
    for (size_t i = 1; i + 1 < p.size(); ++i) {
        const osg::Vec3d a = p[i] - p[0], b = p[i + 1] - p[0];
        sum += a.x() * b.y() - b.x() * a.y();
    }
    return 0.5 * sum;
}
} // namespace

std::string Geometry::toString(Type t)
{
    switch (t) {
    case TYPE_POINTSET:
        return "pointset";
    case TYPE_LINESTRING:
        return "linestring";
    case TYPE_RING:
        return "ring";
    case TYPE_POLYGON:
        return "polygon";
    case TYPE_MULTI:
        return "multi";
    default:
        return "unknown";
    }
}

Geometry* Geometry::create(Type type, const Vec3dVector* toCopy)
{
    Geometry* made = nullptr;
    switch (type) {
    case TYPE_POINTSET:
        made = new PointSet(toCopy);
        break;
    case TYPE_LINESTRING:
        made = new LineString(toCopy);
        break;
    case TYPE_RING:
        made = new Ring(toCopy);
        break;
    case TYPE_POLYGON:
        made = new Polygon(toCopy);
        break;
    case TYPE_MULTI: {
        auto* multi = new MultiGeometry();
        if (toCopy)
            multi->add(new PointSet(toCopy));
        made = multi;
        break;
    }
    default:
        break;
    }
    if (Ring* ring = dynamic_cast<Ring*>(made))
        ring->open();
    return made;
}

Geometry* Geometry::cloneAs(const Type& newType) const
{
    if (newType == TYPE_UNKNOWN)
        return new Geometry(*this);
    return create(newType, &_points);
}

osg::Vec3Array* Geometry::createVec3Array() const
{
    auto* array = new osg::Vec3Array();
    array->assign(_points.begin(), _points.end());
    return array;
}

osg::Vec3dArray* Geometry::createVec3dArray() const
{
    auto* array = new osg::Vec3dArray();
    array->assign(_points.begin(), _points.end());
    return array;
}

Bounds Geometry::getBounds() const
{
    Bounds bounds;
    for (const osg::Vec3d& p : _points)
        bounds.expandBy(p.x(), p.y(), p.z());
    return bounds;
}

double Geometry::getLength() const
{
    double length = 0.0;
    for (size_t i = 1; i < size(); ++i)
        length += distance2D(_points[i - 1], _points[i]);
    return length;
}

osg::Vec3d Geometry::localize()
{
    const Bounds bounds = getBounds();
    if (!bounds.isValid())
        return {};
    const osg::Vec3d middle(bounds.center().x(), bounds.center().y(), 0.0);
    delocalize(-middle);
    return middle;
}

void Geometry::delocalize(const osg::Vec3d& offset)
{
    for (GeometryIterator it(this); it.hasMore();)
        for (osg::Vec3d& p : *it.next())
            p += offset;
}

Geometry::Orientation Geometry::getOrientation() const
{
    const double area = signedArea(_points);
    return area > 0.0 ? ORIENTATION_CCW : area < 0.0 ? ORIENTATION_CW : ORIENTATION_DEGENERATE;
}

void Geometry::rewind(Orientation orientation)
{
    const Orientation current = getOrientation();
    if (current != orientation && current != ORIENTATION_DEGENERATE && orientation != ORIENTATION_DEGENERATE)
        std::reverse(_points.begin(), _points.end());
}

void Geometry::removeDuplicates()
{
    _points.erase(std::unique(_points.begin(), _points.end()), _points.end());
}

void Geometry::removeColinearPoints()
{
    if (size() < 3)
        return;
    const bool closed = getType() == TYPE_RING || getType() == TYPE_POLYGON;
    Vec3dVector kept;
    for (size_t i = 0; i < size(); ++i) {
        const bool inner = closed || (i > 0 && i + 1 < size());
        const osg::Vec3d& before = kept.empty() ? _points.back() : kept.back();
        const osg::Vec3d a = _points[i] - before, b = _points[(i + 1) % size()] - _points[i];
        const double turn = a.x() * b.y() - a.y() * b.x();
        const double ahead = a.x() * b.x() + a.y() * b.y();
        if (!inner || std::abs(turn) > 1e-12 * (a.length2() + b.length2()) || ahead < 0.0)
            kept.push_back(_points[i]);
    }
    _points.swap(kept);
}

bool LineString::getSegment(double length, osg::Vec3d& start, osg::Vec3d& end) const
{
    double passed = 0.0;
    for (size_t i = 1; i < size(); ++i) {
        passed += distance2D(_points[i - 1], _points[i]);
        if (passed >= length) {
            start = _points[i - 1];
            end = _points[i];
            return true;
        }
    }
    return false;
}

double Ring::getLength() const
{
    const double length = Geometry::getLength();
    return isOpen() && size() > 1 ? length + distance2D(back(), front()) : length;
}

Geometry* Ring::cloneAs(const Type& newType) const
{
    if (newType == TYPE_LINESTRING) {
        auto* line = new LineString(&_points);
        if (isOpen() && size() > 1)
            line->push_back(front());
        return line;
    }
    return Geometry::cloneAs(newType);
}

void Ring::rewind(Orientation orientation)
{
    open();
    Geometry::rewind(orientation);
}

bool Ring::contains2D(double x, double y) const
{
    bool inside = false;
    for (size_t i = 0, j = size() - 1; i < size(); j = i++) {
        const osg::Vec3d &a = _points[i], &b = _points[j];
        if ((a.y() > y) != (b.y() > y) && x < (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()) + a.x())
            inside = !inside;
    }
    return inside;
}

double Ring::getSignedArea2D() const
{
    return signedArea(_points);
}

void Ring::open()
{
    while (size() > 1 && front() == back())
        pop_back();
}

void Ring::close()
{
    if (isOpen() && !empty())
        push_back(osg::Vec3d(front()));
}

bool Ring::isOpen() const
{
    return size() < 2 || front() != back();
}

Polygon::Polygon(const Polygon& rhs) : Ring(rhs)
{
    for (const auto& hole : rhs._holes)
        _holes.push_back(new Ring(*hole));
}

int Polygon::getTotalPointCount() const
{
    int total = static_cast<int>(size());
    for (const auto& hole : _holes)
        total += static_cast<int>(hole->size());
    return total;
}

Geometry* Polygon::cloneAs(const Type& newType) const
{
    return newType == TYPE_POLYGON ? new Polygon(*this) : Ring::cloneAs(newType);
}

bool Polygon::contains2D(double x, double y) const
{
    return Ring::contains2D(x, y) && std::none_of(_holes.begin(), _holes.end(),
                                                  [=](const auto& hole) { return hole->contains2D(x, y); });
}

void Polygon::open()
{
    Ring::open();
    for (auto& hole : _holes)
        hole->open();
}

void Polygon::close()
{
    Ring::close();
    for (auto& hole : _holes)
        hole->close();
}

void Polygon::removeDuplicates()
{
    Ring::removeDuplicates();
    for (auto& hole : _holes)
        hole->removeDuplicates();
}

void Polygon::removeColinearPoints()
{
    Ring::removeColinearPoints();
    for (auto& hole : _holes)
        hole->removeColinearPoints();
}

MultiGeometry::MultiGeometry(const MultiGeometry& rhs) : Geometry(rhs)
{
    for (const auto& part : rhs._parts)
        _parts.push_back(part->clone());
}

Geometry::Type MultiGeometry::getComponentType() const
{
    return _parts.empty() ? TYPE_UNKNOWN : _parts.front()->getType();
}

int MultiGeometry::getTotalPointCount() const
{
    int total = 0;
    for (const auto& part : _parts)
        total += part->getTotalPointCount();
    return total;
}

unsigned MultiGeometry::getNumGeometries() const
{
    unsigned total = 0;
    for (const auto& part : _parts)
        total += part->getNumGeometries();
    return total;
}

double MultiGeometry::getLength() const
{
    double total = 0.0;
    for (const auto& part : _parts)
        total += part->getLength();
    return total;
}

Geometry* MultiGeometry::cloneAs(const Type& newType) const
{
    if (newType == TYPE_MULTI)
        return new MultiGeometry(*this);
    auto* multi = new MultiGeometry();
    for (const auto& part : _parts)
        if (Geometry* cloned = part->cloneAs(newType))
            multi->add(cloned);
    return multi;
}

bool MultiGeometry::isValid() const
{
    return !_parts.empty() &&
           std::all_of(_parts.begin(), _parts.end(), [](const auto& part) { return part->isValid(); });
}

Bounds MultiGeometry::getBounds() const
{
    Bounds bounds;
    for (const auto& part : _parts)
        bounds.expandBy(part->getBounds());
    return bounds;
}

void MultiGeometry::rewind(Orientation orientation)
{
    for (auto& part : _parts)
        part->rewind(orientation);
}

void MultiGeometry::removeDuplicates()
{
    for (auto& part : _parts)
        part->removeDuplicates();
}

void MultiGeometry::removeColinearPoints()
{
    for (auto& part : _parts)
        part->removeColinearPoints();
}

GeometryIterator::GeometryIterator(Geometry* geom, bool traversePolygonHoles) : _holes(traversePolygonHoles)
{
    if (geom)
        _stack.push(geom);
    settle();
}

/// Opens multi-geometries until a plain part lies on top.
void GeometryIterator::settle()
{
    while (!_stack.empty()) {
        auto* multi = dynamic_cast<MultiGeometry*>(_stack.top());
        if (!multi)
            return;
        _stack.pop();
        for (auto part = multi->getComponents().rbegin(); part != multi->getComponents().rend(); ++part)
            _stack.push(part->get());
    }
}

Geometry* GeometryIterator::next()
{
    if (_stack.empty())
        return nullptr;
    Geometry* current = _stack.top();
    _stack.pop();
    if (auto* polygon = _holes ? dynamic_cast<Polygon*>(current) : nullptr)
        for (auto hole = polygon->getHoles().rbegin(); hole != polygon->getHoles().rend(); ++hole)
            _stack.push(hole->get());
    settle();
    return current;
}
} // namespace osgEarth::Symbology
