#include <osgEarth/URI>

#include <osgDB/FileNameUtils>

namespace osgEarth {
namespace {
bool isRemoteLocation(const std::string& location)
{
    return startsWith(location, "http://", false) || startsWith(location, "https://", false) ||
           startsWith(location, "ftp://", false);
}

// "C:\\" and "\\\\server" besides what the running system calls absolute.
bool isAbsolute(const std::string& path)
{
    if (path.empty())
        return false;
    const bool drive = path.size() > 1 && path[1] == ':';
    return path[0] == '/' || path[0] == '\\' || drive || osgDB::isAbsolutePath(path);
}

bool isConnectionString(const std::string& location)
{
    // "GPKG:file:table", "<GDAL_WMS>", "MBTILES:..."; one letter before the colon is a drive.
    const size_t colon = location.find(':');
    return location[0] == '<' || (colon != std::string::npos && colon > 1);
}
} // namespace

URI::URI(const std::string& location, const URIContext& context)
    : _base(location), _full(location), _context(context)
{
    if (startsWith(location, "file://", false)) {
        _full = location.substr(7);
        // file:///C:/folder
        if (_full.size() > 2 && _full[0] == '/' && _full[2] == ':')
            _full.erase(0, 1);
        return;
    }
    if (location.empty() || context.empty() || isRemoteLocation(location) || isAbsolute(location) ||
        isConnectionString(location))
        return;
    if (isRemoteLocation(context.referrer())) {
        _full = context.referrer().substr(0, context.referrer().find_last_of('/') + 1) + location;
        return;
    }
    const std::string folder = osgDB::getFilePath(context.referrer());
    _full = folder.empty() ? location : osgDB::concatPaths(folder, location);
}

bool URI::isRemote() const
{
    return isRemoteLocation(_full);
}
} // namespace osgEarth
