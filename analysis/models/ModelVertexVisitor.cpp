#include "analysis/models/ModelVertexVisitor.h"

#include <osg/Drawable>
#include <osg/Image>
#include <osg/LOD>
#include <osg/PagedLOD>
#include <osg/PrimitiveSet>
#include <osg/ProxyNode>
#include <osg/Transform>
#include <osgDB/Callbacks>
#include <osgDB/Options>
#include <osgDB/ReadFile>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {
/// Which of a drawable's vertices something is drawn with, and where they are. `isUsed` and `order` are empty
/// or false before and after, and go from drawable to drawable: parts that share a large array would each
/// clear room for the whole of it.
class UsedVertices : public osg::PrimitiveIndexFunctor
{
public:
    UsedVertices(const osg::Matrixd& toWorld, std::vector<osg::Vec3d>& vertices, std::size_t& dropped,
                 std::vector<char>& isUsed, std::vector<unsigned>& order)
        : matrix(toWorld), out(vertices), lost(dropped), used(isUsed), found(order)
    {
    }
    ~UsedVertices() override { take(); }
    UsedVertices(const UsedVertices&) = delete;
    UsedVertices& operator=(const UsedVertices&) = delete;

    void setVertexArray(unsigned n, const osg::Vec2* points) override { begin(n, points); }
    void setVertexArray(unsigned n, const osg::Vec3* points) override { begin(n, points); }
    void setVertexArray(unsigned n, const osg::Vec4* points) override { begin(n, points); }
    void setVertexArray(unsigned n, const osg::Vec2d* points) override { begin(n, points); }
    void setVertexArray(unsigned n, const osg::Vec3d* points) override { begin(n, points); }
    void setVertexArray(unsigned n, const osg::Vec4d* points) override { begin(n, points); }
    void drawArrays(GLenum, GLint first, GLsizei number) override
    {
        for (std::size_t i = static_cast<std::size_t>(std::max(0, first)), left = std::max(0, number);
             left > 0 && i < total; ++i, --left)
            use(i);
    }
    void drawElements(GLenum, GLsizei n, const GLubyte* indices) override { useEach(n, indices); }
    void drawElements(GLenum, GLsizei n, const GLushort* indices) override { useEach(n, indices); }
    void drawElements(GLenum, GLsizei n, const GLuint* indices) override { useEach(n, indices); }

private:
    static osg::Vec3d Place(const osg::Vec2& p) { return {p.x(), p.y(), 0.0}; }
    static osg::Vec3d Place(const osg::Vec2d& p) { return {p.x(), p.y(), 0.0}; }
    static osg::Vec3d Place(const osg::Vec3& p) { return p; }
    static osg::Vec3d Place(const osg::Vec3d& p) { return p; }
    static osg::Vec3d Place(const osg::Vec4& p) { return osg::Vec3d(p.x(), p.y(), p.z()) / p.w(); }
    static osg::Vec3d Place(const osg::Vec4d& p) { return osg::Vec3d(p.x(), p.y(), p.z()) / p.w(); }

    template <typename Point> void begin(unsigned count, const Point* points)
    {
        take();
        total = points ? count : 0;
        if (used.size() < total)
            used.resize(total, 0);
        placeOf = [points](std::size_t i) { return Place(points[i]); };
    }
    void use(std::size_t i)
    {
        if (!std::exchange(used[i], 1))
            found.push_back(static_cast<unsigned>(i));
    }
    template <typename Index> void useEach(GLsizei count, const Index* indices)
    {
        for (GLsizei i = 0; i < count; ++i)
            if (indices[i] < total)
                use(indices[i]);
    }
    void take()
    {
        const std::size_t count = found.empty() ? total : found.size();
        // Of many small drawables none may make room for itself alone.
        if (out.capacity() < out.size() + count)
            out.reserve(std::max(out.size() + count, 2 * out.capacity()));
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t at = found.empty() ? i : found[i];
            used[at] = 0;
            const osg::Vec3d place = placeOf(at) * matrix;
            if (std::isfinite(place.x()) && std::isfinite(place.y()) && std::isfinite(place.z()))
                out.push_back(place);
            else
                ++lost;
        }
        found.clear();
        total = 0;
    }

    const osg::Matrixd matrix;
    std::vector<osg::Vec3d>& out;
    std::size_t& lost;
    std::vector<char>& used;
    std::vector<unsigned>& found;
    std::size_t total = 0;
    std::function<osg::Vec3d(std::size_t)> placeOf;
};

/// Reads models as another callback does, and no pictures.
class WithoutPictures : public osgDB::ReadFileCallback
{
public:
    explicit WithoutPictures(osgDB::ReadFileCallback* other) : given(other) {}

    osgDB::ReaderWriter::ReadResult readNode(const std::string& file, const osgDB::Options* options) override
    {
        return given ? given->readNode(file, options) : osgDB::ReadFileCallback::readNode(file, options);
    }
    osgDB::ReaderWriter::ReadResult readImage(const std::string&, const osgDB::Options*) override
    {
        // None at all would be told as missing.
        const osg::ref_ptr<osg::Image> blank = new osg::Image;
        blank->allocateImage(1, 1, 1, GL_RGB, GL_UNSIGNED_BYTE);
        return blank.get();
    }

private:
    const osg::ref_ptr<osgDB::ReadFileCallback> given;
};

/// Below it a level of detail is the finest: the nearest of distances, or most pixels on the screen.
std::vector<unsigned> FinestOf(const osg::LOD& levels, unsigned count)
{
    const osg::LOD::RangeList& ranges = levels.getRangeList();
    const bool byPixels = levels.getRangeMode() == osg::LOD::PIXEL_SIZE_ON_SCREEN;
    const auto coarseness = [&](unsigned i) {
        if (i >= ranges.size())
            return std::numeric_limits<float>::max();
        return byPixels ? -ranges[i].second : ranges[i].first;
    };
    std::vector<unsigned> finest;
    for (unsigned i = 0; i < count; ++i) {
        if (!finest.empty() && coarseness(i) < coarseness(finest.front()))
            finest.clear();
        if (finest.empty() || coarseness(i) == coarseness(finest.front()))
            finest.push_back(i);
    }
    return finest;
}
} // namespace

ModelVertexVisitor::ModelVertexVisitor(const osg::Matrixd& matrix)
    : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), toWorld(matrix)
{
    setNodeMaskOverride(~0U);
}

void ModelVertexVisitor::apply(osg::Node& node)
{
    if (!isOver())
        traverse(node);
}

void ModelVertexVisitor::apply(osg::Transform& transform)
{
    if (transform.getReferenceFrame() != osg::Transform::RELATIVE_RF || isOver())
        return;
    const osg::Matrixd above = toWorld;
    transform.computeLocalToWorldMatrix(toWorld, this);
    traverse(transform);
    toWorld = above;
}

void ModelVertexVisitor::visitFinest(osg::LOD& levels)
{
    for (const unsigned i : FinestOf(levels, levels.getNumChildren()))
        levels.getChild(i)->accept(*this);
}

void ModelVertexVisitor::apply(osg::LOD& levels)
{
    if (!isOver())
        visitFinest(levels);
}

void ModelVertexVisitor::apply(osg::PagedLOD& levels)
{
    if (isOver())
        return;
    std::vector<osg::ref_ptr<osg::Node>> parts;
    const unsigned count = std::max(levels.getNumChildren(), levels.getNumFileNames());
    for (const unsigned i : FinestOf(levels, count)) {
        if (i < levels.getNumChildren())
            parts.emplace_back(levels.getChild(i));
        else if (mayRead(levels) && !levels.getFileName(i).empty())
            parts.emplace_back(
                read(levels.getDatabasePath() + levels.getFileName(i), levels.getDatabaseOptions()));
        else
            parts.emplace_back(nullptr);
    }
    // A level counts when it is whole, or there would be holes.
    if (std::any_of(parts.begin(), parts.end(), [](const auto& part) { return !part; })) {
        visitFinest(levels);
        return;
    }
    const int before = levelsToRead;
    if (levelsToRead > 0)
        --levelsToRead;
    for (const auto& part : parts)
        part->accept(*this);
    levelsToRead = before;
}

void ModelVertexVisitor::apply(osg::ProxyNode& proxy)
{
    if (isOver())
        return;
    if (proxy.getNumChildren() > 0 || !mayRead(proxy)) {
        traverse(proxy);
        return;
    }
    for (unsigned i = 0; i < proxy.getNumFileNames(); ++i)
        if (const osg::ref_ptr<osg::Node> part =
                read(proxy.getDatabasePath() + proxy.getFileName(i), proxy.getDatabaseOptions()))
            part->accept(*this);
}

void ModelVertexVisitor::apply(osg::Drawable& drawable)
{
    {
        UsedVertices used(toWorld, vertices, dropped, isUsed, usedOrder);
        drawable.accept(used);
    }
    if (!reduce || vertices.size() < reduceFrom)
        return;
    reduce(vertices);
    reduceFrom = vertices.size() + mostAtOnce;
}

bool ModelVertexVisitor::mayRead(const osg::Group& parent) const
{
    return levelsToRead != 0 && (filesToRead > 0 || parent.getNumChildren() == 0);
}

osg::ref_ptr<osg::Node> ModelVertexVisitor::read(const std::string& file, const osg::Referenced* given)
{
    --filesToRead;
    const auto* paged = dynamic_cast<const osgDB::Options*>(given);
    const osg::ref_ptr<osgDB::Options> options = paged ? paged->cloneOptions() : new osgDB::Options;
    options->setObjectCacheHint(osgDB::Options::CACHE_NONE);
    options->setReadFileCallback(new WithoutPictures(options->getReadFileCallback()));
    const osg::ref_ptr<osg::Node> node = osgDB::readRefNodeFile(file, options);
    if (!node)
        ++unread;
    return node;
}
