#include "scene/shape/AxLabelInside.h"

#include <osg/NodeVisitor>
#include <osgEarth/ScreenSpaceLayout>
#include <osgUtil/CullVisitor>

#include <algorithm>
#include <cmath>

using osgEarth::ScreenSpaceLayoutData;

namespace {
/// What the bar of tools takes at the right border, pixels.
constexpr double barWidth = 48.0;

/// Along one axis; the text reaches from `low` to `high`.
double OffsetAlong(double place, double low, double high, double offset, double size)
{
    const auto isInside = [=](double shift) {
        return place + shift + low >= 0.0 && place + shift + high <= size;
    };
    const double mirrored = -(offset + low + high);
    for (const double shift : {offset, mirrored})
        if (isInside(shift))
            return shift;
    // The beginning of one that is too long for the window is seen.
    return std::max(-low - place, std::min(offset, size - high - place));
}

/// While a text is culled it is still open where it goes.
class Inside : public osg::DrawableCullCallback
{
public:
    explicit Inside(const osg::Vec2s& written) : offset(written.x(), written.y()) {}

    bool cull(osg::NodeVisitor* visitor, osg::Drawable* text, osg::RenderInfo*) const override
    {
        osgUtil::CullVisitor* culling = visitor->asCullVisitor();
        const osg::Viewport* window = culling ? culling->getViewport() : nullptr;
        ScreenSpaceLayoutData* layout = ScreenSpaceLayoutData::getOrCreate(text);
        if (!window || !layout)
            return false;
        const osg::Vec4d clip =
            osg::Vec4d(culling->getModelViewMatrix()->getTrans(), 1.0) * *culling->getProjectionMatrix();
        if (!(clip.w() > 0.0))
            return false;
        const osg::Vec2d size(window->width(), window->height());
        const osg::Vec2d place((0.5 * clip.x() / clip.w() + 0.5) * size.x(),
                               (0.5 * clip.y() / clip.w() + 0.5) * size.y());
        const osg::Vec2d now = AxOffsetInside(place, text->getBoundingBox(), offset, size, barWidth);
        layout->setPixelOffset(
            osg::Vec2s(static_cast<short>(std::lround(now.x())), static_cast<short>(std::lround(now.y()))));
        return false;
    }

private:
    const osg::Vec2d offset;
};

class Texts : public osg::NodeVisitor
{
public:
    Texts() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
    void apply(osg::Drawable& text) override
    {
        if (dynamic_cast<const Inside*>(text.getCullCallback()))
            return; // the layout says by now where the text was put last
        if (const ScreenSpaceLayoutData* layout = ScreenSpaceLayoutData::getOrCreate(&text))
            text.setCullCallback(new Inside(layout->getPixelOffset()));
    }
};
} // namespace

osg::Vec2d AxOffsetInside(const osg::Vec2d& place, const osg::BoundingBox& box, const osg::Vec2d& offset,
                          const osg::Vec2d& window, double takenAtRight)
{
    const bool isSeen =
        place.x() >= 0.0 && place.x() <= window.x() && place.y() >= 0.0 && place.y() <= window.y();
    if (!isSeen || !box.valid())
        return offset;
    return {OffsetAlong(place.x(), static_cast<double>(box.xMin()), static_cast<double>(box.xMax()),
                        offset.x(), window.x() - takenAtRight),
            OffsetAlong(place.y(), static_cast<double>(box.yMin()), static_cast<double>(box.yMax()),
                        offset.y(), window.y())};
}

void AxKeepLabelInside(osgEarth::Annotation::LabelNode& label)
{
    Texts texts;
    label.accept(texts);
}
