#pragma once
#include "analysis/AxMapHeights.h"
#include "analysis/volume/AxVolume.h"
#include "scene/base/AxEarthViewerExport.h"
#include "scene/base/AxLatestWork.h"

#include <osg/observer_ptr>
#include <osg/ref_ptr>
#include <osgEarth/Map>

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

class AxGeoPicture;
class AxScene;
namespace osgEarth {
class ImageLayer;
}

/// A volume that was asked for. A plain value.
struct AxVolumeResult
{
    QString id;                ///< that was given with the question
    QString name;              ///< for people; that of its layer
    AxVolumeQuestion question; ///< the latest one
    std::shared_ptr<const AxVolume>
        volume; ///< of that question, or of the one before; null without an answer
    AxVolumeFault fault = AxVolumeFault::None; ///< why the latest question has no answer
    QString refusal;        ///< why another question was not taken since, for people; the one before stands
    bool isPending = false; ///< it is being computed, or waits for that
    bool isStale = false;   ///< the ground is another one than that of `volume`
    bool isVisible = true;  ///< the picture on the map
    bool hasModels = false; ///< models are seen in its area, which do not count
};

/**
 * Volumes on the viewer's map: computed on a thread of its own, at idle priority, from the finest heights of
 * the map's data, whatever is loaded, one after the other. The difference from the base lies on the ground as
 * an image layer of the map, until the volume is removed.
 *
 * A question about a ring that was asked before, in the same cells and over the same ground, needs no height
 * again. When the ground changes, volumes are computed anew; those of more than axManyVolumeCells are told
 * stale and wait for their question.
 *
 * Owned by the viewer, CAxEarthViewer::GetVolumeAnalysis(), with which it goes. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxVolumeAnalysis : public QObject
{
    Q_OBJECT
public:
    /// The scene outlives it.
    explicit AxVolumeAnalysis(AxScene& scene);
    /// Calls the work off and waits for the thread.
    ~AxVolumeAnalysis() override;

    /// What a volume that is about to be drawn is computed with; ring and `mayBeLarge` do not count.
    void SetNext(const AxVolumeQuestion& settings);
    const AxVolumeQuestion& Next() const { return next; } ///< the plane through the rim until set

    /// Begins to compute a new volume, or another answer of one that there is. changed() tells the end.
    /// False, with the reason in `why`, for what is no question, and before the map is loaded: one that there
    /// is stays as it was then, with AxVolumeResult::refusal, and a new one is listed with its fault.
    bool Ask(const QString& id, const QString& name, const AxVolumeQuestion& question,
             QString* why = nullptr);
    /// The same of one that there is, in its latest words. False for an unknown ID.
    bool AskAgain(const QString& id);
    /// The same of one that was asked in another session. Nobody has to wait again for what took long: more
    /// than axManyVolumeCells are listed, and wait for Ask(). False for an ID that there is.
    bool Restore(const QString& id, const QString& name, AxVolumeQuestion question);
    /// AxVolumeResult::refusal holds no more, since something else is being filled in.
    void ForgetRefusal(const QString& id);
    /// The map's ground is another one.
    void ForgetGround();
    /// Computes it no more: it has the answer that it had.
    void CallOff(const QString& id);
    bool IsBusy() const { return work.IsBusy(); }
    /// Which one is computed now; empty: none.
    QString Running() const { return running; }

    QList<AxVolumeResult> GetResults() const; ///< in the order of their first questions
    /// Empty ID for none.
    AxVolumeResult GetResult(const QString& id) const;
    /// Both false for an unknown ID.
    bool Remove(const QString& id);
    bool SetVisible(const QString& id, bool visible);
    void Clear(); ///< removes all
    /// What all of them hold, pictures included.
    double HeldMegabytes() const;
    /// What has to be known with the figures of one: what is wrong with the latest question, ground that is
    /// another one now, heights that are not known, unless AxVolumeFigures() stand beside it, and models that
    /// do not count. For people, each a sentence.
    static QStringList NotesOf(const AxVolumeResult& result, bool isBesideFigures = false);

    /// Tells whether models are seen within a ring (degrees, the first corner not repeated).
    using ModelsWithin = std::function<bool(const QList<QPointF>& ring)>;
    /// Set by the viewer: volumes are of the ground, and say where models stand on it.
    void SetModels(const ModelsWithin& within) { models = within; }
    /// Models are others now.
    void LookForModels();
    /// Has all texts written anew: the units are others now.
    void WriteAgain();

    /// Which one somebody looks at: the map says what its colours are. None for an unknown ID.
    void SetChosen(const QString& id);
    QString Chosen() const { return chosen; } ///< empty: none

signals:
    void added(QString id);      ///< listed, before it is answered
    void changed(QString id);    ///< answered, asked anew, refused, called off, stale, shown or hidden
    void removed(QString id);    ///< no result any more
    void busyChanged(bool busy); ///< something is computed, or no more
    /// 0 to 100, of what is computed now.
    void progress(QString id, int percent);
    void nextChanged();   ///< SetNext()
    void chosenChanged(); ///< SetChosen()
    /// A question that is to be asked before it is computed: it takes that much, beside HeldMegabytes().
    /// Whoever says yes asks again with AxVolumeQuestion::mayBeLarge.
    void largeAsked(QString id, AxVolumeQuestion question);

private:
    struct Kept
    {
        AxVolumeResult result;
        osg::ref_ptr<osgEarth::ImageLayer> layer;
        double pictureMegabytes = 0.0;
        bool isGroundOld = false; ///< the grid's
    };
    struct Answer
    {
        std::shared_ptr<AxVolume> volume;
        std::shared_ptr<const AxGeoPicture> picture;
    };
    class LayerWatch;

    Kept* find(const QString& id);
    osgEarth::Map* map() const;
    const AxMapHeights& ground();
    bool ask(Kept& kept, const AxVolumeQuestion& question);
    void begin();
    void take(Answer&& answer);
    void dropLayer(Kept& kept);
    void setRunning(const QString& id);
    void end(const QString& id);

    AxScene& scene;
    QList<Kept> kept;
    AxVolumeQuestion next;
    QStringList waiting; ///< to be computed, in their order
    QString running;
    QString chosen;
    bool wasBusy = false;
    std::optional<AxMapHeights> heights; ///< of the map that was asked last; copies are for the thread
    osg::observer_ptr<const osgEarth::Map> asked;
    ModelsWithin models;
    std::shared_ptr<std::atomic<int>> percent; ///< of what is computed now
    QTimer clock;                              ///< looks at it
    AxLatestWork work;                         ///< ends before what it reports to
};

Q_DECLARE_METATYPE(AxVolumeQuestion)
