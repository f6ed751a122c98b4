#include "symbology/StyleProperties.h"
#include <algorithm>
#include <cstring>
#include <osgEarth/Notify>
#include <osgEarth/StringUtils>
#include <osgEarthSymbology/CssUtils>
#include <osgEarthSymbology/Style>

namespace osgEarth::Symbology {
Style::Style(const std::string& name) : _name(name) {}

Style::Style(const Config& conf) : _name(conf.value("name"))
{
    ConfigSet blocks;
    CssUtils::readConfig(conf.value(), conf.referrer(), blocks);
    if (!blocks.empty()) {
        if (_name.empty())
            _name = blocks.front().key();
        fromSLD(blocks.front());
    }
}

Style::Style(const Style& rhs, const osg::CopyOp& op) : _name(rhs._name)
{
    const bool deep = (op.getCopyFlags() & osg::CopyOp::DEEP_COPY_OBJECTS) != 0;
    for (const auto& symbol : rhs._symbols)
        _symbols.push_back(deep ? osg::clone(symbol.get(), op) : symbol.get());
}

Style& Style::operator=(const Style& rhs)
{
    if (this != &rhs) {
        Style copy(rhs);
        _name.swap(copy._name);
        _symbols.swap(copy._symbols);
    }
    return *this;
}

Style Style::combineWith(const Style& rhs) const
{
    Style result(*this);
    const Style copy(rhs);
    for (const auto& symbol : copy._symbols)
        result.addSymbol(symbol.get());
    if (result._name.empty())
        result._name = rhs._name;
    return result;
}

void Style::addSymbol(Symbol* symbol)
{
    if (!symbol)
        return;
    osg::ref_ptr<Symbol> held(symbol);
    const auto same = [symbol](const osg::ref_ptr<Symbol>& other) {
        return std::strcmp(other->className(), symbol->className()) == 0;
    };
    _symbols.erase(std::remove_if(_symbols.begin(), _symbols.end(), same), _symbols.end());
    _symbols.push_back(held);
}

bool Style::removeSymbol(Symbol* symbol)
{
    const auto found = std::find(_symbols.begin(), _symbols.end(), symbol);
    if (!symbol || found == _symbols.end())
        return false;
    _symbols.erase(found);
    return true;
}

Config Style::getConfig(bool) const
{
    Config conf("style", (_name.empty() ? std::string("default") : _name) + " {\n" +
                             writeStyleProperties(*this) + "}");
    conf.add("type", "text/css");
    if (!_name.empty())
        conf.add("name", _name);
    return conf;
}

void Style::fromSLD(const Config& properties)
{
    for (Config property : properties.children()) {
        if (property.referrer().empty())
            property.setReferrer(properties.referrer());
        const PropertyResult result = readStyleProperty(property, *this);
        if (result != PropertyResult::Taken)
            notifyLine(osg::WARN, std::string(result == PropertyResult::Unknown ? "unknown style property \""
                                                                                : "unreadable value in \"") +
                                      property.key() + ": " + property.value() + "\" of style \"" + _name +
                                      "\" is ignored");
    }
}
} // namespace osgEarth::Symbology
