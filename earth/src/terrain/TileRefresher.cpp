#include "terrain/TileRefresher.h"

#include "terrain/BackgroundThread.h"

namespace osgEarth {
TileRefresher::~TileRefresher()
{
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _stop = true;
    }
    _wake.notify_all();
    if (_thread.joinable())
        _thread.join();
}

void TileRefresher::enqueue(TileNode* tile)
{
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _jobs.push_back({tile->key(), tile, tile->content().borrowsPicture});
    }
    if (!_thread.joinable())
        _thread = std::thread([this] { run(); });
    _wake.notify_all();
}

void TileRefresher::clear()
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _jobs.clear();
}

void TileRefresher::apply()
{
    std::vector<Result> results;
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        results.swap(_results);
    }
    for (const Result& result : results) {
        osg::ref_ptr<TileNode> tile;
        if (result.tile.lock(tile) && result.content->revision >= tile->content().revision)
            tile->setContent(result.content);
    }
}

bool TileRefresher::busy() const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    return _working || !_jobs.empty() || !_results.empty();
}

void TileRefresher::run()
{
    makeThisThreadYieldToFrames();
    std::unique_lock<std::mutex> lock(_mutex);
    for (;;) {
        _wake.wait(lock, [this] { return _stop || !_jobs.empty(); });
        if (_stop)
            return;
        const Job job = _jobs.front();
        _jobs.pop_front();
        _working = true;
        lock.unlock();
        const auto wishesPicture = [&job](const TileContent&) { return !job.borrowsPicture; };
        const std::shared_ptr<const TileContent> content = _scene->make(job.key, wishesPicture);
        lock.lock();
        _working = false;
        if (content)
            _results.push_back({job.tile, content});
    }
}
} // namespace osgEarth
