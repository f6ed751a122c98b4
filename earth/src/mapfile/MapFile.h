#pragma once
#include <osgEarth/Config>
#include <osgEarth/Map>
#include <osgEarth/MapNodeOptions>

#include <iosfwd>

namespace osgEarth {
/// The content of a map file, apart from the scene that shows it.
class MapFile
{
public:
    /// False, with the reason, when the stream holds no map. Relative
    /// locations are meant against `file`. Elements that mean nothing are
    /// logged and skipped.
    bool read(std::istream& in, const std::string& file, std::string& out_cause);

    /// A new map with all layers opened; those that fail are in it, in error.
    osg::ref_ptr<Map> createMap() const;
    const MapNodeOptions& mapNodeOptions() const { return _mapNodeOptions; }

    /// The map as a map file's text.
    static std::string write(const Map& map, const MapNodeOptions& options);

private:
    void readElement(const Config& element);

    std::string _file;
    Config _options;
    MapNodeOptions _mapNodeOptions;
    ConfigSet _layers; ///< in the file's order
};
} // namespace osgEarth
