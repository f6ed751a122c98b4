#include "featurelayers/LazyGroup.h"
#include <osgDB/FileNameUtils>
#include <osgDB/Options>
#include <osgDB/ReaderWriter>
#include <osgDB/Registry>

namespace osgEarth::Features {
namespace {
const char kExtension[] = "ax_background";

/// Lets the database pager "read" nodes that are made in memory.
class BackgroundReader : public osgDB::ReaderWriter
{
public:
    BackgroundReader() { supportsExtension(kExtension, "nodes made in memory"); }
    const char* className() const override { return "background node reader"; }

    ReadResult readNode(const std::string& fileName, const osgDB::Options* options) const override
    {
        if (!acceptsExtension(osgDB::getLowerCaseFileExtension(fileName)))
            return ReadResult::FILE_NOT_HANDLED;
        const auto* work = options ? dynamic_cast<const BackgroundBuild*>(options->getUserData()) : nullptr;
        if (!work)
            return ReadResult::FILE_NOT_FOUND;
        const osg::ref_ptr<osg::Node> node = const_cast<BackgroundBuild*>(work)->build();
        return node.valid() ? ReadResult(node.get()) : ReadResult(ReadResult::FILE_NOT_FOUND);
    }
};

const osgDB::RegisterReaderWriterProxy<BackgroundReader> registerReader;
} // namespace

LazyGroup::LazyGroup(BackgroundBuild* work)
{
    osg::ref_ptr<osgDB::Options> options = new osgDB::Options();
    options->setObjectCacheHint(osgDB::Options::CACHE_NONE);
    options->setUserData(work);
    _options = options;
    // While the group is empty it has no bound; culling would then never visit it.
    setCullingActive(false);
}

void LazyGroup::traverse(osg::NodeVisitor& nv)
{
    if (nv.getVisitorType() == osg::NodeVisitor::CULL_VISITOR && _options.valid()) {
        if (isLoaded()) {
            _options = nullptr; // the work is done; its data may go
            _request = nullptr;
        } else if (nv.getDatabaseRequestHandler())
            nv.getDatabaseRequestHandler()->requestNodeFile(std::string("features.") + kExtension,
                                                            nv.getNodePath(), 0.5f, nv.getFrameStamp(),
                                                            _request, _options.get());
    }
    osg::Group::traverse(nv);
}
} // namespace osgEarth::Features
