#include "scene/shape/AxShapeClamp.h"
#include "scene/base/AxGlobePoint.h"

#include <osg/observer_ptr>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>
#include <osgEarth/TileKey>

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

namespace {
// Tiles come in bursts; waiting a little lays a shape down once for all of them.
constexpr int collectMs = 60;
// Of each frame's time.
constexpr qint64 budgetNs = 2000000;

double Angle(const osg::Vec3d& a, const osg::Vec3d& b)
{
    return std::acos(std::clamp(a * b, -1.0, 1.0));
}

// The middle, and the angle from there to the farthest; below 0 for none.
std::pair<osg::Vec3d, double> Around(const std::vector<osg::Vec3d>& normals)
{
    osg::Vec3d middle;
    for (const osg::Vec3d& normal : normals)
        middle += normal;
    double reach = -1.0;
    if (middle.normalize() > 0.0)
        for (const osg::Vec3d& normal : normals)
            reach = std::max(reach, Angle(middle, normal));
    return {middle, reach};
}
} // namespace

/// The shapes of one terrain: its callback hears of tiles for all of them.
class AxGroundWatch : public osgEarth::TerrainCallback
{
public:
    static osg::ref_ptr<AxGroundWatch> Of(osgEarth::Terrain* terrain)
    {
        static std::map<osgEarth::Terrain*, osg::observer_ptr<AxGroundWatch>> watches;
        osg::ref_ptr<AxGroundWatch> watch;
        // The address may be that of a terrain long gone.
        if (watches[terrain].lock(watch) && watch->terrain.get() == terrain)
            return watch;
        for (auto it = watches.begin(); it != watches.end();)
            it = it->second.valid() || it->first == terrain ? std::next(it) : watches.erase(it);
        watch = new AxGroundWatch(terrain);
        watches[terrain] = watch;
        return watch;
    }

    void Add(AxShapeClamp* shape)
    {
        shapes.push_back(shape);
        osg::ref_ptr<osgEarth::Terrain> ground;
        if (shapes.size() == 1 && terrain.lock(ground))
            ground->addTerrainCallback(this);
    }

    void Remove(AxShapeClamp* shape)
    {
        shapes.erase(std::remove(shapes.begin(), shapes.end(), shape), shapes.end());
        waiting.erase(std::remove(waiting.begin(), waiting.end(), shape), waiting.end());
        osg::ref_ptr<osgEarth::Terrain> ground;
        if (shapes.empty() && terrain.lock(ground))
            ground->removeTerrainCallback(this);
    }

    void Ask(AxShapeClamp* shape)
    {
        if (shape->asked)
            return;
        shape->asked = true;
        waiting.push_back(shape);
        if (!timer.isActive())
            timer.start(collectMs);
    }

    void onTileAdded(const osgEarth::TileKey& key, osg::Node*, osgEarth::TerrainCallbackContext&) override
    {
        const osgEarth::GeoExtent& extent = key.getExtent();
        const osg::Vec3d middle = AxGlobe::NormalAt(
            {0.5 * (extent.xMin() + extent.xMax()), 0.5 * (extent.yMin() + extent.yMax()), 0.0});
        double reach = 0.0;
        for (const double lng : {extent.xMin(), extent.xMax()})
            for (const double lat : {extent.yMin(), extent.yMax()})
                reach = std::max(reach, Angle(middle, AxGlobe::NormalAt({lng, lat, 0.0})));
        AskNear(middle, reach);
    }

    void AskNear(const osg::Vec3d& middle, double reach)
    {
        for (AxShapeClamp* shape : shapes)
            if (shape->reach >= 0.0 && Angle(middle, shape->middle) <= reach + shape->reach)
                Ask(shape);
    }

protected:
    ~AxGroundWatch() override = default;

private:
    explicit AxGroundWatch(osgEarth::Terrain* ground) : terrain(ground)
    {
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, [this] { Work(); });
    }

    void Work()
    {
        const osg::ref_ptr<AxGroundWatch> alive = this; // the work may destroy the last shape
        QElapsedTimer clock;
        clock.start();
        // Those that have to wait come again in the next round.
        for (std::size_t left = waiting.size();
             left > 0 && !waiting.empty() && clock.nsecsElapsed() < budgetNs; --left) {
            AxShapeClamp* shape = waiting.front();
            waiting.erase(waiting.begin());
            shape->asked = false;
            const std::size_t before = shapes.size();
            const bool isDone = shape->work();
            if (!isDone && shapes.size() == before)
                Ask(shape);
        }
        if (!waiting.empty())
            timer.start(collectMs);
    }

    osg::observer_ptr<osgEarth::Terrain> terrain;
    std::vector<AxShapeClamp*> shapes;
    std::vector<AxShapeClamp*> waiting;
    QTimer timer;
};

AxShapeClamp::AxShapeClamp(osgEarth::Terrain* terrain, Work shapeWork)
    : work(std::move(shapeWork)), watch(AxGroundWatch::Of(terrain))
{
    watch->Add(this);
}

AxShapeClamp::~AxShapeClamp()
{
    watch->Remove(this);
}

void AxShapeClamp::SetExtent(const std::vector<osg::Vec3d>& normals)
{
    std::tie(middle, reach) = Around(normals);
}

void AxShapeClamp::Ask()
{
    watch->Ask(this);
}

void AxShapeClamp::AskNear(osgEarth::Terrain* terrain, const std::vector<osg::Vec3d>& normals)
{
    if (const auto [middle, reach] = Around(normals); reach >= 0.0)
        AxGroundWatch::Of(terrain)->AskNear(middle, reach);
}
