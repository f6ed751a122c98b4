#include "analysis/volume/AxVolumeAnalysis.h"
#include "analysis/AxPictureLayer.h"
#include "analysis/volume/AxVolumeText.h"
#include "scene/AxScene.h"

#include <osgEarth/ImageLayer>
#include <osgEarth/MapNode>

#include <QCoreApplication>
#include <QPointer>
#include <QThread>

#include <algorithm>
#include <new>
#include <utility>

namespace {
constexpr int lookMs = 100;
constexpr float pictureOpacity = 0.6f;
// Of the work; the rest is comparing and the picture.
constexpr double partOfGrid = 80.0;
constexpr double partOfComparing = 10.0;

bool HasCellsOf(const AxVolumeQuestion& one, const AxVolumeQuestion& other)
{
    const auto cellOf = [](const AxVolumeQuestion& of) {
        return of.cell != 0.0 ? of.cell : AxVolumeCellOf(of.ring);
    };
    return one.ring == other.ring && cellOf(one) == cellOf(other);
}

/// The fields show the question that stands, so what was refused has to be named.
QString RefusalOf(AxVolumeFault fault, const AxVolumeQuestion& question, const QString& reason)
{
    constexpr int digits = 6;
    const bool isOfCell = fault == AxVolumeFault::Coarse || fault == AxVolumeFault::TooMany;
    return isOfCell ? AxVolumeAnalysis::tr("Cells of %1 m were not taken. %2")
                          .arg(QString::number(question.cell, 'g', digits), reason)
                    : reason;
}
} // namespace

/// Hears of a picture that is shown or hidden as a layer, as in a list of layers.
class AxVolumeAnalysis::LayerWatch : public osgEarth::ImageLayerCallback
{
public:
    LayerWatch(AxVolumeAnalysis& owner, QString ofResult) : analysis(&owner), id(std::move(ofResult)) {}

    void onVisibleChanged(osgEarth::TerrainLayer* layer) override
    {
        if (analysis)
            analysis->SetVisible(id, layer->getVisible());
    }

private:
    const QPointer<AxVolumeAnalysis> analysis; // which the layer may outlive
    const QString id;
};

AxVolumeAnalysis::AxVolumeAnalysis(AxScene& drawn) : scene(drawn)
{
    qRegisterMetaType<AxVolumeQuestion>();
    connect(&clock, &QTimer::timeout, this, [this] { emit progress(running, *percent); });
}

AxVolumeAnalysis::~AxVolumeAnalysis()
{
    work.CallOff();
    for (Kept& one : kept)
        dropLayer(one);
}

osgEarth::Map* AxVolumeAnalysis::map() const
{
    return scene.MapNode() ? scene.MapNode()->getMap() : nullptr;
}

const AxMapHeights& AxVolumeAnalysis::ground()
{
    // What has been read of the map serves the next question.
    if (!heights || !asked.valid() || asked.get() != map()) {
        asked = map();
        heights.emplace(map());
    }
    return *heights;
}

AxVolumeAnalysis::Kept* AxVolumeAnalysis::find(const QString& id)
{
    const auto found =
        std::find_if(kept.begin(), kept.end(), [&id](const Kept& one) { return one.result.id == id; });
    return found == kept.end() ? nullptr : &*found;
}

void AxVolumeAnalysis::SetNext(const AxVolumeQuestion& settings)
{
    next = settings;
    next.ring.clear();
    next.mayBeLarge = false;
    emit nextChanged();
}

// Asking

bool AxVolumeAnalysis::Ask(const QString& id, const QString& name, const AxVolumeQuestion& question,
                           QString* why)
{
    const AxVolumeFault fault = AxVolumeFaultOf(question);
    const QString reason = map() ? AxVolumeFaultText(fault, question) : tr("The map is not open.");
    if (why)
        *why = reason;
    const bool isNew = !find(id);
    if (isNew) {
        Kept one;
        one.result.id = id;
        one.result.question = question;
        one.result.fault = fault;
        kept += one;
    }
    Kept& one = *find(id);
    one.result.name = name;
    const bool isGood = reason.isEmpty() && ask(one, question);
    // Of a large grid a box tells.
    if (!isGood && !isNew)
        one.result.refusal = fault == AxVolumeFault::Many ? QString() : RefusalOf(fault, question, reason);
    const QPointer<AxVolumeAnalysis> self(this);
    if (isNew)
        emit added(id);
    else
        emit changed(id);
    if (self && fault == AxVolumeFault::Many && map())
        emit largeAsked(id, question);
    if (self && isGood)
        begin();
    return isGood;
}

bool AxVolumeAnalysis::AskAgain(const QString& id)
{
    const AxVolumeResult result = GetResult(id);
    return !result.id.isEmpty() && Ask(id, result.name, result.question);
}

bool AxVolumeAnalysis::Restore(const QString& id, const QString& name, AxVolumeQuestion question)
{
    if (find(id))
        return false;
    question.mayBeLarge = false;
    if (AxVolumeFaultOf(question) != AxVolumeFault::Many) {
        Ask(id, name, question);
        return true;
    }
    Kept one;
    one.result.id = id;
    one.result.name = name;
    one.result.question = question;
    one.result.fault = AxVolumeFault::Many;
    kept += one;
    emit added(id);
    return true;
}

void AxVolumeAnalysis::ForgetRefusal(const QString& id)
{
    Kept* one = find(id);
    if (!one || one->result.refusal.isEmpty())
        return;
    one->result.refusal.clear();
    emit changed(id);
}

bool AxVolumeAnalysis::ask(Kept& one, const AxVolumeQuestion& question)
{
    const QString id = one.result.id;
    one.result.question = question;
    one.result.refusal.clear();
    one.result.fault = AxVolumeFault::None;
    one.result.isPending = true;
    one.result.hasModels = models && models(question.ring);
    waiting.removeAll(id);
    waiting += id;
    if (running == id)
        setRunning({});
    return true;
}

void AxVolumeAnalysis::setRunning(const QString& id)
{
    if (id.isEmpty())
        work.CallOff();
    running = id;
}

void AxVolumeAnalysis::begin()
{
    if (running.isEmpty() && !waiting.isEmpty() && map()) {
        const QString id = waiting.takeFirst();
        const Kept& one = *find(id);
        setRunning(id);
        percent = std::make_shared<std::atomic<int>>(0);
        const std::shared_ptr<const AxVolume> former = one.result.volume;
        const bool isGridGood =
            former && former->grid && !one.isGroundOld && HasCellsOf(former->question, one.result.question);
        work.Start(
            [question = one.result.question, grid = isGridGood ? former->grid : nullptr,
             heightsOfMap = ground(), done = percent](const std::atomic<bool>& isOff) {
                // It takes seconds of a core that the map is drawn with.
                QThread::currentThread()->setPriority(QThread::IdlePriority);
                const auto tell = [&](double before, double part) {
                    return [&isOff, &done, before, part](double share) {
                        *done = static_cast<int>(before + part * share);
                        return !isOff;
                    };
                };
                Answer answer;
                try {
                    const std::shared_ptr<const AxVolumeGrid> used =
                        grid ? grid
                             : std::make_shared<const AxVolumeGrid>(
                                   AxVolumeGridOf(question, heightsOfMap, tell(0.0, partOfGrid)));
                    answer.volume = std::make_shared<AxVolume>(
                        AxVolumeOf(question, used, tell(partOfGrid, partOfComparing)));
                    if (answer.volume->fault == AxVolumeFault::None && !isOff)
                        answer.picture = std::make_shared<const AxGeoPicture>(
                            AxVolumeRaster(*answer.volume, &isOff), AxPixelsOfCell(used->columns, used->rows),
                            &isOff);
                } catch (const std::bad_alloc&) {
                    answer = {};
                    answer.volume = std::make_shared<AxVolume>();
                    answer.volume->question = question;
                    answer.volume->fault = AxVolumeFault::NoMemory;
                }
                return answer;
            },
            [this](Answer&& answer) { take(std::move(answer)); });
    }
    const bool isBusy = !running.isEmpty();
    if (isBusy == wasBusy)
        return;
    wasBusy = isBusy;
    if (isBusy)
        clock.start(lookMs);
    else
        clock.stop();
    emit busyChanged(isBusy);
}

void AxVolumeAnalysis::take(Answer&& answer)
{
    const QString id = std::exchange(running, QString());
    Kept& one = *find(id);
    one.result.isPending = false;
    one.result.fault = answer.volume->fault;
    if (answer.volume->fault == AxVolumeFault::None) {
        // As somebody has set it for the former picture.
        const float opacity = one.layer ? one.layer->getOpacity() : pictureOpacity;
        dropLayer(one);
        one.result.volume = answer.volume;
        one.result.isStale = false;
        one.isGroundOld = false;
        one.pictureMegabytes = answer.picture ? answer.picture->Megabytes() : 0.0;
        one.layer = AxPictureLayer(answer.picture, one.result.name, opacity);
        if (one.layer && map()) {
            one.layer->setVisible(one.result.isVisible);
            one.layer->addCallback(new LayerWatch(*this, id));
            map()->addImageLayer(one.layer);
        }
    }
    end(id);
}

void AxVolumeAnalysis::end(const QString& id)
{
    const QPointer<AxVolumeAnalysis> self(this);
    emit changed(id);
    if (self)
        begin();
}

void AxVolumeAnalysis::ForgetGround()
{
    heights.reset();
    const QPointer<AxVolumeAnalysis> self(this);
    for (const AxVolumeResult& told : GetResults()) {
        Kept* one = self ? find(told.id) : nullptr;
        if (!one)
            return;
        one->isGroundOld = true;
        one->result.isStale = one->result.volume != nullptr;
        // Nobody has to wait again for what took long, unless it is begun already.
        if (one->result.isPending || AxVolumeSizeOf(told.question).cells <= axManyVolumeCells)
            ask(*one, told.question);
        emit changed(told.id);
    }
    if (self)
        begin();
}

void AxVolumeAnalysis::CallOff(const QString& id)
{
    Kept* one = find(id);
    if (!one || !one->result.isPending)
        return;
    waiting.removeAll(id);
    if (running == id)
        setRunning({});
    one->result.isPending = false;
    one->result.fault = AxVolumeFault::Interrupted;
    end(id);
}

// What was found

QList<AxVolumeResult> AxVolumeAnalysis::GetResults() const
{
    QList<AxVolumeResult> results;
    for (const Kept& one : kept)
        results += one.result;
    return results;
}

AxVolumeResult AxVolumeAnalysis::GetResult(const QString& id) const
{
    for (const Kept& one : kept)
        if (one.result.id == id)
            return one.result;
    return {};
}

double AxVolumeAnalysis::HeldMegabytes() const
{
    constexpr double bytesOfMegabyte = 1.0e6;
    double held = 0.0;
    for (const Kept& one : kept)
        if (const AxVolume* volume = one.result.volume.get(); volume && volume->grid) {
            const AxVolumeGrid& grid = *volume->grid;
            const std::size_t bytes = grid.kinds.size() +
                                      sizeof(float) * (grid.heights.size() + volume->differences.size()) +
                                      sizeof(AxVolumeGrid::EdgeCell) * grid.edges.size();
            held += static_cast<double>(bytes) / bytesOfMegabyte + one.pictureMegabytes;
        }
    return held;
}

QStringList AxVolumeAnalysis::NotesOf(const AxVolumeResult& result, bool isBesideFigures)
{
    QStringList notes;
    if (result.fault != AxVolumeFault::None)
        notes += AxVolumeFaultText(result.fault, result.question);
    if (result.isStale && !result.isPending)
        notes += tr("The ground has changed since.");
    const AxVolume* volume = result.volume.get();
    const auto percent = [](double share) { return QString::number(100.0 * share, 'f', 1); };
    if (volume && !isBesideFigures && volume->unknown > 0.0)
        notes += tr("%1 % of the area has no known height.").arg(percent(volume->UnknownShare()));
    if (volume && !isBesideFigures && volume->IsRimMissing())
        notes += tr("%1 % of the rim has no known height: the base is of the rest.")
                     .arg(percent(1.0 - volume->rimKnown));
    if (volume && result.hasModels)
        notes += tr("3-D models in the area are not counted: the volume is that of the ground.");
    return notes;
}

void AxVolumeAnalysis::LookForModels()
{
    const QPointer<AxVolumeAnalysis> self(this);
    for (const AxVolumeResult& told : GetResults()) {
        Kept* one = self ? find(told.id) : nullptr;
        const bool hasModels = one && models && models(told.question.ring);
        if (!one || one->result.hasModels == hasModels)
            continue;
        one->result.hasModels = hasModels;
        emit changed(told.id);
    }
}

void AxVolumeAnalysis::dropLayer(Kept& one)
{
    if (one.layer && map())
        map()->removeImageLayer(one.layer);
    one.layer = nullptr;
}

bool AxVolumeAnalysis::Remove(const QString& id)
{
    for (int i = 0; i < kept.size(); ++i)
        if (kept[i].result.id == id) {
            Kept gone = kept.takeAt(i);
            waiting.removeAll(id);
            if (running == id)
                setRunning({});
            dropLayer(gone);
            const QPointer<AxVolumeAnalysis> self(this);
            if (chosen == id)
                SetChosen({});
            if (self)
                emit removed(id);
            if (self)
                begin();
            return true;
        }
    return false;
}

bool AxVolumeAnalysis::SetVisible(const QString& id, bool visible)
{
    Kept* one = find(id);
    if (!one)
        return false;
    if (one->result.isVisible == visible)
        return true;
    one->result.isVisible = visible;
    if (one->layer)
        one->layer->setVisible(visible);
    emit changed(id);
    return true;
}

void AxVolumeAnalysis::WriteAgain()
{
    const QPointer<AxVolumeAnalysis> self(this);
    for (const AxVolumeResult& one : GetResults())
        if (self)
            emit changed(one.id);
}

void AxVolumeAnalysis::SetChosen(const QString& id)
{
    const QString known = find(id) ? id : QString();
    if (known == chosen)
        return;
    chosen = known;
    emit chosenChanged();
}

void AxVolumeAnalysis::Clear()
{
    const QPointer<AxVolumeAnalysis> self(this);
    for (const AxVolumeResult& one : GetResults())
        if (self)
            Remove(one.id);
}
