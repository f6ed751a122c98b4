#include "interaction/models/AxModelRepair.h"
#include "interaction/models/AxModelVertices.h"

#include <osg/Geometry>
#include <osg/TriangleIndexFunctor>

#include <cstring>

namespace {
struct GoodTriangles
{
    bool IsGood(unsigned corner) const
    {
        return corner < vertices->Count() && (!vertices->AreRead() || vertices->IsPlace(corner));
    }
    void operator()(unsigned a, unsigned b, unsigned c)
    {
        if (IsGood(a) && IsGood(b) && IsGood(c))
            for (const unsigned corner : {a, b, c})
                indices->push_back(corner);
        else
            ++lost;
    }
    const AxModelVertices* vertices = nullptr;
    osg::DrawElementsUInt* indices = nullptr;
    qint64 lost = 0;
};

bool ReachesBeyond(const osg::Geometry& geometry, std::size_t count)
{
    for (unsigned i = 0; i < geometry.getNumPrimitiveSets(); ++i) {
        const osg::PrimitiveSet& set = *geometry.getPrimitiveSet(i);
        for (unsigned j = 0; j < set.getNumIndices(); ++j)
            if (set.index(j) >= count)
                return true;
    }
    return false;
}

bool IsTooShort(const osg::Array* array, std::size_t count)
{
    return array && array->getBinding() == osg::Array::BIND_PER_VERTEX && array->getNumElements() < count;
}

void DropShortArrays(osg::Geometry& geometry, std::size_t count)
{
    if (IsTooShort(geometry.getNormalArray(), count))
        geometry.setNormalArray(nullptr);
    if (IsTooShort(geometry.getColorArray(), count))
        geometry.setColorArray(nullptr);
    for (unsigned unit = 0; unit < geometry.getNumTexCoordArrays(); ++unit)
        if (IsTooShort(geometry.getTexCoordArray(unit), count))
            geometry.setTexCoordArray(unit, nullptr);
}
} // namespace

qint64 AxRepairGeometry(osg::Geometry& geometry, std::set<osg::ref_ptr<osg::Array>>& faulty)
{
    osg::Array* array = geometry.getVertexArray();
    if (!array)
        return 0;
    const AxModelVertices vertices(array);
    const std::size_t count = vertices.Count();
    DropShortArrays(geometry, count);
    bool isAnyBad = false;
    for (std::size_t i = 0; vertices.AreRead() && i < count && !isAnyBad; ++i)
        isAnyBad = !vertices.IsPlace(i);
    if (!isAnyBad && !ReachesBeyond(geometry, count))
        return 0;
    osg::TriangleIndexFunctor<GoodTriangles> triangles;
    osg::ref_ptr<osg::DrawElementsUInt> good = new osg::DrawElementsUInt(GL_TRIANGLES);
    triangles.vertices = &vertices;
    triangles.indices = good.get();
    geometry.accept(triangles);
    geometry.removePrimitiveSet(0, geometry.getNumPrimitiveSets());
    if (isAnyBad)
        faulty.insert(array);
    if (good->empty())
        geometry.setVertexArray(new osg::Vec3Array);
    else
        geometry.addPrimitiveSet(good);
    geometry.dirtyBound();
    return triangles.lost;
}

void AxFillFaultyVertices(osg::Array& array)
{
    const AxModelVertices vertices(&array);
    const std::size_t count = vertices.Count();
    std::size_t some = 0;
    while (some < count && !vertices.IsPlace(some))
        ++some;
    if (some == count)
        return;
    const std::size_t bytes = array.getElementSize();
    auto* data = static_cast<char*>(const_cast<void*>(array.getDataPointer()));
    for (std::size_t i = 0; i < count; ++i)
        if (!vertices.IsPlace(i))
            std::memcpy(data + i * bytes, data + some * bytes, bytes);
    array.dirty();
}
