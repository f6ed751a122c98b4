#pragma once
#include <initializer_list>
#include <osg/ref_ptr>
#include <osgEarth/Config>
#include <utility>

// An options class names its keys once, in a function template
//     template <typename Options, typename Keys> void visit...Keys(Options& options, Keys& keys);
// that is handed a KeyReader to read a Config into the options, or a KeyWriter
// to write the options into a Config. Both have the same operations. The order
// of the keys is the order in which they are written.
namespace osgEarth {
/// A name for a value of an enumeration.
template <typename T> using KeyNames = std::initializer_list<std::pair<const char*, T>>;

/// Sets the fields whose keys the tree has; the others stay.
class KeyReader
{
public:
    explicit KeyReader(const Config& conf) : _conf(conf) {}
    /// For a field that the operations below do not fit.
    const Config& config() const { return _conf; }

    template <typename T> void value(const char* key, optional<T>& field) { _conf.getIfSet(key, field); }
    void value(const char* key, std::string& field)
    {
        if (_conf.hasValue(key))
            field = _conf.value(key);
    }
    /// Another name under which the field is read but never written.
    template <typename T> void alias(const char* key, optional<T>& field) { _conf.getIfSet(key, field); }
    /// A value that reads and writes a tree of its own.
    template <typename T> void object(const char* key, optional<T>& field) { _conf.getObjIfSet(key, field); }
    template <typename T> void object(const char* key, osg::ref_ptr<T>& field)
    {
        if (const Config* child = _conf.child_ptr(key))
            field = new T(*child);
    }
    /// One of several names. Others leave the field as it is.
    template <typename T> void choice(const char* key, optional<T>& field, KeyNames<T> names)
    {
        for (const auto& [name, meaning] : names)
            _conf.getIfSet(key, name, field, meaning);
    }

private:
    const Config& _conf;
};

/// Writes the fields that are set over what the tree has under their keys.
class KeyWriter
{
public:
    explicit KeyWriter(Config& conf) : _conf(conf) {}
    Config& config() { return _conf; }

    template <typename T> void value(const char* key, const optional<T>& field)
    {
        _conf.updateIfSet(key, field);
    }
    void value(const char* key, const std::string& field)
    {
        if (!field.empty())
            _conf.set(key, field);
    }
    template <typename T> void alias(const char*, const optional<T>&) {}
    template <typename T> void object(const char* key, const optional<T>& field)
    {
        _conf.updateObjIfSet(key, field);
    }
    template <typename T> void object(const char* key, const osg::ref_ptr<T>& field)
    {
        if (field.valid()) {
            _conf.remove(key);
            _conf.add(key, field->getConfig());
        }
    }
    /// The last name stands for values that have none.
    template <typename T> void choice(const char* key, const optional<T>& field, KeyNames<T> names)
    {
        if (!field.isSet())
            return;
        const auto* chosen = names.begin();
        while (chosen + 1 != names.end() && chosen->second != field.value())
            ++chosen;
        _conf.set(key, std::string(chosen->first));
    }

private:
    Config& _conf;
};
} // namespace osgEarth
