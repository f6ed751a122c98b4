#include "viewer/AxModelOutlines.h"
#include "analysis/CAxAncillaryProcess.h"
#include "analysis/models/AxModelBound.h"
#include "analysis/models/AxOutlinesMeet.h"
#include "interaction/models/AxModelLayers.h"
#include "interaction/objects/CAxHandleAdapter.h"
#include "viewer/AxViewerPrivate.h"

#include <AxAlgorthm/AxAreaOperations.h>
#include <AxAlgorthm/AxCoordinate.h>
#include <AxData/CAxBlockManager.h>

#include <QPointer>
#include <QPolygonF>

#include <algorithm>

namespace {
/// What is painted on the ground is painted on a wall that stands right above it, too: outlines are drawn a
/// little farther out.
constexpr double leastApart = 2.0; // metres
constexpr double apartOfSize = 0.01;

QVariantList DrawnAround(const std::vector<QPointF>& ring)
{
    QPolygonF places;
    for (const QPointF& place : ring)
        places += place;
    const QRectF box = places.boundingRect();
    const double metres =
        DistanceBetweenTwoLatLng({box.left(), box.top(), 0.0}, {box.right(), box.bottom(), 0.0});
    const AxAreaOperations::Result grown =
        AxAreaOperations::Buffer(places.toList(), std::max(leastApart, apartOfSize * metres));
    QVariantList outline;
    for (const QPointF& place : grown.areas.isEmpty() ? places.toList() : grown.areas.first().ring)
        outline += QVariant(QVariantList{place.x(), place.y(), 0.0});
    return outline;
}
} // namespace

AxModelOutlines::AxModelOutlines(AxViewerPrivate& owner, AxModelLayers& layers) : viewer(owner), book(layers)
{
    viewer.objects.SetModelLayers([this](const std::vector<osg::Vec3d>& ring) { return Met(ring); });
    connect(&book, &AxModelLayers::loaded, this, &AxModelOutlines::look);
    connect(&book, &AxModelLayers::changed, this, &AxModelOutlines::follow);
    connect(&book, &AxModelLayers::removed, this, &AxModelOutlines::forget);
    const CAxBlockManager& blocks = CAxBlockManager::instance();
    connect(&blocks, &CAxBlockManager::blockAdded, this, &AxModelOutlines::testLater);
    connect(&blocks, &CAxBlockManager::blockChanged, this, &AxModelOutlines::testLater);
    connect(&viewer.objects, &AxObjects::imported, this, &AxModelOutlines::testLater);
}

AxModelOutlines::~AxModelOutlines()
{
    viewer.objects.SetModelLayers({});
    if (group && viewer.boundGroup)
        viewer.boundGroup->removeChild(group);
}

// Outlines

void AxModelOutlines::look(const QString& layer)
{
    osg::Group* const node = book.NodeOf(layer);
    CAxAncillaryProcess* const process = viewer.ancillaryProcess;
    drop(layer);
    if (!node || !process || !viewer.boundGroup)
        return answer();
    if (!group) {
        group = new osgEarth::DrapeableNode;
        group->setName("ModelOutlines");
        viewer.boundGroup->addChild(group);
    }
    connect(process, &QObject::destroyed, this, &AxModelOutlines::giveUp, Qt::UniqueConnection);
    Outline& outline = outlines[layer];
    outline.job = ++jobs;
    outline.drawn = new osg::Geode;
    outline.drawn->setName(layer.toStdString());
    group->addChild(outline.drawn);
    awaited.insert(outline.job, layer);
    follow(layer);
    process->SetModelBoundPara(node, osg::Matrixd(), outline.job, 0.0, nullptr, this);
}

void AxModelOutlines::slotModelBound(QVariant bound)
{
    const QVariantList numberAndOutline = bound.toList();
    const QString layer = awaited.take(numberAndOutline.value(0).toInt());
    const auto outline = outlines.find(layer);
    if (outline != outlines.end()) {
        for (const QVariant& place : numberAndOutline.value(1).toList())
            outline->ring.emplace_back(place.toList().value(0).toDouble(),
                                       place.toList().value(1).toDouble());
        if (const auto line = AxOutlineDrawable(DrawnAround(outline->ring), *viewer.mapSRS))
            outline->drawn->addDrawable(line);
        testAllLater();
    }
    answer();
}

void AxModelOutlines::follow(const QString& layer)
{
    const auto outline = outlines.find(layer);
    const std::optional<AxModelLayer> known = book.Find(layer);
    if (outline != outlines.end() && known)
        outline->drawn->setNodeMask(known->options.isVisible ? ~0U : 0U);
}

void AxModelOutlines::drop(const QString& layer)
{
    const auto outline = outlines.find(layer);
    if (outline == outlines.end())
        return;
    if (awaited.remove(outline->job) > 0 && viewer.ancillaryProcess)
        viewer.ancillaryProcess->CancelModelBound(outline->job, this);
    group->removeChild(outline->drawn);
    outlines.erase(outline);
    testAllLater();
}

void AxModelOutlines::forget(const QString& layer)
{
    drop(layer);
    answer();
}

void AxModelOutlines::giveUp()
{
    awaited.clear();
    answer();
}

// Blocks

QStringList AxModelOutlines::Met(const std::vector<osg::Vec3d>& ring) const
{
    QStringList names;
    if (outlines.isEmpty())
        return names;
    std::vector<QPointF> places;
    places.reserve(ring.size());
    for (const osg::Vec3d& place : ring)
        places.emplace_back(place.x(), place.y());
    for (const AxModelLayer& layer : book.All()) {
        const auto outline = outlines.find(layer.id);
        if (outline != outlines.end() && !names.contains(layer.name) && AxOutlinesMeet(outline->ring, places))
            names += layer.name;
    }
    return names;
}

void AxModelOutlines::testLater(const QString& blockID)
{
    toTest.insert(blockID);
    if (isTestDue)
        return;
    isTestDue = true;
    // The record of a drawing comes before the end of the drawing.
    QMetaObject::invokeMethod(this, &AxModelOutlines::test, Qt::QueuedConnection);
}

void AxModelOutlines::testAllLater()
{
    for (const CAxBlock* block : CAxBlockManager::instance().GetBlockList())
        testLater(block->GetBlockID());
}

void AxModelOutlines::test()
{
    isTestDue = false;
    const QSet<QString> due = std::exchange(toTest, {});
    const QPointer<AxModelOutlines> self(this);
    // Who hears of it may delete blocks, and the viewer.
    for (const QString& id : due)
        if (CAxHandleAdapter* const object = self ? viewer.objects.Find(id) : nullptr)
            viewer.objects.TestModelLayersAgain(object);
}

// Questions

void AxModelOutlines::Ask(const QString& blockID)
{
    questions += blockID;
    QMetaObject::invokeMethod(this, &AxModelOutlines::answer, Qt::QueuedConnection);
}

void AxModelOutlines::answer()
{
    const QPointer<AxModelOutlines> self(this);
    // A model on its way may be the tower that a pilot asks about.
    const auto isAllKnown = [this] {
        const QList<AxModelLayer> all = book.All();
        return awaited.isEmpty() && std::none_of(all.begin(), all.end(),
                                                 [](const AxModelLayer& layer) { return layer.isLoading; });
    };
    while (self && !questions.isEmpty() && isAllKnown()) {
        const QString id = questions.takeFirst();
        CAxHandleAdapter* const object = id.isEmpty() ? viewer.objects.Current() : viewer.objects.Find(id);
        emit answered(object && object->GetContainedBlock() && !Met(object->Outline()).isEmpty());
    }
}
