#include "viewer/capture/AxPictureCapture.h"
#include "viewer/capture/AxSideView.h"
#include "viewer/capture/WindowCaptureCallback.h"

#include <osg/GL>
#include <osgDB/DatabasePager>

#include <QOpenGLFramebufferObject>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#ifndef GL_MAX_RENDERBUFFER_SIZE
#define GL_MAX_RENDERBUFFER_SIZE 0x84E8
#endif

namespace {
// One part is drawn without anybody being able to cancel, on a slow machine in a second.
constexpr int largestPart = 2048;
// More than the half of most texts, on the screen; what lies over a border is then placed alike on both
// sides.
constexpr int usualMargin = 160;
// A merged tile asks for its children in the next frame, and labels wait a frame or two for their heights.
constexpr int framesToSettle = 2;
// Shapes are laid on finer ground a little at a time; this long after the last tile, milliseconds.
constexpr int timeToSettle = 120;
constexpr int impatient = 10;
// So long one step may take before events are looked at again, milliseconds.
constexpr int stepTime = 40;
// A picture of 8192 x 8192 pixels has several hundred; fewer would be dropped and asked for in turns.
constexpr int tilesKept = 1000;

QImage MadeImage(const QSize& size)
{
    QImage image(size, QImage::Format_RGB888);
    if (!image.isNull())
        image.fill(Qt::black);
    return image;
}
} // namespace

AxImageTaker::AxImageTaker(std::vector<QSize> pictureSizes, Done hears)
    : sizes(std::move(pictureSizes)), done(std::move(hears))
{
}

QString AxImageTaker::Take(int picture, const QPoint& at, const QImage& part)
{
    const auto number = static_cast<std::size_t>(picture);
    const QSize size = picture >= 0 && number < sizes.size() ? sizes[number] : QSize();
    if (!QRect(QPoint(), size).contains(QRect(at, part.size())) || part.format() != QImage::Format_RGB888)
        return AxPictureCapture::tr("A part does not lie in the picture that it is of.");
    if (part.size() == size) {
        image = part;
        return {};
    }
    if (image.size() != size)
        image = MadeImage(size);
    if (image.isNull())
        return AxPictureCapture::tr("There is not enough memory for a picture of %1 x %2 pixels.")
            .arg(size.width())
            .arg(size.height());
    const auto bytes = static_cast<std::size_t>(part.width()) * 3;
    for (int row = 0; row < part.height(); ++row)
        std::memcpy(image.scanLine(at.y() + row) + static_cast<std::ptrdiff_t>(at.x()) * 3,
                    part.constScanLine(row), bytes);
    return {};
}

QString AxImageTaker::Finish(int picture)
{
    return done(picture, std::exchange(image, QImage()));
}

AxPictureCapture::AxPictureCapture(AxCaptureStage of) : stage(std::move(of))
{
    connect(&clock, &QTimer::timeout, this, &AxPictureCapture::step);
}

AxPictureCapture::~AxPictureCapture()
{
    blockSignals(true);
    Cancel();
}

AxShot AxPictureCapture::AsSeen(const QSize& size, bool isScaled) const
{
    AxShot seen = AxShots::AsSeen(*stage.viewer->getCamera(), size);
    if (isScaled)
        seen.scale = AxShots::ScaleAsSeen(*stage.viewer->getCamera(), size);
    return seen;
}

bool AxPictureCapture::Begin(std::vector<AxShot> wanted, std::unique_ptr<AxPictureTaker> whoTakes,
                             QString* why)
{
    const auto refuse = [why](const QString& text) {
        if (why)
            *why = text;
        return false;
    };
    const auto isOff = [](const AxShot& asked) {
        return asked.size.isEmpty() || std::max(asked.size.width(), asked.size.height()) > mostPixels;
    };
    const auto isBlind = [](const AxShot& asked) {
        return !asked.view.valid() || !asked.projection.valid() || !(asked.scale > 0.0) ||
               !std::isfinite(asked.scale);
    };
    if (IsBusy())
        return refuse(tr("Pictures are being taken already."));
    if (wanted.empty() || !whoTakes)
        return refuse(tr("There is no picture to take."));
    if (std::any_of(wanted.begin(), wanted.end(), isOff))
        return refuse(tr("A picture has from 1 to %1 pixels in width and in height.").arg(mostPixels));
    if (std::any_of(wanted.begin(), wanted.end(), isBlind))
        return refuse(tr("The camera of a picture has a place, a direction or a scale that is no number."));
    if (!stage.ready())
        return refuse(tr("The map is not loaded yet."));
    GLint largest[2] = {0, 0};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, largest);
    GLint largestBuffer = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largestBuffer);
    const int most = std::min(static_cast<int>(largestBuffer), largestPart);
    QSize whole(1, 1);
    for (const AxShot& asked : wanted)
        whole = whole.expandedTo(asked.size);
    const QSize room = whole.boundedTo({most, most});
    buffer = std::make_unique<QOpenGLFramebufferObject>(room, QOpenGLFramebufferObject::CombinedDepthStencil);
    if (!buffer->isValid() || whole.width() > largest[0] || whole.height() > largest[1]) {
        buffer.reset();
        return refuse(tr("The video adapter has no room for the picture."));
    }
    buffer->release();
    stage.hold(true);
    eye = std::make_unique<AxSideView>(*stage.viewer);
    shots = std::move(wanted);
    taker = std::move(whoTakes);
    shot = 0;
    isDetailMissing = false;
    told = {-1, 0};
    if (osgDB::DatabasePager* pager = stage.viewer->getDatabasePager()) {
        formerTiles = static_cast<int>(pager->getTargetMaximumNumberOfPageLOD());
        pager->setTargetMaximumNumberOfPageLOD(tilesKept);
    }
    beginPicture();
    clock.start(0);
    return true;
}

void AxPictureCapture::beginPicture()
{
    parts = AxShots::Parts(shots[shot].size, buffer->size());
    part = 0;
    quiet = 0;
    waiting = -1;
    sinceTile.invalidate();
}

bool AxPictureCapture::isLoading() const
{
    const osgDB::DatabasePager* pager = stage.viewer->getDatabasePager();
    return pager && (pager->getRequestsInProgress() || pager->getFileRequestListSize() > 0 ||
                     pager->getDataToCompileListSize() > 0 || pager->getDataToMergeListSize() > 0);
}

// The viewport is the whole picture's, and reaches beyond the buffer, where nothing is drawn: so each part
// has its texts where the others have them.
AxSidePicture AxPictureCapture::partInView() const
{
    const AxShot& asked = shots[shot];
    const QRect& place = parts[part];
    const int below = asked.size.height() - place.y() - place.height();
    const double around = usualMargin * asked.scale;
    const double x = 2.0 / asked.size.width();
    const double y = 2.0 / asked.size.height();
    AxSidePicture picture;
    picture.view = asked.view;
    picture.projection = asked.projection;
    picture.port = QRect(QPoint(-place.x(), -below), asked.size);
    picture.needed = QRectF(place.x() * x - 1.0, below * y - 1.0, place.width() * x, place.height() * y)
                         .adjusted(-around * x, -around * y, around * x, around * y);
    picture.scale = asked.scale;
    return picture;
}

bool AxPictureCapture::look()
{
    if (!stage.ready())
        return false;
    stage.aside([&] { eye->Look(partInView()); });
    return true;
}

bool AxPictureCapture::draw()
{
    if (!stage.ready())
        return false;
    read = QImage();
    eye->SetFinalDrawCallback(new WindowCaptureCallback([this](const QImage& drawn) { read = drawn; },
                                                        QRect(QPoint(), parts[part].size())));
    stage.aside([&] {
        osg::GraphicsContext& window = *stage.viewer->getCamera()->getGraphicsContext();
        const GLuint former = window.getDefaultFboId();
        if (!buffer->bind())
            return;
        window.setDefaultFboId(buffer->handle());
        eye->Draw(partInView());
        window.setDefaultFboId(former);
        buffer->release();
    });
    return !read.isNull();
}

void AxPictureCapture::step()
{
    const QPointer<AxPictureCapture> self(this); // who hears of the end may delete the viewer
    QElapsedTimer clockOfStep;
    clockOfStep.start();
    while (self && IsBusy() && clockOfStep.elapsed() < stepTime) {
        const bool wasLoading = isLoading();
        if (!look())
            return fail(tr("The map is gone."));
        const bool isQuiet = !wasLoading && !isLoading();
        quiet = isQuiet ? quiet + 1 : 0;
        const osgDB::DatabasePager* pager = stage.viewer->getDatabasePager();
        const int now =
            pager ? static_cast<int>(pager->getFileRequestListSize() + pager->getDataToCompileListSize() +
                                     pager->getDataToMergeListSize())
                  : 0;
        if (isQuiet || now != waiting)
            wait.start();
        waiting = now;
        if (!isQuiet)
            sinceTile.start();
        // A service that has failed once is not waited for so long with each part.
        const bool isGivenUp =
            !isQuiet && wait.elapsed() > (isDetailMissing ? patience / impatient : patience);
        const bool isSettled =
            quiet >= framesToSettle && (!sinceTile.isValid() || sinceTile.elapsed() > timeToSettle);
        if (!isSettled && !isGivenUp) {
            // The pager and the shapes need the time more than frames that only wait for them.
            if (!isQuiet || sinceTile.isValid())
                break;
            continue;
        }
        isDetailMissing = isDetailMissing || isGivenUp;
        if (!draw())
            return fail(tr("The picture cannot be read from the video adapter."));
        takePart(read);
    }
    if (self && IsBusy())
        tellProgress();
}

void AxPictureCapture::takePart(const QImage& picture)
{
    const QRect place = parts[part];
    const int number = static_cast<int>(shot);
    const QString wrong = taker->Take(number, place.topLeft(), picture);
    if (!wrong.isEmpty())
        return fail(wrong);
    quiet = 0;
    waiting = -1;
    wait.start();
    sinceTile.invalidate();
    if (++part < parts.size())
        return;
    const QString unfinished = taker->Finish(number);
    if (!unfinished.isEmpty())
        return fail(unfinished);
    if (++shot < shots.size()) {
        stage.hold(true); // what flies goes on, so the map on the screen is drawn anew
        beginPicture();
        return;
    }
    end();
    const QPointer<AxPictureCapture> self(this);
    emit progress(100, number);
    if (self)
        emit finished(QString());
}

void AxPictureCapture::tellProgress()
{
    const double ofPicture = static_cast<double>(part) / static_cast<double>(parts.size());
    const int percent =
        static_cast<int>(100.0 * (static_cast<double>(shot) + ofPicture) / static_cast<double>(shots.size()));
    const std::pair<int, std::size_t> now(percent, shot);
    if (std::exchange(told, now) != now)
        emit progress(percent, static_cast<int>(shot));
}

void AxPictureCapture::end()
{
    clock.stop();
    taker.reset();
    read = QImage();
    if (osgDB::DatabasePager* pager = stage.viewer->getDatabasePager())
        pager->setTargetMaximumNumberOfPageLOD(static_cast<unsigned>(formerTiles));
    stage.ready();
    buffer.reset();
    eye.reset();
    stage.hold(false);
}

void AxPictureCapture::fail(const QString& why)
{
    end();
    emit finished(why);
}

void AxPictureCapture::Cancel()
{
    if (!IsBusy())
        return;
    end();
    emit cancelled();
}
