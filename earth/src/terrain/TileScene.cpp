#include "terrain/TileScene.h"

#include "terrain/BackgroundThread.h"
#include "terrain/TileNode.h"

#include <osgDB/DatabasePager>
#include <osgDB/FileNameUtils>
#include <osgDB/ReaderWriter>
#include <osgDB/Registry>
#include <osgEarth/PartOfView>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>

#include <cstdio>

namespace osgEarth {
namespace {
const char* const kExtension = "axtile";
/// Ground below this, metres, may belong to a sea floor that is deeper than the horizon of land allows for.
constexpr double kSurelyLand = 1000.0;
/// So long one request goes on to deeper levels, instead of leaving each to a
/// further frame. Slow sources end it after the first.
constexpr std::chrono::milliseconds kTimeForDeeperTiles{80};

std::mutex& scenesMutex()
{
    static std::mutex mutex;
    return mutex;
}

std::map<unsigned, std::weak_ptr<TileScene>>& scenes()
{
    static std::map<unsigned, std::weak_ptr<TileScene>> all;
    return all;
}

std::string nameOf(const TileKey& key)
{
    return std::to_string(key.getLOD()) + '_' + std::to_string(key.getTileX()) + '_' +
           std::to_string(key.getTileY());
}

std::vector<TileKey> quartersOf(const TileKey& parent)
{
    std::vector<TileKey> keys;
    for (unsigned quadrant = 0; quadrant < 4; ++quadrant)
        keys.push_back(parent.createChildKey(quadrant));
    return keys;
}

unsigned nextId()
{
    static std::atomic<unsigned> last{0};
    return ++last;
}

/// Lets the database pager "read" tiles that are made in memory.
class TileReader : public osgDB::ReaderWriter
{
public:
    TileReader() { supportsExtension(kExtension, "terrain tiles made in memory"); }
    const char* className() const override { return "terrain tile reader"; }

    ReadResult readNode(const std::string& fileName, const osgDB::Options*) const override
    {
        if (!acceptsExtension(osgDB::getLowerCaseFileExtension(fileName)))
            return ReadResult::FILE_NOT_HANDLED;
        unsigned id = 0;
        if (std::sscanf(fileName.c_str(), "%u.", &id) != 1)
            return ReadResult::FILE_NOT_FOUND;
        const std::shared_ptr<TileScene> scene = TileScene::find(id);
        if (!scene)
            return ReadResult::FILE_NOT_FOUND;
        if (dynamic_cast<osgDB::DatabasePager::DatabaseThread*>(OpenThreads::Thread::CurrentThread()))
            makeThisThreadYieldToFrames();
        const osg::ref_ptr<osg::Group> tiles = scene->load(fileName);
        return tiles ? ReadResult(tiles.get()) : ReadResult(ReadResult::FILE_NOT_FOUND);
    }
};

const osgDB::RegisterReaderWriterProxy<TileReader> registerTileReader;
} // namespace

std::shared_ptr<TileScene> TileScene::create(Map* map, Terrain* terrain)
{
    const std::shared_ptr<TileScene> scene(new TileScene(map, terrain));
    const std::lock_guard<std::mutex> lock(scenesMutex());
    scenes()[scene->_id] = scene;
    return scene;
}

std::shared_ptr<TileScene> TileScene::find(unsigned id)
{
    const std::lock_guard<std::mutex> lock(scenesMutex());
    const auto found = scenes().find(id);
    return found == scenes().end() ? nullptr : found->second.lock();
}

TileScene::TileScene(Map* map, Terrain* terrain)
    : _id(nextId()), _profile(terrain->getProfile()), _map(map), _terrain(terrain)
{
}

TileScene::~TileScene()
{
    const std::lock_guard<std::mutex> lock(scenesMutex());
    scenes().erase(_id);
}

std::string TileScene::rootsFileName() const
{
    return std::to_string(_id) + ".roots." + kExtension;
}

std::string TileScene::quartersFileName(const TileKey& key) const
{
    return std::to_string(_id) + '.' + nameOf(key) + '.' + kExtension;
}

std::string TileScene::pictureFileName(const TileKey& key) const
{
    return std::to_string(_id) + ".picture." + nameOf(key) + '.' + kExtension;
}

osg::ref_ptr<osg::Group> TileScene::load(const std::string& fileName)
{
    std::vector<TileKey> keys;
    unsigned id = 0;
    unsigned level = 0;
    unsigned x = 0;
    unsigned y = 0;
    if (fileName == rootsFileName()) {
        _profile->getRootKeys(keys);
    } else if (std::sscanf(fileName.c_str(), "%u.picture.%u_%u_%u.", &id, &level, &x, &y) == 4) {
        const auto always = [](const TileContent&) { return true; };
        const auto content = make(TileKey(level, x, y, _profile.get()), always);
        return content ? new TileNews(content) : nullptr;
    } else if (std::sscanf(fileName.c_str(), "%u.%u_%u_%u.", &id, &level, &x, &y) == 4) {
        keys = quartersOf(TileKey(level, x, y, _profile.get()));
    }
    return makeTiles(keys, Clock::now() + kTimeForDeeperTiles);
}

osg::ref_ptr<osg::Group> TileScene::makeTiles(const std::vector<TileKey>& keys, Clock::time_point until)
{
    osg::ref_ptr<osg::Group> group = new osg::Group;
    for (const TileKey& key : keys) {
        std::optional<bool> passesOver;
        const auto isPassedOver = [&](const TileContent& content) {
            const TerrainView view = sharedView();
            if (!passesOver)
                passesOver =
                    Clock::now() < until && view.isNear(content.bulk) && view.excessOf(content) > 1.0;
            return *passesOver;
        };
        const auto whenDrawn = [&](const TileContent& content) {
            // A picture that shows all there is serves the deeper tiles too, whichever way they came.
            return !(isPassedOver(content) && content.pictureRefinable) && sharedView().isNear(content.bulk);
        };
        const std::shared_ptr<const TileContent> content = make(key, whenDrawn);
        if (!content)
            return nullptr;
        const osg::ref_ptr<TileNode> tile = new TileNode(shared_from_this(), content);
        if (isPassedOver(*content))
            if (const osg::ref_ptr<osg::Group> quarters = makeTiles(quartersOf(key), until))
                tile->attachQuarters(quarters);
        group->addChild(tile);
    }
    return keys.empty() ? nullptr : group;
}

TerrainView TileScene::sharedView() const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    return _sharedView;
}

std::shared_ptr<const TileContent> TileScene::make(const TileKey& key, const PictureWish& wishesPicture) const
{
    osg::ref_ptr<Map> map;
    if (!_map.lock(map))
        return nullptr;
    const int revision = _revision.load();
    std::optional<TileTexture> parentTexture;
    if (key.getLOD() > 0)
        if (const auto parent = contentOf(key.createParentKey()))
            if (parent->revision == revision)
                parentTexture = parent->texture;
    return makeTileContent(key, TileSources(*map), parentTexture, wishesPicture, revision);
}

void TileScene::setView(osgUtil::CullVisitor& visitor)
{
    // A camera that renders to a texture (a draped layer, a shadow) must see
    // the tiles that the main view chose, or the two surfaces would differ.
    const osg::Camera* camera = visitor.getCurrentCamera();
    if (camera && camera->isRenderToTextureCamera())
        return;
    const osg::Viewport* viewport = visitor.getViewport();
    double height = viewport ? std::max(1.0, viewport->height()) : 1.0;
    // As OSG's own levels of detail: below 1 more of it.
    height /= std::max(1.0e-3, static_cast<double>(visitor.getLODScale()));
    osg::Matrixd projection = *visitor.getProjectionMatrix();
    if (camera)
        takePartOfView(*camera, projection, height);
    _view = TerrainView(*visitor.getModelViewMatrix(), projection, height, _seaFloor);
    const SpatialReference* geographic = _profile->getSRS()->getGeographicSRS();
    geographic->transformFromWorld(_view.eye, _view.eyeGeodetic);
    const std::lock_guard<std::mutex> lock(_mutex);
    _sharedView = _view;
}

void TileScene::onMerged(osg::Group& tiles)
{
    for (unsigned i = 0; i < tiles.getNumChildren(); ++i)
        if (TileNode* tile = dynamic_cast<TileNode*>(tiles.getChild(i))) {
            if (_terrain)
                _terrain->notifyTileAdded(tile->key(), tile);
            if (tile->content().revision != revision())
                _outdated.emplace_back(tile);
            if (osg::Group* quarters = tile->quarters())
                onMerged(*quarters);
        }
}

void TileScene::onRenewed(TileNode& tile)
{
    if (tile.content().revision != revision())
        _outdated.emplace_back(&tile);
}

std::vector<osg::ref_ptr<TileNode>> TileScene::takeOutdated()
{
    return std::exchange(_outdated, {});
}

void TileScene::add(const std::shared_ptr<const TileContent>& content)
{
    if (content->bulk.lowest < -kSurelyLand)
        _seaFloor = true;
    const std::lock_guard<std::mutex> lock(_mutex);
    _contents[content->key] = content;
}

void TileScene::remove(const TileKey& key)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto found = _contents.find(key);
    if (found != _contents.end() && found->second.expired())
        _contents.erase(found);
}

std::shared_ptr<const TileContent> TileScene::contentOf(const TileKey& key) const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto found = _contents.find(key);
    return found == _contents.end() ? nullptr : found->second.lock();
}
} // namespace osgEarth
