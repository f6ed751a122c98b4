#pragma once
#include "scene/base/AxEarthViewerExport.h"
#include "viewer/capture/AxShot.h"

#include <osgViewer/Viewer>

#include <QElapsedTimer>
#include <QImage>
#include <QObject>
#include <QPoint>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class AxSideView;
class QOpenGLFramebufferObject;
struct AxSidePicture;

/// Who gets the pictures that are taken. Called on the GUI thread, with no context of OpenGL's current that
/// it could rely on. It opens no box.
class AXEARTHVIEWER_EXPORT AxPictureTaker
{
public:
    virtual ~AxPictureTaker() = default;
    /// A part of a picture: which one, and where in it its upper left corner is. What is wrong, for people,
    /// ends the capture; empty when nothing is.
    virtual QString Take(int picture, const QPoint& at, const QImage& part) = 0;
    /// All parts of that picture were taken.
    virtual QString Finish(int picture) = 0;
};

/// Takes each picture as a whole.
class AXEARTHVIEWER_EXPORT AxImageTaker : public AxPictureTaker
{
public:
    /// Given the number of a picture and the picture; returns what is wrong, for people, or nothing.
    using Done = std::function<QString(int picture, QImage&& image)>;
    /// `sizes` of the pictures, in pixels, as they are of the shots; `done` gets each when it is whole. A
    /// part that does not lie in its picture ends the capture.
    AxImageTaker(std::vector<QSize> sizes, Done done);

    QString Take(int picture, const QPoint& at, const QImage& part) override;
    QString Finish(int picture) override;

private:
    const std::vector<QSize> sizes;
    const Done done;
    QImage image;
};

/// What a capture needs of the viewer that it belongs to.
struct AxCaptureStage
{
    osgViewer::Viewer* viewer = nullptr; ///< outlives the capture
    /// Updates the scene as a frame does and draws, into what the function binds.
    std::function<void(const std::function<void()>& draw)> aside;
    /// Makes the context current; false without one, and before the map is loaded.
    std::function<bool()> ready;
    /// Holds the picture on the screen as it is, and no input is taken; then lets it go on.
    std::function<void(bool held)> hold;
};

/**
 * Pictures of the viewer's map in any size, part by part: larger than the window, than the screen, than a
 * frame buffer. Each part waits until the map is there in the detail that the whole picture asks for. What is
 * on the map is in the pictures; what Qt paints over it, as the bar and the compass, is not. Texts, marks and
 * lines are as many pixels large as on the screen, times AxShot::scale.
 *
 * Meanwhile the map on the screen stands still and takes no input. Events run, so a host can show progress().
 *
 * Owned by the viewer, CAxEarthViewer::GetPictureCapture(), with which it goes. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxPictureCapture : public QObject
{
    Q_OBJECT
public:
    /// Pixels of a side, at most: a picture has to fit into memory.
    static constexpr int mostPixels = 16384;

    /// Takes pictures of what is on that stage.
    explicit AxPictureCapture(AxCaptureStage stage);
    ~AxPictureCapture() override;

    /// Begins to take these pictures, one after the other. False, with the reason in `why`, for none, for a
    /// size that is none, before the map is loaded, and while others are taken; `taker` is then gone.
    bool Begin(std::vector<AxShot> shots, std::unique_ptr<AxPictureTaker> taker, QString* why = nullptr);
    /// Ends the capture; what the taker was told of stays as it is.
    void Cancel();
    bool IsBusy() const { return taker != nullptr; }
    /// What the camera of the viewer shows now.
    /// `isScaled`: with texts, marks and lines as large in it as in the window, not in pixels.
    AxShot AsSeen(const QSize& size, bool isScaled = false) const;

    /// Whether some part was taken without all of its detail, because nothing more came for `patience`.
    bool IsDetailMissing() const { return isDetailMissing; }
    static constexpr int patience = 30000; ///< milliseconds

signals:
    /// 0 to 100; and the picture that is taken now, from 0 on.
    void progress(int percent, int picture);
    /// All were taken, or why not, for people.
    void finished(QString why);
    /// By Cancel().
    void cancelled();

private:
    void step();
    bool look();
    bool draw();
    void beginPicture();
    void takePart(const QImage& picture);
    void end();
    void fail(const QString& why);
    bool isLoading() const;
    void tellProgress();
    AxSidePicture partInView() const;

    const AxCaptureStage stage;
    std::vector<AxShot> shots;
    std::unique_ptr<AxPictureTaker> taker;
    std::size_t shot = 0;
    std::vector<QRect> parts; ///< of that shot
    std::size_t part = 0;
    int quiet = 0;           ///< frames of this part in which nothing was loaded
    QElapsedTimer wait;      ///< since something was, the last time
    QElapsedTimer sinceTile; ///< of this part, the last one that came; not valid while none did
    int waiting = -1;        ///< tiles that were under way then
    std::pair<int, std::size_t> told{-1, 0}; ///< percent, shot
    bool isDetailMissing = false;
    int formerTiles = 0; ///< that the pager keeps
    std::unique_ptr<AxSideView> eye;
    std::unique_ptr<QOpenGLFramebufferObject> buffer;
    QImage read;
    QTimer clock;
};
