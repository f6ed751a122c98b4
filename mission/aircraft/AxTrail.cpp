#include "mission/aircraft/AxTrail.h"

namespace {
AxTrailGeometry* PieceOf(const osg::Geode& geode, unsigned index)
{
    return static_cast<AxTrailGeometry*>(const_cast<osg::Geode&>(geode).getDrawable(index));
}
} // namespace

AxTrailGeometry* AxTrail::newest() const
{
    return geode && geode->getNumDrawables() > 0 ? PieceOf(*geode, geode->getNumDrawables() - 1) : nullptr;
}

bool AxTrail::Append(const osg::Vec3d& world, float width, const osg::Vec4f& color, const std::string& name)
{
    if (!geode) {
        geode = new osg::Geode;
        geode->setName(name);
    }
    AxTrailGeometry* piece = newest();
    if (piece && piece->IsFull()) {
        if (osg::Vec3f(world) == osg::Vec3f(last))
            return false;
        piece->SetHead(std::nullopt);
        osg::ref_ptr<AxTrailGeometry> next = new AxTrailGeometry(width, color);
        next->SetJoint(last);
        geode->addDrawable(next);
        piece = next;
    } else if (!piece) {
        piece = new AxTrailGeometry(width, color);
        geode->addDrawable(piece);
    }
    if (!piece->Append(world))
        return false;
    last = world;
    return true;
}

void AxTrail::SetHead(const std::optional<osg::Vec3d>& world)
{
    if (AxTrailGeometry* piece = newest())
        piece->SetHead(world);
}

void AxTrail::Clear()
{
    if (geode)
        geode->removeDrawables(0, geode->getNumDrawables());
}

void AxTrail::Remove()
{
    Clear();
    if (!geode)
        return;
    const osg::ref_ptr<osg::Geode> kept = geode;
    while (kept->getNumParents() > 0)
        kept->getParent(0)->removeChild(kept);
    geode = nullptr;
}

int AxTrail::Count() const
{
    int count = 0;
    for (unsigned i = 0; geode && i < geode->getNumDrawables(); ++i)
        count += PieceOf(*geode, i)->Count();
    return count;
}

std::size_t AxTrail::Bytes() const
{
    std::size_t bytes = 0;
    for (unsigned i = 0; geode && i < geode->getNumDrawables(); ++i)
        bytes += PieceOf(*geode, i)->Bytes();
    return bytes;
}
