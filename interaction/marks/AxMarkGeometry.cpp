#include "interaction/marks/AxMarkGeometry.h"
#include "scene/shape/AxViewRay.h"

#include <osg/Geode>
#include <osgUtil/CullVisitor>

#include <algorithm>
#include <cmath>

namespace {
constexpr int mostNamesShown = 100;

/// Rectangles of the texture in the window.
class Quads
{
public:
    Quads(const QSize& ofWindow, const QSize& ofTexture) : window(ofWindow), texture(ofTexture) {}
    void Add(const QRect& picture, const QPoint& lowerLeft)
    {
        const auto width = static_cast<float>(window.width());
        const auto height = static_cast<float>(window.height());
        const auto across = static_cast<float>(texture.width());
        const auto down = static_cast<float>(texture.height());
        for (const bool isTop : {false, true})
            for (const bool isRight : {isTop, !isTop}) {
                const QPoint corner =
                    lowerLeft + QPoint(isRight ? picture.width() : 0, isTop ? picture.height() : 0);
                points->push_back({2.0f * static_cast<float>(corner.x()) / width - 1.0f,
                                   2.0f * static_cast<float>(corner.y()) / height - 1.0f, 0.0f});
                const int x = picture.x() + (isRight ? picture.width() : 0);
                const int y = picture.y() + (isTop ? 0 : picture.height());
                places->push_back({static_cast<float>(x) / across, static_cast<float>(y) / down});
            }
    }
    osg::ref_ptr<osg::Geometry> Make() const
    {
        osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
        geometry->setUseDisplayList(false);
        geometry->setUseVertexBufferObjects(true);
        geometry->setCullingActive(false);
        geometry->setVertexArray(points);
        geometry->setTexCoordArray(0, places);
        geometry->addPrimitiveSet(new osg::DrawArrays(GL_QUADS, 0, static_cast<int>(points->size())));
        return geometry;
    }

private:
    const QSize window;
    const QSize texture;
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec2Array> places = new osg::Vec2Array;
};
} // namespace

AxMarkGeometry::AxMarkGeometry()
{
    setUseDisplayList(false);
    setSupportsDisplayList(false);
    setUseVertexBufferObjects(true);
    setCullingActive(false);
    // It is empty, but who looks whether the picture has changed sees that it is declared out of date.
    setVertexArray(new osg::Vec3Array);
}

void AxMarkGeometry::SetMarks(const std::vector<osg::Vec3d>& world, const QStringList& ofMarks,
                              const QSet<int>& ofSelected)
{
    places = world;
    if (looks.size() != places.size())
        looks.assign(places.size(), AxMarkLook::Icon);
    if (names != ofMarks) {
        names = ofMarks;
        widths.assign(static_cast<std::size_t>(names.size()), 0);
    }
    selected = ofSelected;
    changed();
}

void AxMarkGeometry::SetPlace(int index, const osg::Vec3d& world)
{
    places[static_cast<std::size_t>(index)] = world;
    changed();
}

void AxMarkGeometry::changed()
{
    isLaidOut = false;
    getVertexArray()->dirty();
}

void AxMarkGeometry::accept(osg::NodeVisitor& visitor)
{
    if (!visitor.validNodeMask(*this))
        return;
    if (osgUtil::CullVisitor* cull = visitor.asCullVisitor())
        draw(*cull);
    else
        osg::Geometry::accept(visitor);
}

void AxMarkGeometry::draw(osgUtil::CullVisitor& cull)
{
    const osg::Viewport* window = cull.getViewport();
    if (places.empty() || !window || !(window->width() >= 1.0) || !(window->height() >= 1.0))
        return;
    const osg::Matrixd toClip = *cull.getModelViewMatrix() * *cull.getProjectionMatrix();
    const osg::Vec4d windowNow(window->x(), window->y(), window->width(), window->height());
    if (!isLaidOut || toClip != laidOutFor || windowNow != windowLaidOutFor) {
        layOut(toClip, osg::Matrixd::inverse(*cull.getModelViewMatrix()).getTrans(), *window);
        laidOutFor = toClip;
        windowLaidOutFor = windowNow;
        isLaidOut = true;
    }
    if (!shown)
        return;
    // It lies in the window, wherever the clip planes are.
    const auto nearFar = cull.getComputeNearFarMode();
    const auto inherited = cull.getInheritanceMask();
    cull.setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
    cull.pushStateSet(pictures.State());
    shown->accept(cull);
    cull.popStateSet();
    cull.setComputeNearFarMode(nearFar);
    cull.setInheritanceMask(inherited);
}

void AxMarkGeometry::layOut(const osg::Matrixd& toClip, const osg::Vec3d& eye, const osg::Viewport& window)
{
    const QSize size(static_cast<int>(window.width()), static_cast<int>(window.height()));
    const QSize icon = AxMarkIconSize();
    std::vector<AxMarkOnScreen> inSight;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const osg::Vec4d clip = osg::Vec4d(places[i], 1.0) * toClip;
        if (!(clip.w() > 0.0))
            continue;
        const double x = 0.5 * (clip.x() / clip.w() + 1.0) * size.width();
        const double y = 0.5 * (clip.y() / clip.w() + 1.0) * size.height();
        // A name stands beside its icon, and goes with it.
        if (!(std::abs(x - 0.5 * size.width()) <= 0.5 * (size.width() + icon.width())) ||
            !(y >= -icon.height()) || !(y <= size.height()) || AxIsBehindGlobe(eye, places[i]))
            continue;
        const int index = static_cast<int>(i);
        inSight.push_back({index,
                           {static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y))},
                           static_cast<float>(clip.w()),
                           selected.contains(index)});
    }
    AxMarkSizes sizes{size,
                      icon,
                      AxMarkPictures::HeightOfNames(),
                      std::min(mostNamesShown, AxMarkPictures::MostNames()),
                      {}};
    sizes.labelWidth = [this](int index) {
        int& width = widths[static_cast<std::size_t>(index)];
        if (width == 0)
            width = pictures.WidthOf(names[index]);
        return width;
    };
    drawn = AxPlaceMarks(std::move(inSight), sizes);
    looks.assign(places.size(), AxMarkLook::Nothing);
    for (const AxMarkPlaced& mark : drawn)
        looks[static_cast<std::size_t>(mark.index)] = mark.isIcon ? AxMarkLook::Icon : AxMarkLook::Dot;
    shown = drawn.empty() ? nullptr : quads(size);
}

osg::ref_ptr<osg::Geometry> AxMarkGeometry::quads(const QSize& window)
{
    Quads all(window, pictures.Size());
    const auto centred = [](const QRect& picture, const QPoint& foot, int below) {
        return foot - QPoint(picture.width() / 2, below);
    };
    for (const AxMarkPlaced& mark : drawn) {
        if (!mark.isIcon) {
            const QRect dot = pictures.Of(AxMarkPictures::Dot);
            all.Add(dot, centred(dot, mark.foot, dot.height() / 2));
            continue;
        }
        const bool isSelected = selected.contains(mark.index);
        const QRect picture = pictures.Of(isSelected ? AxMarkPictures::SelectedIcon : AxMarkPictures::Icon);
        const int rim = (picture.height() - pictures.Of(AxMarkPictures::Icon).height()) / 2;
        all.Add(picture, centred(picture, mark.foot, rim));
    }
    pictures.BeginNames();
    for (const AxMarkPlaced& mark : drawn) {
        const QRect picture = mark.label ? pictures.OfName(names[mark.index]) : QRect();
        if (!picture.isEmpty())
            all.Add(picture, *mark.label);
    }
    return all.Make();
}
