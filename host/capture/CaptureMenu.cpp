#include "host/capture/CaptureMenu.h"
#include "host/capture/CaptureRun.h"
#include "host/capture/MapPictureBox.h"
#include "host/capture/PictureBox.h"
#include "host/capture/RoutePicturesBox.h"
#include "host/capture/SeriesTaker.h"
#include "interaction/AxMagnifier.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxPathMeasure.h>
#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/CAxBlockManager.h>
#include <AxData/CAxTask.h>

#include <osgEarth/MapNode>
#include <osgEarth/Terrain>
#include <osgViewer/Viewer>

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>

#include <cmath>

namespace {
constexpr double metresOfDegree = 111320.0;
// Beyond, what is straight below a camera would be seen from the side.
constexpr double mostGround = 100000.0;
// Of a route whose file says no height.
constexpr double overUnknown = 100.0; // metres above the ground

void Warn(QWidget* window, const QString& title, const QString& text)
{
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(title);
    box.SetMsgText(text);
    box.SetBtnHidden(false, true, false);
    box.exec();
}

osg::Vec3d OnGround(const CAxEarthViewer& viewer, double longitude, double latitude)
{
    const double altitude = viewer.GetElevation(longitude, latitude);
    return {longitude, latitude, std::isnan(altitude) ? 0.0 : altitude};
}

// North up, as large as the window at the scale that it has in its middle.
std::optional<MapPictureBox::Area> AreaInWindow(const CAxEarthViewer& viewer)
{
    osg::Camera& camera = *viewer.getOSGViewer()->getCamera();
    const osg::Viewport& port = *camera.getViewport();
    const osgGA::GUIEventAdapter* events = viewer.getOSGViewer()->getEventQueue()->getCurrentEventState();
    osg::Vec3d world;
    osgEarth::GeoPoint place;
    if (!viewer.getMapNode()->getTerrain()->getWorldCoordsUnderMouse(
            viewer.getOSGViewer(), 0.5f * (events->getXmin() + events->getXmax()),
            0.5f * (events->getYmin() + events->getYmax()), world) ||
        !place.fromWorld(viewer.getMapNode()->getMapSRS()->getGeographicSRS(), world))
        return {};
    MapPictureBox::Area area;
    area.name = CaptureMenu::tr("What the window shows");
    area.pixel = AxShots::PixelAt(camera, world);
    area.ground = {OnGround(viewer, place.x(), place.y()), area.pixel * port.width(),
                   area.pixel * port.height()};
    return area;
}

std::optional<MapPictureBox::Area> AreaOfBlock(const CAxEarthViewer& viewer)
{
    CAxHandleAdapter* object = viewer.GetCurHandleAdapter();
    const CAxBlock* block = object ? object->GetContainedBlock() : nullptr;
    const std::vector<osg::Vec3d> outline = block ? object->Outline() : std::vector<osg::Vec3d>();
    if (outline.size() < 2)
        return {};
    double west = 0.0;
    double east = 0.0;
    double south = outline.front().y();
    double north = south;
    for (const osg::Vec3d& place : outline) {
        const double offset = std::remainder(place.x() - outline.front().x(), 360.0);
        west = std::min(west, offset);
        east = std::max(east, offset);
        south = std::min(south, place.y());
        north = std::max(north, place.y());
    }
    constexpr double around = 1.1;
    constexpr double pixels = 2000.0;
    const double latitude = 0.5 * (south + north);
    const double radians = std::acos(-1.0) / 180.0;
    MapPictureBox::Area area;
    area.name = CaptureMenu::tr("Block \"%1\"").arg(block->GetBlockName());
    area.ground = {
        OnGround(viewer, std::remainder(outline.front().x() + 0.5 * (west + east), 360.0), latitude),
        std::max(1.0, around * (east - west) * metresOfDegree * std::cos(latitude * radians)),
        std::max(1.0, around * (north - south) * metresOfDegree)};
    area.pixel = std::max(area.ground.width, area.ground.height) / pixels;
    return area;
}
} // namespace

CaptureMenu::CaptureMenu(CAxEarthViewer* earthViewer, QWidget* parent)
    : QObject(parent), viewer(earthViewer), window(parent)
{
}

void CaptureMenu::FillFile(QMenu* menu)
{
    menu->addAction(tr("Save &picture..."), this, &CaptureMenu::SavePicture,
                    QKeySequence(QStringLiteral("Ctrl+Shift+P")));
    menu->addAction(tr("Save map picture (&GeoTIFF)..."), this, &CaptureMenu::SaveMapPicture);
}

void CaptureMenu::FillTask(QMenu* menu)
{
    along = menu->addAction(tr("&Pictures along route..."), this, &CaptureMenu::SaveRoutePictures);
    SetPlan(shown);
}

void CaptureMenu::FillView(QMenu* menu)
{
    QAction* magnifier = menu->addAction(tr("&Magnifier"));
    magnifier->setCheckable(true);
    const QString tip =
        tr("A lens for the middle of the map; with Shift held, drag a rectangle for another place");
    magnifier->setStatusTip(tip);
    magnifier->setToolTip(tip);
    connect(magnifier, &QAction::triggered, this, &CaptureMenu::Magnify);
    connect(viewer->GetMagnifier(), &AxMagnifier::changed, magnifier,
            [this, magnifier] { magnifier->setChecked(viewer && viewer->GetMagnifier()->IsOpen()); });
}

void CaptureMenu::SetPlan(const std::shared_ptr<const ShownPlan>& plan)
{
    shown = plan;
    if (along)
        along->setEnabled(plan && plan->plan.points.size() > 1);
}

bool CaptureMenu::IsMapThere() const
{
    return viewer && viewer->getMapNode() && !viewer->GetPictureCapture()->IsBusy();
}

bool CaptureMenu::MayStandStill(const QString& title) const
{
    const QString reason = reasonToWait ? reasonToWait() : QString();
    if (reason.isEmpty())
        return true;
    CAxMessageBox question(window);
    question.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    question.SetWindowTitle(title);
    question.SetMsgText(reason + QLatin1Char('\n') +
                        tr("The map stands still while pictures are taken. Take them all the same?"));
    question.SetBtnOKText(tr("Take pictures"));
    question.SetCancelDefault(true);
    return question.exec() == QDialog::Accepted && IsMapThere();
}

void CaptureMenu::Magnify(bool on)
{
    if (!viewer)
        return;
    const osg::Vec2d middle;
    if (!on)
        viewer->GetMagnifier()->Close();
    else if (viewer->GetMagnifier()->Look(middle, middle))
        viewer->setFocus(); // for Escape, which closes it
    else
        emit viewer->GetMagnifier()->changed();
}

QString CaptureMenu::AskFile(const QString& title, const QString& name, const QList<SaveBox::Kind>& kinds)
{
    // Minutes of work are not begun for a folder that takes no file.
    while (const auto answer = SaveBox::Ask(window, title, folder, name, kinds)) {
        const QString fault = TryFile(answer->file);
        if (fault.isEmpty()) {
            folder = QFileInfo(answer->file).absolutePath();
            return answer->file;
        }
        Warn(window, title, fault);
    }
    return {};
}

QString CaptureMenu::AskPictureFile()
{
    return AskFile(tr("Save picture"), tr("Map") + QStringLiteral(".png"),
                   {{tr("PNG picture (*.png)"), {QStringLiteral("png")}},
                    {tr("JPEG picture (*.jpg *.jpeg)"), {QStringLiteral("jpg"), QStringLiteral("jpeg")}}});
}

QString CaptureMenu::AskElsewhere(const QString& fault)
{
    CAxMessageBox question(window);
    question.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    question.SetWindowTitle(tr("Save picture"));
    question.SetMsgText(fault + QLatin1Char('\n') + tr("The picture is not lost yet. Save it elsewhere?"));
    question.SetBtnOKText(tr("Save elsewhere..."));
    while (question.exec() == QDialog::Accepted) {
        const QString file = AskPictureFile();
        if (!file.isEmpty())
            return file;
    }
    return {};
}

void CaptureMenu::Tell(const QString& what, bool isDetailMissing)
{
    emit Told(isDetailMissing ? tr("%1; some of the map's detail did not come in time").arg(what) : what);
}

void CaptureMenu::SavePicture()
{
    if (!IsMapThere())
        return;
    PictureBox box(viewer->viewport()->size() * viewer->devicePixelRatioF(), window);
    if (box.exec() != QDialog::Accepted || !IsMapThere())
        return;
    QString file = AskPictureFile();
    if (file.isEmpty() || !IsMapThere() || !MayStandStill(tr("Save picture")))
        return;
    QImage whole;
    const AxShot shot = viewer->GetPictureCapture()->AsSeen(box.Size(), box.IsScaled());
    const CaptureEnd end = RunCapture(*viewer, {shot},
                                      std::make_unique<AxImageTaker>(std::vector<QSize>{shot.size},
                                                                     [&whole](int, QImage&& image) {
                                                                         whole = std::move(image);
                                                                         return QString();
                                                                     }),
                                      tr("Save picture"), window);
    if (!end.fault.isEmpty())
        Warn(window, tr("Save picture"), end.fault);
    while (end.isWhole && !file.isEmpty()) {
        const QString fault = WritePicture(whole, file, tr("Save picture"), window);
        if (fault.isEmpty())
            return Tell(tr("Saved %1").arg(QDir::toNativeSeparators(file)), end.isDetailMissing);
        file = AskElsewhere(fault);
    }
}

void CaptureMenu::SaveMapPicture()
{
    if (!IsMapThere())
        return;
    QVector<MapPictureBox::Area> areas;
    for (const auto& area : {AreaInWindow(*viewer), AreaOfBlock(*viewer)})
        if (area && std::max(area->ground.width, area->ground.height) <= mostGround)
            areas += *area;
    if (areas.isEmpty()) {
        Warn(window, tr("Save map picture"),
             tr("A map picture shows up to %1 km of ground. Go nearer, or select a block.")
                 .arg(mostGround / 1000.0));
        return;
    }
    MapPictureBox box(areas, window);
    if (box.exec() != QDialog::Accepted || !IsMapThere())
        return;
    const QString file = AskFile(tr("Save map picture"), tr("Map") + QStringLiteral(".tif"),
                                 {{tr("GeoTIFF (*.tif)"), {QStringLiteral("tif"), QStringLiteral("tiff")}}});
    if (file.isEmpty() || !IsMapThere() || !MayStandStill(tr("Save map picture")))
        return;
    const AxShotGround ground = box.Ground();
    auto taker = std::make_unique<MapPictureTaker>(file, ground, box.Size());
    CaptureEnd end;
    end.fault = taker->Begin();
    if (end.fault.isEmpty())
        end = RunCapture(*viewer, {AxShots::FromAbove(ground, box.Size())}, std::move(taker),
                         tr("Save map picture"), window);
    if (!end.fault.isEmpty())
        Warn(window, tr("Save map picture"), end.fault);
    else if (end.isWhole)
        Tell(tr("Saved %1").arg(QDir::toNativeSeparators(file)), end.isDetailMissing);
}

void CaptureMenu::SaveRoutePictures()
{
    if (!IsMapThere() || !shown)
        return;
    std::vector<osg::Vec3d> route;
    for (const AxPlanPoint& point : shown->plan.points) {
        const bool isKnown = std::isfinite(point.altitude);
        const osg::Vec3d below = isKnown ? osg::Vec3d() : OnGround(*viewer, point.longitude, point.latitude);
        route.emplace_back(point.longitude, point.latitude,
                           isKnown ? point.altitude : below.z() + overUnknown);
    }
    const CAxBlock* block = CAxBlockManager::instance().GetBlock(shown->blockID);
    const CAxTask* task = block ? block->GetTask(shown->taskID) : nullptr;
    const QString name = task ? task->GetTaskName() : tr("Route");
    RoutePicturesBox box(route, shown->plan.figures.length, window);
    if (box.exec() != QDialog::Accepted || !IsMapThere())
        return;
    const std::vector<AxShot> shots = box.Shots();
    if (shots.empty()) {
        Warn(window, tr("Pictures along route"), tr("The route leads nowhere."));
        return;
    }
    const QString file = AskFile(tr("Pictures along route"), name + QStringLiteral(".png"),
                                 {{tr("Numbered PNG pictures (*.png)"), {QStringLiteral("png")}}});
    if (file.isEmpty() || !IsMapThere() || !MayStandStill(tr("Pictures along route")))
        return;
    const auto written = std::make_shared<int>(0);
    auto taker = std::make_unique<SeriesTaker>(file, shots, written);
    const int there = taker->CountThere();
    if (there > 0) {
        CAxMessageBox question(window);
        question.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
        question.SetWindowTitle(tr("Pictures along route"));
        question.SetMsgText(tr("Files with these names are there already: %1. Replace them?").arg(there));
        question.SetBtnOKText(tr("Replace"));
        question.SetCancelDefault(true);
        if (question.exec() != QDialog::Accepted || !IsMapThere())
            return;
    }
    const int all = static_cast<int>(shots.size());
    const CaptureEnd end = RunCapture(*viewer, shots, std::move(taker), tr("Pictures along route"), window);
    const QString count = tr("%1 of %2 pictures were written").arg(*written).arg(all);
    if (!end.fault.isEmpty())
        Warn(window, tr("Pictures along route"), end.fault + QLatin1Char('\n') + count);
    else
        Tell(count, end.isDetailMissing);
}
