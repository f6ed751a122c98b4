#include "interaction/measure/AxMeasurements.h"
#include "interaction/measure/AxMeasureAdapter.h"
#include "interaction/measure/AxMeasureHit.h"
#include "interaction/objects/AxObjects.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <osgEarth/MapNode>
#include <osgViewer/Viewer>

#include <QCoreApplication>
#include <QGraphicsView>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

AxMeasurements::AxMeasurements(AxViewerParts& viewer, AxObjects& objects, CAxEarthViewer* earth)
    : parts(viewer), book(objects), earthViewer(earth)
{
    thread.setMaxThreadCount(1);
    // Queued, because the object is on its way out of being the current one.
    connect(&book, &AxObjects::currentChanged, this, &AxMeasurements::endLeft, Qt::QueuedConnection);
}

AxMeasurements::~AxMeasurements()
{
    Close();
}

void AxMeasurements::Close()
{
    isClosed = true;
    for (const auto& isOff : qAsConst(jobs))
        *isOff = true;
    jobs.clear();
    thread.clear();
    thread.waitForDone();
    for (const QPointer<AxMeasureAdapter>& adapter : std::exchange(restored, {}))
        delete adapter;
}

void AxMeasurements::Began(AxMeasureAdapter* adapter)
{
    running = adapter;
}

void AxMeasurements::endLeft()
{
    if (running && running->GetHandleOperation() == OperationDrawing && book.Current() != running &&
        book.Aside() != running)
        running->EndHandle();
}

const AxMeasurement* AxMeasurements::Find(const QString& id) const
{
    const auto* found =
        std::find_if(list.begin(), list.end(), [&id](const AxMeasurement& one) { return one.id == id; });
    return found == list.end() ? nullptr : found;
}

AxMeasurement* AxMeasurements::find(const QString& id)
{
    return Find(id) ? list.data() + (Find(id) - list.constData()) : nullptr;
}

void AxMeasurements::Take(AxMeasureAdapter* adapter)
{
    if (isClosed || Find(adapter->GetHandleID()))
        return;
    QString name;
    const auto isTaken = [&name](const AxMeasurement& one) { return one.name == name; };
    // Those of another session have their numbers already.
    do {
        name = QCoreApplication::translate("AxMeasurement", "%1 %2")
                   .arg(AxMeasureText::Kind(adapter->Tool()))
                   .arg(++counts[adapter->Tool()]);
    } while (std::any_of(list.cbegin(), list.cend(), isTaken));
    enter(adapter, name);
}

bool AxMeasurements::Restore(const AxMeasurement& drawn)
{
    const AxShapeFactories::Factory* factory = book.Factories().Of(drawn.tool);
    QList<osg::Vec3d> points(drawn.points.begin(), drawn.points.end());
    const auto isPlace = [](const osg::Vec3d& point) { return point.valid() && std::abs(point.y()) <= 90.0; };
    if (isClosed || !factory || drawn.id.isEmpty() || Find(drawn.id) || book.Find(drawn.id) ||
        !std::all_of(points.cbegin(), points.cend(), isPlace))
        return false;
    const QPointer<AxMeasureAdapter> begun = running;
    std::unique_ptr<CAxHandleAdapter> made((*factory)(earthViewer, parts.Widget()->parent()));
    running = begun;
    auto* adapter = qobject_cast<AxMeasureAdapter*>(made.get());
    if (!adapter || !adapter->ShapeKind().Allows(points.size()))
        return false;
    parts.Scene().GetElevations(points);
    adapter->SetHandleID(drawn.id);
    adapter->ImportGeometry({points.cbegin(), points.cend()}, false);
    restored.erase(std::remove_if(restored.begin(), restored.end(),
                                  [](const QPointer<AxMeasureAdapter>& one) { return one.isNull(); }),
                   restored.end());
    restored += qobject_cast<AxMeasureAdapter*>(made.release());
    const QPointer<AxMeasurements> self(this);
    isRestoring = true;
    enter(adapter, drawn.name);
    if (self)
        isRestoring = false;
    return true;
}

void AxMeasurements::enter(AxMeasureAdapter* adapter, const QString& name)
{
    const QString id = adapter->GetHandleID();
    AxMeasurement one;
    one.id = id;
    one.tool = adapter->Tool();
    one.name = name;
    one.points = adapter->GetAnchor();
    one.isClosed = adapter->ShapeKind().IsClosed();
    const std::atomic<bool> isOff = false;
    one.values = adapter->Work()(one.points, {}, isOff);
    // Numbers without their system mean nothing in a list or a file.
    if (!one.values.system.isEmpty())
        one.name = QCoreApplication::translate("AxMeasurement", "%1 (%2)").arg(one.name, one.values.system);
    one.isPending = parts.Scene().MapNode() != nullptr;
    list += one;
    adapters[id] = adapter;
    adapter->ShowMeasured(one);
    const QPointer<AxMeasurements> self(this);
    emit added(id);
    if (self && Find(id))
        read(id);
}

bool AxMeasurements::read(const QString& id)
{
    const AxMeasurement* one = Find(id);
    const QPointer<AxMeasureAdapter> adapter = adapters.value(id);
    osgEarth::MapNode* const mapNode = parts.Scene().MapNode();
    if (!one || !adapter || !adapter->IsReadHere() || !mapNode || isClosed)
        return false;
    if (!heights || readMap.get() != mapNode->getMap()) {
        readMap = mapNode->getMap();
        heights = std::make_shared<AxMapHeights>(mapNode->getMap());
    }
    if (const auto former = jobs.value(id))
        *former = true;
    const auto isOff = std::make_shared<std::atomic<bool>>(false);
    jobs[id] = isOff;
    thread.start([this, id, isOff, work = adapter->Work(), points = one->points, ground = heights] {
        if (*isOff)
            return;
        AxPathGround looks;
        looks.height = *ground;
        const AxMeasuredValues values = work(points, looks, *isOff);
        const auto deliver = [this, id, isOff, values] {
            if (!*isOff)
                SetValues(id, values, false);
        };
        QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
    });
    return true;
}

bool AxMeasurements::SetValues(const QString& id, const AxMeasuredValues& values, bool isPending)
{
    jobs.remove(id);
    AxMeasurement* one = find(id);
    if (!one)
        return false;
    one->values = values;
    one->isPending = isPending;
    if (const QPointer<AxMeasureAdapter> adapter = adapters.value(id))
        adapter->ShowMeasured(*one);
    emit changed(id);
    return true;
}

void AxMeasurements::MeasureAgain()
{
    const QPointer<AxMeasurements> self(this);
    heights.reset();
    for (const AxMeasurement& told : All()) {
        AxMeasurement* one = self ? find(told.id) : nullptr;
        if (!one || !read(told.id))
            continue;
        one->isPending = true;
        emit changed(told.id);
    }
}

void AxMeasurements::WriteAgain()
{
    for (const AxMeasurement& one : qAsConst(list))
        if (const QPointer<AxMeasureAdapter> adapter = adapters.value(one.id))
            adapter->ShowMeasured(one);
}

bool AxMeasurements::Remove(const QString& id)
{
    const AxMeasurement* one = Find(id);
    if (!one)
        return false;
    if (const auto job = jobs.take(id))
        *job = true;
    list.remove(static_cast<int>(one - list.constData()));
    highlighted.removeAll(id);
    const QPointer<AxMeasurements> self(this);
    if (const QPointer<AxMeasureAdapter> adapter = adapters.take(id))
        adapter->TakeOffMap();
    if (self)
        emit removed(id);
    return true;
}

void AxMeasurements::Clear()
{
    const QPointer<AxMeasurements> self(this);
    for (const AxMeasurement& one : All())
        if (self)
            Remove(one.id);
}

void AxMeasurements::Forget(const AxMeasureAdapter* adapter)
{
    const QString id = adapter->GetHandleID();
    // Whoever removes it by other ways removes the measurement.
    if (!isClosed && adapters.value(id) == adapter) {
        adapters.remove(id);
        Remove(id);
    }
}

void AxMeasurements::SetHighlighted(const QStringList& ids)
{
    highlighted = ids;
    for (const QPointer<AxMeasureAdapter>& adapter : qAsConst(adapters))
        if (adapter)
            adapter->SetSelectedAmongSeveral(ids.contains(adapter->GetHandleID()));
}

QString AxMeasurements::SeenAt(const osg::Vec3d& world) const
{
    const AxMeasureHit hit(*parts.Scene().View()->getCamera(), world);
    for (const auto isAt : {&AxMeasureAdapter::IsShapeAt, &AxMeasureAdapter::IsTextAt})
        for (auto one = list.crbegin(); one != list.crend(); ++one)
            if (const QPointer<AxMeasureAdapter> adapter = adapters.value(one->id))
                if ((adapter->*isAt)(hit))
                    return one->id;
    return {};
}
