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
        ask(*block, true);
    else
        slotChanged(id);
}

void AxBlockAltitudes::slotChanged(const QString& id)
{
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    // It may be the name alone that has changed.
    if (!block || asked.value(id).vertices == GroundOf(*block))
        return;
    // A record that is filled from a file has its altitude with its first vertices.
    const bool isFilled = asked.value(id).vertices.isEmpty() && block->GetAverageAltitude() != 0.0;
    ask(*block, isFilled);
}

void AxBlockAltitudes::AskAgain()
{
    for (const CAxBlock* block : CAxBlockManager::instance().GetBlockList()) {
        const Asked known = asked.value(block->GetBlockID());
        const double altitude = block->GetAverageAltitude();
        if (altitude == 0.0 || (known.isOfGround && altitude == known.former))
            ask(*block, false);
    }
}

void AxBlockAltitudes::ask(const CAxBlock& block, bool isCompared)
{
    const QString id = block.GetBlockID();
    const Asked before = asked.value(id);
    slotDeleted(id);
    if (!scene.MapNode())
        return;
    AxMeanAltitudeJob job;
    job.map = scene.MapNode()->getMap();
    job.vertices = GroundOf(block);
    job.isArea = block.GetBlockType() != CAxBlock::StripBlock;
    const auto isOff = std::make_shared<std::atomic<bool>>(false);
    Asked wanted{job.vertices, block.GetAverageAltitude(), isOff, isCompared};
    wanted.isOfGround = before.isOfGround && wanted.former == before.former;
    asked.insert(id, wanted);
    thread.start([this, id, job, isOff] {
        const std::optional<double> altitude = AxMeanAltitude(job, *isOff);
        QMetaObject::invokeMethod(
            this, [this, id, isOff, altitude] { write(id, isOff, altitude); }, Qt::QueuedConnection);
    });
}

void AxBlockAltitudes::write(const QString& id, const std::shared_ptr<std::atomic<bool>>& job,
                             const std::optional<double>& altitude)
{
    // As exact as a file keeps it, and finer than any ground.
    constexpr double same = 0.5;
    CAxBlock* block = CAxBlockManager::instance().GetBlock(id);
    const auto wanted = asked.find(id);
    if (!block || wanted == asked.end() || wanted->isOff != job)
        return;
    const bool isUntouched = block->GetAverageAltitude() == wanted->former;
    if (!altitude) {
        if (!wanted->isOfGround && !wanted->isCompared)
            asked.erase(wanted);
    } else if (wanted->isCompared)
        wanted->isOfGround = isUntouched && std::abs(*altitude - wanted->former) < same;
    else if (isUntouched) {
        block->SetAverageAltitude(*altitude);
        wanted->former = *altitude;
        wanted->isOfGround = true;
    }
}
