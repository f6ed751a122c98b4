#include <osgEarthSymbology/CssUtils>
#include <osgEarthSymbology/StyleSheet>

namespace osgEarth::Symbology {
StyleSheet::StyleSheet(const Config& conf)
{
    for (const Config& child : conf.children("selector"))
        _selectors.emplace_back(child);
    for (const Config& child : conf.children("style")) {
        ConfigSet blocks;
        CssUtils::readConfig(child.value(), child.referrer().empty() ? conf.referrer() : child.referrer(),
                             blocks);
        for (const Config& block : blocks) {
            Style style(blocks.size() == 1 && child.hasValue("name") ? child.value("name") : block.key());
            style.fromSLD(block);
            addStyle(style);
        }
    }
}

Style* StyleSheet::getStyle(const std::string& name, bool fallBackOnDefault)
{
    const bool hashed = !name.empty() && name.front() == '#';
    for (const std::string& key : {name, hashed ? name.substr(1) : "#" + name}) {
        const auto found = _styles.find(key);
        if (found != _styles.end())
            return &found->second;
    }
    return fallBackOnDefault ? getDefaultStyle() : nullptr;
}

const Style* StyleSheet::getStyle(const std::string& name, bool fallBackOnDefault) const
{
    return const_cast<StyleSheet*>(this)->getStyle(name, fallBackOnDefault);
}

Style* StyleSheet::getDefaultStyle()
{
    const auto found = _styles.find("default");
    if (found != _styles.end())
        return &found->second;
    return _styles.empty() ? &_emptyStyle : &_styles.begin()->second;
}

const Style* StyleSheet::getDefaultStyle() const
{
    return const_cast<StyleSheet*>(this)->getDefaultStyle();
}

Config StyleSheet::getConfig() const
{
    Config conf("styles");
    for (const auto& entry : _styles)
        conf.add(entry.second.getConfig());
    for (const StyleSelector& selector : _selectors)
        conf.add(selector.getConfig());
    return conf;
}
} // namespace osgEarth::Symbology
