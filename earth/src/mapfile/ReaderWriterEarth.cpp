#include "mapfile/MapFile.h"

#include <osgEarth/MapNode>

#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>
#include <osgDB/fstream>
#include <osgDB/ReaderWriter>
#include <osgDB/Registry>

namespace osgEarth {
/// Reads and writes ".earth" map files for osgDB. Registered when the library
/// is loaded.
class ReaderWriterEarth : public osgDB::ReaderWriter
{
public:
    ReaderWriterEarth() { supportsExtension("earth", "Map file"); }

    const char* className() const override { return "Earth map file reader"; }

    ReadResult readObject(const std::string& fileName, const Options* options) const override
    {
        return readNode(fileName, options);
    }

    ReadResult readNode(const std::string& fileName, const Options* options) const override
    {
        if (!acceptsExtension(osgDB::getLowerCaseFileExtension(fileName)))
            return ReadResult::FILE_NOT_HANDLED;
        const std::string path = osgDB::findDataFile(fileName, options);
        if (path.empty())
            return ReadResult::FILE_NOT_FOUND;
        osgDB::ifstream in(path.c_str(), std::ios::binary);
        if (!in)
            return failure("Map file \"" + path + "\" cannot be opened");
        return readMap(in, osgDB::getRealPath(path));
    }

    ReadResult readNode(std::istream& in, const Options* options) const override
    {
        const std::string folder =
            options && !options->getDatabasePathList().empty() ? options->getDatabasePathList().front() : "";
        return readMap(in, folder.empty() ? std::string() : osgDB::concatPaths(folder, "map.earth"));
    }

    WriteResult writeObject(const osg::Object& object, const std::string& fileName,
                            const Options* options) const override
    {
        const auto* node = dynamic_cast<const osg::Node*>(&object);
        return node ? writeNode(*node, fileName, options) : WriteResult(WriteResult::FILE_NOT_HANDLED);
    }

    WriteResult writeNode(const osg::Node& node, const std::string& fileName, const Options*) const override
    {
        if (!acceptsExtension(osgDB::getLowerCaseFileExtension(fileName)))
            return WriteResult::FILE_NOT_HANDLED;
        osgDB::ofstream out(fileName.c_str(), std::ios::binary);
        return write(node, out);
    }

    WriteResult writeNode(const osg::Node& node, std::ostream& out, const Options*) const override
    {
        return write(node, out);
    }

private:
    // osgDB logs the message of a failed read, so nothing is logged here.
    static ReadResult failure(const std::string& text) { return ReadResult("[osgEarth]* " + text); }

    static ReadResult readMap(std::istream& in, const std::string& file)
    {
        MapFile content;
        std::string cause;
        if (!content.read(in, file, cause))
            return failure("Map file \"" + file + "\" is no map: " + cause);
        return new MapNode(content.createMap().get(), content.mapNodeOptions());
    }

    static WriteResult write(const osg::Node& node, std::ostream& out)
    {
        const MapNode* mapNode = MapNode::findMapNode(const_cast<osg::Node*>(&node));
        if (!mapNode)
            return WriteResult::FILE_NOT_HANDLED;
        out << MapFile::write(*mapNode->getMap(), mapNode->getMapNodeOptions());
        return out ? WriteResult(WriteResult::FILE_SAVED) : WriteResult(WriteResult::ERROR_IN_WRITING_FILE);
    }
};

REGISTER_OSGPLUGIN(earth, ReaderWriterEarth)
} // namespace osgEarth
