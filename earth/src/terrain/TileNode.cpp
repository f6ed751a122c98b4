#include "terrain/TileNode.h"

#include "terrain/TilePicture.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osgUtil/CullVisitor>

#include <cmath>

namespace osgEarth {
namespace {
constexpr unsigned kOwnGeometry = 0;
constexpr unsigned kQuarters = 1;

constexpr std::size_t kClusterIndices = 3 * 32;
} // namespace

TileNode::TileNode(const std::shared_ptr<TileScene>& scene, std::shared_ptr<const TileContent> content)
    : _scene(scene)
{
    setCenterMode(USER_DEFINED_CENTER);
    setNumChildrenThatCannotBeExpired(1);
    osg::PagedLOD::addChild(new osg::Group, 0.0f, 1e30f);
    setContent(std::move(content));
    setName("Tile " + key().str());
}

TileNode::~TileNode()
{
    const TileKey mine = key();
    _content.reset();
    if (const auto scene = _scene.lock())
        scene->remove(mine);
}

void TileNode::setContent(std::shared_ptr<const TileContent> content)
{
    _content = std::move(content);
    const auto scene = _scene.lock();
    if (scene)
        scene->add(_content);

    setCenter(osg::Vec3f(_content->bulk.sphere.center()));
    setRadius(static_cast<float>(_content->bulk.sphere.radius()));

    if (scene && _content->refinable) {
        setRange(kQuarters, 0.0f, 1e30f);
        setFileName(kQuarters, scene->quartersFileName(key()));
    }
    clusterTriangles();
    buildDrawable();
}

void TileNode::buildDrawable()
{
    const TileMesh& mesh = _content->mesh;
    const TileBounds& own = _content->bounds;
    const TileBounds& picture = _content->texture.bounds;
    const auto coordinate = [](double from, double extent, double pictureFrom, double pictureExtent,
                               float unit) {
        return pictureCoordinate(static_cast<float>((from + extent * unit - pictureFrom) / pictureExtent));
    };

    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array(mesh.positions.begin(), mesh.positions.end());
    osg::ref_ptr<osg::Vec3Array> normals = new osg::Vec3Array(mesh.normals.begin(), mesh.normals.end());
    osg::ref_ptr<osg::Vec2Array> coordinates = new osg::Vec2Array;
    coordinates->reserve(static_cast<unsigned>(mesh.unit.size()));
    for (const osg::Vec2f& unit : mesh.unit)
        coordinates->push_back(
            {coordinate(own.west, own.width(), picture.west, picture.width(), unit.x()),
             coordinate(own.south, own.height(), picture.south, picture.height(), unit.y())});

    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setVertexArray(vertices);
    geometry->setNormalArray(normals, osg::Array::BIND_PER_VERTEX);
    geometry->setTexCoordArray(0, coordinates);
    geometry->addPrimitiveSet(new osg::DrawElementsUShort(
        GL_TRIANGLES, static_cast<unsigned>(mesh.indices.size()), mesh.indices.data()));
    geometry->setStateSet(_content->texture.state);

    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(geometry);
    osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform(osg::Matrix::translate(mesh.origin));
    place->addChild(geode);
    setChild(kOwnGeometry, place);
}

void TileNode::clusterTriangles()
{
    _clusters.clear();
    const TileMesh& mesh = _content->mesh;
    // Skirts are hit too: where adjacent tiles differ in detail, a skirt can be what is seen at that pixel.
    for (std::size_t first = 0; first < mesh.indices.size(); first += kClusterIndices) {
        const std::size_t last = std::min(first + kClusterIndices, mesh.indices.size());
        osg::BoundingBoxd box;
        for (std::size_t i = first; i < last; ++i)
            box.expandBy(osg::Vec3d(mesh.positions[mesh.indices[i]]));
        _clusters.push_back({first, last, mesh.origin + box.center(), box.radius()});
    }
}

osg::Group* TileNode::quarters()
{
    return getNumChildren() > kQuarters ? getChild(kQuarters)->asGroup() : nullptr;
}

TileNode* TileNode::quarterAt(double longitude, double latitude)
{
    osg::Group* group = quarters();
    if (!group)
        return nullptr;
    const TileBounds& bounds = _content->bounds;
    const unsigned east = longitude >= 0.5 * (bounds.west + bounds.east) ? 1u : 0u;
    const unsigned south = latitude < 0.5 * (bounds.south + bounds.north) ? 2u : 0u;
    return group->getNumChildren() == 4 ? static_cast<TileNode*>(group->getChild(south + east)) : nullptr;
}

void TileNode::attachQuarters(osg::Group* quarters)
{
    osg::PagedLOD::addChild(quarters);
}

bool TileNode::addChild(osg::Node* child)
{
    if (const auto* news = dynamic_cast<const TileNews*>(child)) {
        _pictureRequest = nullptr;
        if (news->content->revision >= _content->revision)
            setContent(news->content);
        if (const auto scene = _scene.lock())
            scene->onRenewed(*this);
        return false;
    }
    if (!osg::PagedLOD::addChild(child))
        return false;
    if (osg::Group* group = child->asGroup())
        if (const auto scene = _scene.lock())
            scene->onMerged(*group);
    return true;
}

void TileNode::traverse(osg::NodeVisitor& nv)
{
    if (nv.getFrameStamp() && nv.getVisitorType() == osg::NodeVisitor::CULL_VISITOR)
        setFrameNumberOfLastTraversal(nv.getFrameStamp()->getFrameNumber());

    if (nv.getVisitorType() == osg::NodeVisitor::CULL_VISITOR) {
        if (const auto scene = _scene.lock())
            traverseForCull(nv, scene->view());
        return;
    }
    if (nv.getTraversalMode() == osg::NodeVisitor::TRAVERSE_ACTIVE_CHILDREN) {
        const bool deeper = _drawnAsQuarters && quarters();
        getChild(deeper ? kQuarters : kOwnGeometry)->accept(nv);
        return;
    }
    osg::Group::traverse(nv);
}

void TileNode::traverseForCull(osg::NodeVisitor& nv, const TerrainView& view)
{
    if (view.hides(_content->bulk))
        return;
    const double excess = view.excessOf(*_content);
    _wantsQuarters = excess > 1.0;
    // A tile that was passed over on the way down has no picture of its own,
    // and its quarters are sharper than the one it borrows.
    _drawnAsQuarters = quarters() && (_wantsQuarters || _content->borrowsPicture);
    if (_drawnAsQuarters) {
        if (nv.getFrameStamp()) {
            setTimeStamp(kQuarters, nv.getFrameStamp()->getReferenceTime());
            setFrameNumber(kQuarters, nv.getFrameStamp()->getFrameNumber());
        }
        getChild(kQuarters)->accept(nv);
        requestPictures(nv, view, static_cast<float>(excess));
        return;
    }
    getChild(kOwnGeometry)->accept(nv);
    // With quarters next, the picture between would be left out, and a slow
    // source would have to send four before the ground shows any more.
    if (_wantsQuarters && !_content->borrowsPicture)
        requestQuarters(nv, static_cast<float>(excess));
}

void TileNode::requestPictures(osg::NodeVisitor& nv, const TerrainView& view, float priority)
{
    osg::NodeVisitor::DatabaseRequestHandler* pager = nv.getDatabaseRequestHandler();
    const auto scene = _scene.lock();
    osg::Group* group = quarters();
    if (!pager || !scene)
        return;
    for (unsigned i = 0; i < group->getNumChildren(); ++i) {
        auto* quarter = static_cast<TileNode*>(group->getChild(i));
        const bool passedOver = quarter->_wantsQuarters && quarter->quarters();
        if (!quarter->_content->borrowsPicture || passedOver || !view.isNear(quarter->_content->bulk))
            continue;
        osg::NodePath path = nv.getNodePath();
        path.push_back(group);
        path.push_back(quarter);
        pager->requestNodeFile(scene->pictureFileName(quarter->key()), path, priority, nv.getFrameStamp(),
                               quarter->_pictureRequest, getDatabaseOptions());
    }
}

void TileNode::requestQuarters(osg::NodeVisitor& nv, float priority)
{
    if (osg::NodeVisitor::DatabaseRequestHandler* pager = nv.getDatabaseRequestHandler())
        pager->requestNodeFile(getFileName(kQuarters), nv.getNodePath(), priority, nv.getFrameStamp(),
                               getDatabaseRequest(kQuarters), getDatabaseOptions());
}

bool TileNode::intersect(const TerrainRay& ray, double& distance, TileNode*& hit)
{
    const osg::Vec3d toCentre = osg::Vec3d(getCenter()) - ray.origin;
    const double along = toCentre * ray.direction;
    const double radius = getRadius();
    if (along < -radius || along - radius > distance || toCentre.length2() - along * along > radius * radius)
        return false;

    bool found = false;
    if (osg::Group* group = _drawnAsQuarters ? quarters() : nullptr) {
        for (unsigned i = 0; i < group->getNumChildren(); ++i)
            found = static_cast<TileNode*>(group->getChild(i))->intersect(ray, distance, hit) || found;
        return found;
    }

    const TileMesh& mesh = _content->mesh;
    const osg::Vec3d origin = ray.origin - mesh.origin;
    for (const Cluster& cluster : _clusters) {
        const osg::Vec3d to = cluster.centre - ray.origin;
        const double t = to * ray.direction;
        if (t < -cluster.radius || t - cluster.radius > distance ||
            to.length2() - t * t > cluster.radius * cluster.radius)
            continue;
        for (std::size_t i = cluster.firstIndex; i < cluster.lastIndex; i += 3) {
            // Möller and Trumbore, "Fast, minimum storage ray/triangle intersection", 1997.
            const osg::Vec3d a(mesh.positions[mesh.indices[i]]);
            const osg::Vec3d ab = osg::Vec3d(mesh.positions[mesh.indices[i + 1]]) - a;
            const osg::Vec3d ac = osg::Vec3d(mesh.positions[mesh.indices[i + 2]]) - a;
            const osg::Vec3d p = ray.direction ^ ac;
            const double determinant = ab * p;
            if (determinant <= 0.0)
                continue;
            const osg::Vec3d s = origin - a;
            const double u = s * p;
            if (u < 0.0 || u > determinant)
                continue;
            const osg::Vec3d q = s ^ ab;
            const double v = ray.direction * q;
            if (v < 0.0 || u + v > determinant)
                continue;
            const double d = (ac * q) / determinant;
            if (d > 0.0 && d < distance) {
                distance = d;
                hit = this;
                found = true;
            }
        }
    }
    return found;
}
} // namespace osgEarth
