#include "analysis/sight/AxSightAnalysis.h"
#include "analysis/sight/AxSightDrawing.h"
#include "analysis/sight/AxSightText.h"
#include "scene/AxScene.h"

#include <AxAlgorthm/AxCoordinate.h>
#include <AxAlgorthm/AxUnits.h>

#include <osgEarth/ImageLayer>
#include <osgEarth/Map>
#include <osgEarth/MapNode>

#include <QPointer>
#include <QThread>

#include <cmath>
#include <utility>

namespace {
constexpr int lookMs = 100;
// Of the work on a viewshed; the rest is looking and its picture.
constexpr double partOfHeights = 70.0;
constexpr double partOfLooking = 25.0;

bool IsPlace(const QPointF& place)
{
    return std::isfinite(place.x()) && std::abs(place.y()) <= 90.0;
}

double LengthOf(const QPointF& from, const QPointF& to)
{
    return DistanceBetweenTwoLatLng({from.x(), from.y(), 0.0}, {to.x(), to.y(), 0.0});
}
} // namespace

/// Hears of a viewshed that is shown or hidden as a layer, as in a list of layers.
class AxSightAnalysis::LayerWatch : public osgEarth::ImageLayerCallback
{
public:
    LayerWatch(AxSightAnalysis& owner, int number) : analysis(&owner), ofResult(number) {}

    void onVisibleChanged(osgEarth::TerrainLayer* layer) override
    {
        if (analysis)
            analysis->SetVisible(ofResult, layer->getVisible());
    }

private:
    const QPointer<AxSightAnalysis> analysis; // which the layer may outlive
    const int ofResult;
};

AxSightAnalysis::AxSightAnalysis(AxScene& drawn) : scene(drawn)
{
    connect(&clock, &QTimer::timeout, this, [this] { emit progress(*percent); });
}

AxSightAnalysis::~AxSightAnalysis()
{
    work.CallOff();
    for (Shown& one : shown)
        hide(one);
    EndPreview();
}

osgEarth::Map* AxSightAnalysis::map() const
{
    return scene.MapNode() ? scene.MapNode()->getMap() : nullptr;
}

bool AxSightAnalysis::begin(const QString& fault, QString* why)
{
    const QString reason = map() ? fault : tr("The map is not open.");
    if (why)
        *why = reason;
    if (!reason.isEmpty())
        return false;
    EndPreview();
    percent = std::make_shared<std::atomic<int>>(0);
    return true;
}

const AxMapHeights& AxSightAnalysis::ground()
{
    // What has been read of the map serves the next question.
    if (!heights || !asked.valid() || asked.get() != map()) {
        asked = map();
        heights.emplace(map());
    }
    return *heights;
}

void AxSightAnalysis::setBusy(bool busy)
{
    if (busy)
        clock.start(lookMs);
    else
        clock.stop();
    emit busyChanged(busy);
}

bool AxSightAnalysis::LookAlong(const AxSightEnd& from, const AxSightEnd& to, const AxSightOptions& options,
                                QString* why)
{
    QString fault;
    if (!IsPlace(from.place) || !IsPlace(to.place) || !std::isfinite(from.aboveGround) ||
        !std::isfinite(to.aboveGround))
        fault = tr("One end of the line is no place, or its height is none.");
    else if (LengthOf(from.place, to.place) > axLongestSight)
        fault = tr("The line is longer than %1.").arg(AxUnits::Length(axLongestSight));
    if (!begin(fault, why))
        return false;
    look({from, to, options});
    setBusy(true);
    return true;
}

void AxSightAnalysis::look(const Along& along)
{
    work.Start(
        [along, heightsOfMap = ground()](const std::atomic<bool>& isOff) {
            Answer answer;
            answer.line = std::make_shared<AxSightLine>(
                AxLineOfSight(along.from, along.to, heightsOfMap, along.options, isOff));
            return answer;
        },
        [this](Answer&& answer) {
            if (isPreview)
                takePreview(*answer.line);
            else
                take(std::move(answer));
        });
}

void AxSightAnalysis::Preview(const AxSightEnd& from, const AxSightEnd& to, const AxSightOptions& options)
{
    if (IsBusy() || !map() || !IsPlace(from.place) || !IsPlace(to.place) ||
        LengthOf(from.place, to.place) > axLongestSight)
        return;
    const bool isWorking = work.IsBusy();
    isPreview = true;
    if (isWorking)
        next = Along{from, to, options};
    else
        look({from, to, options});
}

void AxSightAnalysis::takePreview(const AxSightLine& line)
{
    if (!preview) {
        preview = new osg::Group;
        draw(preview);
    }
    AxDrawSightLine(*preview, scene, line, tr("Observer"));
    if (next)
        look(*std::exchange(next, {}));
}

void AxSightAnalysis::EndPreview()
{
    next.reset();
    if (isPreview)
        work.CallOff();
    isPreview = false;
    if (preview)
        takeOff(preview);
    preview = nullptr;
}

bool AxSightAnalysis::LookAround(const AxViewshedQuestion& question, QString* why)
{
    if (!begin(AxSightFaultText(AxViewshedFaultOf(question)), why))
        return false;
    work.Start(
        [question, heightsOfMap = ground(), done = percent](const std::atomic<bool>& isOff) {
            // It takes seconds of a core that the map is drawn with.
            QThread::currentThread()->setPriority(QThread::IdlePriority);
            const auto tell = [&](double before, double part) {
                return [&isOff, &done, before, part](double share) {
                    *done = static_cast<int>(before + part * share);
                    return !isOff;
                };
            };
            const AxSightGrid grid = AxSightGridOf(question, heightsOfMap, tell(0.0, partOfHeights));
            Answer answer;
            answer.viewshed = std::make_shared<AxViewshed>(
                AxViewshedOf(question, grid, tell(partOfHeights, partOfLooking)));
            if (answer.viewshed->fault == AxViewshedFault::None && !isOff)
                answer.picture = AxViewshedPicture(*answer.viewshed);
            return answer;
        },
        [this](Answer&& answer) { take(std::move(answer)); });
    setBusy(true);
    return true;
}

void AxSightAnalysis::CallOff()
{
    if (!IsBusy())
        return;
    work.CallOff();
    setBusy(false);
}

void AxSightAnalysis::take(Answer&& answer)
{
    setBusy(false);
    if (answer.viewshed && answer.viewshed->fault != AxViewshedFault::None) {
        emit failed(AxSightFaultText(answer.viewshed->fault));
        return;
    }
    Shown one;
    one.result.number = ++last;
    one.result.name = (answer.line ? tr("Line of sight %1") : tr("Viewshed %1")).arg(last);
    one.result.line = answer.line;
    one.result.viewshed = answer.viewshed;
    one.node = new osg::Group;
    one.node->setName(one.result.name.toStdString());
    if (answer.line)
        AxDrawSightLine(*one.node, scene, *answer.line, one.result.name);
    else {
        AxDrawObserver(*one.node, scene, *answer.viewshed, one.result.name);
        one.layer = AxViewshedLayer(answer.picture, one.result.name);
        if (one.layer)
            one.layer->addCallback(new LayerWatch(*this, last));
    }
    shown += one;
    show(shown.last());
    emit added(last);
}

void AxSightAnalysis::show(Shown& one)
{
    if (one.node)
        draw(one.node);
    if (one.layer)
        map()->addImageLayer(one.layer);
}

void AxSightAnalysis::hide(Shown& one)
{
    if (one.node)
        takeOff(one.node);
    if (one.layer && map())
        map()->removeImageLayer(one.layer);
}

void AxSightAnalysis::draw(osg::Node* node)
{
    if (!group) {
        group = new osg::Group;
        group->setName("Sight");
        scene.DrawGroup()->addChild(group);
    }
    group->addChild(node);
}

void AxSightAnalysis::takeOff(osg::Node* node)
{
    if (!group)
        return;
    group->removeChild(node);
    if (group->getNumChildren() > 0)
        return;
    scene.DrawGroup()->removeChild(group);
    group = nullptr;
}

int AxSightAnalysis::indexOf(int number) const
{
    for (int i = 0; i < shown.size(); ++i)
        if (shown[i].result.number == number)
            return i;
    return -1;
}

QList<AxSightResult> AxSightAnalysis::GetResults() const
{
    QList<AxSightResult> results;
    for (const Shown& one : shown)
        results += one.result;
    return results;
}

AxSightResult AxSightAnalysis::GetResult(int number) const
{
    const int index = indexOf(number);
    return index < 0 ? AxSightResult() : shown[index].result;
}

bool AxSightAnalysis::Remove(int number)
{
    const int index = indexOf(number);
    if (index < 0)
        return false;
    Shown gone = shown.takeAt(index);
    hide(gone);
    emit removed(number);
    return true;
}

bool AxSightAnalysis::SetVisible(int number, bool visible)
{
    const int index = indexOf(number);
    if (index < 0)
        return false;
    Shown& one = shown[index];
    if (one.result.isVisible == visible)
        return true;
    one.result.isVisible = visible;
    if (one.node)
        one.node->setNodeMask(visible ? ~0U : 0U);
    if (one.layer)
        one.layer->setVisible(visible);
    emit changed(number);
    return true;
}

void AxSightAnalysis::Clear()
{
    while (!shown.isEmpty())
        Remove(shown.last().result.number);
}
