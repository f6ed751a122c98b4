#pragma once
#include "terrain/TerrainView.h"
#include "terrain/TileContent.h"

#include <osg/Group>
#include <osg/observer_ptr>
#include <osgUtil/CullVisitor>

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace osgEarth {
class Terrain;
class TileNode;

/// What the tiles of one terrain share: the map they draw, the view of the
/// current cull, and the contents that are resident. Outlives the engine while
/// a pager thread still makes a tile. load runs on pager threads; the rest on
/// the update and cull traversals unless it says otherwise.
class TileScene : public std::enable_shared_from_this<TileScene>
{
public:
    /// Registers the scene, so that the pager's file names find it.
    static std::shared_ptr<TileScene> create(Map* map, Terrain* terrain);
    /// Any thread; null when that terrain is gone.
    static std::shared_ptr<TileScene> find(unsigned id);
    ~TileScene();

    TileScene(const TileScene&) = delete;
    TileScene& operator=(const TileScene&) = delete;

    std::string rootsFileName() const;
    std::string quartersFileName(const TileKey& key) const;
    std::string pictureFileName(const TileKey& key) const;
    /// Answers a file name of the three above; null for any other and for tiles that are gone.
    osg::ref_ptr<osg::Group> load(const std::string& fileName);

    void setView(osgUtil::CullVisitor& visitor);
    const TerrainView& view() const { return _view; }

    /// Called when the pager has merged tiles into the scene, and when a tile has got its own picture.
    void onMerged(osg::Group& tiles);
    void onRenewed(TileNode& tile);
    /// Stops news from reaching a terrain that is about to go.
    void detach() { _terrain = nullptr; }
    /// Tiles that were still being made when the layers changed; each once.
    std::vector<osg::ref_ptr<TileNode>> takeOutdated();

    /// Any thread.
    void add(const std::shared_ptr<const TileContent>& content);
    void remove(const TileKey& key);
    std::shared_ptr<const TileContent> contentOf(const TileKey& key) const;

    /// Grows whenever the layers change; contents made before that are out of date. Any thread.
    int revision() const { return _revision.load(); }
    void bumpRevision() { ++_revision; }

    /// The content of a tile from the layers as they stand now. Any thread.
    std::shared_ptr<const TileContent> make(const TileKey& key, const PictureWish& wishesPicture) const;

private:
    TileScene(Map* map, Terrain* terrain);
    using Clock = std::chrono::steady_clock;
    /// With those of their descendants that the view wants, as far as the time allows.
    osg::ref_ptr<osg::Group> makeTiles(const std::vector<TileKey>& keys, Clock::time_point until);
    TerrainView sharedView() const;

    const unsigned _id;
    const osg::ref_ptr<const Profile> _profile;
    osg::observer_ptr<Map> _map;
    Terrain* _terrain;
    TerrainView _view;
    /// The same for pager threads.
    TerrainView _sharedView;
    std::vector<osg::ref_ptr<TileNode>> _outdated;
    std::atomic<int> _revision{0};
    /// Whether some ground lies deeper than land does.
    std::atomic<bool> _seaFloor{false};
    mutable std::mutex _mutex;
    std::map<TileKey, std::weak_ptr<const TileContent>> _contents;
};
} // namespace osgEarth
