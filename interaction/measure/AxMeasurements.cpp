#include "interaction/measure/AxMeasurements.h"
#include "interaction/measure/AxMeasureAdapter.h"
#include "interaction/measure/AxMeasureHit.h"
#include "interaction/objects/AxObjects.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"

#include <osgEarth/MapNode>
#include <osgViewer/Viewer>

#include <QCoreApplication>

#include <algorithm>
#include <utility>

AxMeasurements::AxMeasurements(AxViewerParts& viewer, AxObjects& objects) : parts(viewer), book(objects)
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
    const QString id = adapter->GetHandleID();
    if (isClosed || Find(id))
        return;
    AxMeasurement one;
    one.id = id;
    one.tool = adapter->Tool();
    one.name = QCoreApplication::translate("AxMeasurement", "%1 %2")
                   .arg(AxMeasureText::Kind(one.tool))
                   .arg(++counts[one.tool]);
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
