#include "base/ConfigKeys.h"
#include <osg/BlendFunc>
#include <osg/Depth>
#include <osgEarth/ScreenSpaceLayout>

#include "text/LabelDeclutter.h"
#include "text/ScreenSpaceBin.h"

namespace osgEarth {
namespace {
ScreenSpaceLayoutOptions& options()
{
    static ScreenSpaceLayoutOptions current;
    return current;
}

bool declutter = true;
} // namespace

ScreenSpaceLayoutData* ScreenSpaceLayoutData::getOrCreate(osg::Drawable* drawable)
{
    if (!drawable)
        return nullptr;
    auto* data = dynamic_cast<ScreenSpaceLayoutData*>(drawable->getUserData());
    if (!data) {
        data = new ScreenSpaceLayoutData();
        drawable->setUserData(data);
    }
    return data;
}

namespace {
template <typename Options, typename Keys> void visitScreenSpaceLayoutKeys(Options& options, Keys& keys)
{
    keys.value("snap_to_pixel", options.snapToPixel());
    keys.value("max_objects", options.maxObjects());
}
} // namespace

ScreenSpaceLayoutOptions::ScreenSpaceLayoutOptions(const ConfigOptions& other) : ConfigOptions(other)
{
    KeyReader keys(_conf);
    visitScreenSpaceLayoutKeys(*this, keys);
}

Config ScreenSpaceLayoutOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    KeyWriter keys(conf);
    visitScreenSpaceLayoutKeys(*this, keys);
    return conf;
}

void ScreenSpaceLayout::activate(osg::StateSet* stateSet, int binNum)
{
    if (!stateSet)
        return;
    registerScreenSpaceBin();
    stateSet->setRenderBinDetails(binNum, OSGEARTH_SCREEN_SPACE_LAYOUT_BIN,
                                  osg::StateSet::OVERRIDE_PROTECTED_RENDERBIN_DETAILS);
    stateSet->setNestRenderBins(false);
    stateSet->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    stateSet->setAttributeAndModes(
        new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
    stateSet->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
}

void ScreenSpaceLayout::deactivate(osg::StateSet* stateSet)
{
    if (!stateSet)
        return;
    stateSet->setRenderBinToInherit();
    stateSet->setNestRenderBins(true);
}

void ScreenSpaceLayout::setDeclutteringEnabled(bool enabled)
{
    declutter = enabled;
}

bool ScreenSpaceLayout::getDeclutteringEnabled()
{
    return declutter;
}

void ScreenSpaceLayout::setOptions(const ScreenSpaceLayoutOptions& wanted)
{
    options() = wanted;
}

const ScreenSpaceLayoutOptions& ScreenSpaceLayout::getOptions()
{
    return options();
}
} // namespace osgEarth
