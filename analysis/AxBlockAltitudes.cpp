#include "analysis/AxBlockAltitudes.h"
#include "scene/AxScene.h"

#include <AxAlgorthm/AxMath.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/planner/AxPlanPlane.h>

#include <osgEarth/MapNode>

#include <cmath>

namespace {
// The ring or line over whose ground the mean is taken: of a video block its circle.
QList<QPointF> GroundOf(const CAxBlock& block)
{
    const QList<QPointF> anchor = block.GetAnchor();
    if (block.GetBlockType() != CAxBlock::VideoBlock || anchor.size() != 1 || block.GetVideoRadius() < 1 ||
        !(std::abs(anchor.front().y()) <= 90.0) || !std::isfinite(anchor.front().x()))
        return anchor;
    constexpr int corners = 36;
    const AxPlanPlane plane(anchor);
    QList<QPointF> ring;
    for (int i = 0; i < corners; ++i) {
        const double direction = DegreeToRadians(360.0 * i / corners);
        ring += plane.ToLngLat(
            {block.GetVideoRadius() * std::sin(direction), block.GetVideoRadius() * std::cos(direction)});
    }
    return ring;
}
} // namespace

AxBlockAltitudes::AxBlockAltitudes(AxScene& drawn) : scene(drawn)
{
    thread.setMaxThreadCount(1);
    CAxBlockManager& blocks = CAxBlockManager::instance();
    connect(&blocks, &CAxBlockManager::blockAdded, this, &AxBlockAltitudes::slotAdded);
    connect(&blocks, &CAxBlockManager::blockChanged, this, &AxBlockAltitudes::slotChanged);
    connect(&blocks, &CAxBlockManager::blockDeleted, this, &AxBlockAltitudes::slotDeleted);
    for (const CAxBlock* block : blocks.GetBlockList())
        slotAdded(block->GetBlockID());
}

AxBlockAltitudes::~AxBlockAltitudes()
{
    for (const Asked& job : qAsConst(asked))
        *job.isOff = true;
    thread.clear();
    thread.waitForDone();
}

void AxBlockAltitudes::slotDeleted(const QString& id)
{
    const auto job = asked.find(id);
    if (job == asked.end())
        return;
    *job->isOff = true;
    asked.erase(job);
}

void AxBlockAltitudes::slotAdded(const QString& id)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    if (block && block->GetAverageAltitude() != 0.0)
        asked.insert(
            id, {GroundOf(*block), block->GetAverageAltitude(), std::make_shared<std::atomic<bool>>(true)});
    else
        slotChanged(id);
}

void AxBlockAltitudes::slotChanged(const QString& id)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    // It may be the name alone that has changed.
    if (!block || asked.value(id).vertices == GroundOf(*block))
        return;
    slotDeleted(id);
    if (!scene.MapNode())
        return;
    AxMeanAltitudeJob job;
    job.map = scene.MapNode()->getMap();
    job.vertices = GroundOf(*block);
    job.isArea = block->GetBlockType() != CAxBlock::StripBlock;
    const auto isOff = std::make_shared<std::atomic<bool>>(false);
    asked.insert(id, {job.vertices, block->GetAverageAltitude(), isOff});
    thread.start([this, id, job, isOff] {
        const std::optional<double> altitude = AxMeanAltitude(job, *isOff);
        QMetaObject::invokeMethod(
            this, [this, id, isOff, altitude] { write(id, isOff, altitude); }, Qt::QueuedConnection);
    });
}

void AxBlockAltitudes::write(const QString& id, const std::shared_ptr<std::atomic<bool>>& job,
                             const std::optional<double>& altitude)
{
    CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    const Asked wanted = asked.value(id);
    if (!block || wanted.isOff != job)
        return;
    if (!altitude)
        asked.remove(id);
    else if (block->GetAverageAltitude() == wanted.former)
        block->SetAverageAltitude(*altitude);
}
