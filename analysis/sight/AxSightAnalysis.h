#pragma once
#include "analysis/AxMapHeights.h"
#include "analysis/sight/AxLineOfSight.h"
#include "analysis/sight/AxViewshed.h"
#include "scene/base/AxEarthViewerExport.h"
#include "scene/base/AxLatestWork.h"

#include <osg/Group>
#include <osg/observer_ptr>
#include <osg/ref_ptr>
#include <osgEarth/Map>

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>

class AxGeoPicture;
class AxScene;
namespace osgEarth {
class ImageLayer;
}

/// A line of sight or a viewshed that was found. A plain value.
struct AxSightResult
{
    int number = 0;                             ///< from 1 on, of all that were found; none comes twice
    QString name;                               ///< "Line of sight 1", "Viewshed 2"
    bool isVisible = true;                      ///< on the map
    std::shared_ptr<const AxSightLine> line;    ///< null for a viewshed
    std::shared_ptr<const AxViewshed> viewshed; ///< null for a line
};

/**
 * What can be seen from where on the viewer's map: computed on a thread of its own from the finest heights of
 * the map's data, whatever is loaded, and drawn until it is removed. A line is drawn over the ground, a
 * viewshed is an image layer of the map (AxSightDrawing.h). Of several questions only the latest is answered.
 *
 * Owned by the viewer, CAxEarthViewer::GetSightAnalysis(), with which it goes. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxSightAnalysis : public QObject
{
    Q_OBJECT
public:
    /// The scene outlives it.
    explicit AxSightAnalysis(AxScene& scene);
    /// Calls the work off and waits for the thread.
    ~AxSightAnalysis() override;

    /// Begins to look; the answer comes as added() or failed(). False, with the reason in `why`, for what is
    /// no question, and before the map is loaded; what was asked before then goes on.
    bool LookAlong(const AxSightEnd& from, const AxSightEnd& to, const AxSightOptions& options = {},
                   QString* why = nullptr);
    bool LookAround(const AxViewshedQuestion& question, QString* why = nullptr);
    /// Draws the line while somebody chooses its second end; it is no result, and each call takes the place
    /// of the one before. Nothing while a question is looked at, and for what is none.
    void Preview(const AxSightEnd& from, const AxSightEnd& to, const AxSightOptions& options = {});
    void EndPreview(); ///< the next question does that, too
    /// Forgets what is looked at now; no answer comes.
    void CallOff();
    bool IsBusy() const { return work.IsBusy() && !isPreview; }

    /// What was found and not removed, in that order.
    QList<AxSightResult> GetResults() const;
    /// Null number for none.
    AxSightResult GetResult(int number) const;
    /// Both false for a number that there is not.
    bool Remove(int number);
    bool SetVisible(int number, bool visible);
    void Clear(); ///< removes all

signals:
    void busyChanged(bool busy); ///< something is looked at, or no more
    /// 0 to 100, of what is looked at now.
    void progress(int percent);
    void added(int number);
    void changed(int number); ///< it was shown or hidden, a viewshed as a layer of the map as well
    void removed(int number);
    /// The question that was asked last has no answer, because of this; in words for people.
    void failed(QString why);

private:
    struct Shown
    {
        AxSightResult result;
        osg::ref_ptr<osg::Group> node;
        osg::ref_ptr<osgEarth::ImageLayer> layer; ///< of a viewshed
    };
    struct Along
    {
        AxSightEnd from;
        AxSightEnd to;
        AxSightOptions options;
    };
    struct Answer
    {
        std::shared_ptr<AxSightLine> line;
        std::shared_ptr<AxViewshed> viewshed;
        std::shared_ptr<const AxGeoPicture> picture;
    };

    class LayerWatch;

    bool begin(const QString& fault, QString* why);
    void look(const Along& along);
    const AxMapHeights& ground();
    void setBusy(bool busy);
    void take(Answer&& answer);
    void takePreview(const AxSightLine& line);
    void draw(osg::Node* node);
    void takeOff(osg::Node* node);
    void show(Shown& shown);
    void hide(Shown& shown);
    int indexOf(int number) const;
    osgEarth::Map* map() const;

    AxScene& scene;
    QList<Shown> shown;
    osg::ref_ptr<osg::Group> group; ///< of lines; in the draw group while there are any
    int last = 0;
    bool isPreview = false;    ///< what is looked at
    std::optional<Along> next; ///< of previews, as soon as the one that is looked at is there
    osg::ref_ptr<osg::Group> preview;
    std::optional<AxMapHeights> heights; ///< of the map that was asked last; copies are for the thread
    osg::observer_ptr<const osgEarth::Map> asked;
    std::shared_ptr<std::atomic<int>> percent; ///< of what is looked at now
    QTimer clock;                              ///< looks at it
    AxLatestWork work;                         ///< ends before what it reports to
};
