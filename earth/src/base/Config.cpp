#include <osgEarth/Config>

namespace osgEarth {
ConfigSet Config::children(const std::string& key) const
{
    ConfigSet out;
    for (const Config& c : _children)
        if (c.key() == key)
            out.push_back(c);
    return out;
}

const Config* Config::child_ptr(const std::string& key) const
{
    for (const Config& c : _children)
        if (c.key() == key)
            return &c;
    return nullptr;
}

Config* Config::mutable_child(const std::string& key)
{
    return const_cast<Config*>(child_ptr(key));
}

Config Config::child(const std::string& key) const
{
    const Config* c = child_ptr(key);
    return c ? *c : Config();
}

void Config::remove(const std::string& key)
{
    _children.remove_if([&](const Config& c) { return c.key() == key; });
}

void Config::merge(const Config& rhs)
{
    if (this == &rhs)
        return;
    for (const Config& c : rhs._children)
        remove(c.key());
    for (const Config& c : rhs._children)
        _children.push_back(c);
    if (_key.empty())
        _key = rhs._key;
    if (!rhs._value.empty())
        _value = rhs._value;
    if (_referrer.empty())
        _referrer = rhs._referrer;
}

void Config::setReferrer(const std::string& value)
{
    _referrer = value;
    for (Config& c : _children)
        c.setReferrer(value);
}

void Config::add(const Config& conf)
{
    _children.push_back(conf);
    if (conf.referrer().empty())
        _children.back().setReferrer(_referrer);
}

void Config::add(const std::string& key, const Config& conf)
{
    Config named = conf;
    named.key() = key;
    add(named);
}

std::string Config::value(const std::string& key) const
{
    const Config* c = child_ptr(key);
    return c ? trim(c->value()) : std::string();
}

ConfigOptions& ConfigOptions::operator=(const ConfigOptions& rhs)
{
    if (this != &rhs) {
        _conf = rhs.getConfig();
        mergeConfig(_conf);
    }
    return *this;
}

void ConfigOptions::merge(const ConfigOptions& rhs)
{
    mergeConfig(rhs.getConfig());
}

Config DriverConfigOptions::getConfig() const
{
    Config conf = ConfigOptions::getConfig();
    if (!_name.empty())
        conf.set("name", _name);
    if (!_driver.empty())
        conf.set("driver", _driver);
    return conf;
}

void DriverConfigOptions::mergeConfig(const Config& conf)
{
    ConfigOptions::mergeConfig(conf);
    fromConfig(conf);
}

void DriverConfigOptions::fromConfig(const Config& conf)
{
    if (conf.hasValue("name"))
        _name = conf.value("name");
    if (conf.hasValue("driver"))
        _driver = toLower(conf.value("driver"));
    // Old files write "type" for "driver".
    else if (_driver.empty() && conf.hasValue("type"))
        _driver = toLower(conf.value("type"));
}
} // namespace osgEarth
