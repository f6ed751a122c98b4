#pragma once
#include "terrain/TileNode.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace osgEarth {
/// Makes resident tiles anew on a thread of its own after the map's layers
/// changed. enqueue, apply and busy belong to the update traversal; the thread
/// starts with the first job and sleeps while there is none.
class TileRefresher
{
public:
    explicit TileRefresher(std::shared_ptr<const TileScene> scene) : _scene(std::move(scene)) {}
    ~TileRefresher();

    TileRefresher(const TileRefresher&) = delete;
    TileRefresher& operator=(const TileRefresher&) = delete;

    /// Parents before children, so that children take over their new pictures.
    void enqueue(TileNode* tile);
    /// Forgets what was not begun; a newer change makes it anew.
    void clear();
    /// Gives finished contents to their tiles.
    void apply();
    bool busy() const;

private:
    struct Job
    {
        TileKey key;
        osg::observer_ptr<TileNode> tile;
        bool borrowsPicture;
    };
    struct Result
    {
        osg::observer_ptr<TileNode> tile;
        std::shared_ptr<const TileContent> content;
    };

    void run();

    const std::shared_ptr<const TileScene> _scene;
    mutable std::mutex _mutex;
    std::condition_variable _wake;
    std::deque<Job> _jobs;
    std::vector<Result> _results;
    bool _working = false;
    bool _stop = false;
    std::thread _thread;
};
} // namespace osgEarth
