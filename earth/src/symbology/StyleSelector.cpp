#include <osgEarthSymbology/StyleSelector>

namespace osgEarth::Symbology {
StyleSelector::StyleSelector(const Config& conf) : _name(conf.value("name"))
{
    conf.getIfSet("style", _styleName);
    conf.getIfSet("class", _styleName);
    conf.getObjIfSet("query", _query);
}

Config StyleSelector::getConfig() const
{
    Config conf("selector");
    if (!_name.empty())
        conf.add("name", _name);
    conf.addIfSet("class", _styleName);
    conf.updateObjIfSet("query", _query);
    return conf;
}
} // namespace osgEarth::Symbology
