// The compass and the coordinate read-out over the map.
#include "SceneEvents.h"

#include "interaction/input/CAxEarthManipulator.h"
#include "viewer/overlay/AxReadOut.h"
#include "viewer/overlay/CAxCoordinateWidget.h"
#include "viewer/overlay/CAxGraphicsCompassItem.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <osgGA/EventQueue>

#include <QFontMetrics>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QLabel>
#include <QLayout>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalSpy>

#include <cmath>

using osgGA::GUIEventAdapter;

namespace {
/// The dial outside of any viewer.
class Dial : public CAxGraphicsCompassItem
{
public:
    Dial() : CAxGraphicsCompassItem(nullptr) {}
    void Turn(double degrees) { QMetaObject::invokeMethod(this, "slotHeading", Q_ARG(double, degrees)); }
    QImage Picture()
    {
        QImage image(boundingRect().size().toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        QPainter painter(&image);
        paint(&painter, nullptr, nullptr);
        return image;
    }
};

/// Whether the needle's red half points this way, degrees clockwise from upwards.
bool PointsTo(const QImage& picture, double degrees)
{
    constexpr double onTheNeedle = 8.0;
    const double radians = degrees * 3.141592653589793 / 180.0;
    const QPoint centre(picture.width() / 2, picture.height() / 2);
    const QPoint tip = centre + QPoint(static_cast<int>(std::lround(std::sin(radians) * onTheNeedle)),
                                       static_cast<int>(std::lround(-std::cos(radians) * onTheNeedle)));
    // The needle's dark seam may run along the row that is looked at.
    for (const QPoint& beside : {QPoint(0, 0), QPoint(-1, -1), QPoint(1, 1), QPoint(-1, 1), QPoint(1, -1)}) {
        const QColor colour = picture.pixelColor(tip + beside);
        if (colour.red() > 150 && colour.green() < 120 && colour.blue() < 120)
            return true;
    }
    return false;
}

class Overlay : public ViewerFixture
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(WaitForPicture());
        before = viewer->getManipulator()->getViewpoint();
    }
    void TearDown() override
    {
        viewer->getManipulator()->setViewpoint(before);
        ASSERT_TRUE(WaitForPicture());
    }
    static CAxGraphicsCompassItem* Compass()
    {
        for (QGraphicsItem* item : viewer->scene()->items())
            if (auto* compass = qobject_cast<CAxGraphicsCompassItem*>(item->toGraphicsObject()))
                return compass;
        return nullptr;
    }

private:
    osgEarth::Viewpoint before;
};
} // namespace

TEST(CompassDial, PointsItsNeedleTheGivenWay)
{
    for (const double heading : {0.0, 45.0, 90.0, 200.0, -90.0, -359.0}) {
        Dial dial;
        dial.Turn(heading);
        EXPECT_TRUE(PointsTo(dial.Picture(), heading)) << heading;
        EXPECT_FALSE(PointsTo(dial.Picture(), heading + 180.0)) << heading;
    }
}

TEST(CompassDial, IgnoresTurnsBelowOneDegree)
{
    Dial dial;
    dial.Turn(10.0);
    for (const auto& [asked, shown] : {std::pair{10.9, 10.0}, {9.1, 10.0}, {11.0, 11.0}, {9.9, 9.9}}) {
        dial.Turn(asked);
        EXPECT_EQ(dial.Heading(), shown) << asked;
    }
}

TEST_F(Overlay, AClickOnTheCompassIsNoneOnTheGlobe)
{
    CAxEarthManipulator* manipulator = viewer->getManipulator();
    manipulator->setViewpoint(osgEarth::Viewpoint("oblique", -105.0, 37.4, 3000.0, 60.0, -40.0, 20000.0));
    ASSERT_TRUE(waitFor([] { return std::abs(Compass()->Heading() + 60.0) < 1.0; }));
    const QPoint centre = viewer->mapFromScene(Compass()->sceneBoundingRect().center());
    // What is hovered: the ring would stay as the click left it.
    EXPECT_EQ(viewer->itemAt(centre), Compass());

    const SceneEventRecorder recorder;
    QTest::mouseClick(viewer->viewport(), Qt::LeftButton, {}, centre);
    ASSERT_TRUE(waitFor([&] { return !recorder.OfType(GUIEventAdapter::RELEASE).empty(); }));
    const auto release = recorder.OfType(GUIEventAdapter::RELEASE).front();
    EXPECT_EQ(release->getX(), 0.0f);
    EXPECT_TRUE(waitFor([] { return std::abs(Compass()->Heading()) < 1.0; }));
    EXPECT_TRUE(waitFor([&] { return manipulator->getViewpoint().getPitch() < -89.0; }));
    EXPECT_NEAR(manipulator->getViewpoint().focalPoint()->x(), -105.0, 1e-4);
    EXPECT_NEAR(manipulator->getViewpoint().focalPoint()->y(), 37.4, 1e-4);
}

TEST(CompassDial, OutlivesItsViewer)
{
    class Pressed : public Dial
    {
    public:
        void Press()
        {
            QGraphicsSceneMouseEvent press(QEvent::GraphicsSceneMousePress);
            press.setButton(Qt::LeftButton);
            mousePressEvent(&press);
            QGraphicsSceneMouseEvent release(QEvent::GraphicsSceneMouseRelease);
            mouseReleaseEvent(&release);
        }
    } dial;
    dial.ConnectEvent(nullptr);
    {
        CAxEarthViewer shortLived(nullptr);
        dial.ConnectEvent(&shortLived);
        dial.Press();
        EXPECT_TRUE(shortLived.GetFocusToMaptool());
    }
    dial.Press();
}

TEST_F(Overlay, ASlotOfTheBarThatIsCalledTakesThePress)
{
    for (const char* slot :
         {"slotDisplayShootPoint", "slotNoflyZoneVisbile", "slotMeasureToolEnabled", "slotMarkerToolEnabled"})
        for (const bool on : {true, false}) {
            viewer->SetFocusToMaptool(false);
            ASSERT_TRUE(QMetaObject::invokeMethod(viewer->GetMapToolWidget(), slot, Q_ARG(bool, on)));
            EXPECT_TRUE(viewer->GetFocusToMaptool()) << slot;
        }
    viewer->SetFocusToMaptool(false);
}

// The compass takes presses, and so does the read-out, whatever tool is in hand.
TEST_F(Overlay, APressOnAnOverlayNeitherDrawsNorMovesTheGlobe)
{
    CAxEarthManipulator* manipulator = viewer->getManipulator();
    const QWidget* readOut = viewer->GetCoordinateWidget();
    const QRect corner = readOut->geometry();
    for (const EToolType tool : {ToolNavigate, ToolProhibitedArea, ToolPolygonBlock}) {
        for (const QPoint& place :
             {corner.center(), viewer->mapFromScene(Compass()->sceneBoundingRect().center())}) {
            viewer->SetToolType(tool);
            manipulator->setViewpoint(osgEarth::Viewpoint("", 10.0, 40.0, 0.0, 0.0, -90.0, 1e7), 0.0);
            ASSERT_TRUE(waitFrames(2));
            const SceneEventRecorder recorder;
            const auto send = [&](QEvent::Type type, const QPoint& at, Qt::MouseButton button) {
                // The graphics scene looks for its items where the event is on the screen.
                QMouseEvent event(type, at, viewer->viewport()->mapToGlobal(at), button,
                                  type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
                QCoreApplication::sendEvent(viewer->viewport(), &event);
            };
            send(QEvent::MouseButtonPress, place, Qt::LeftButton);
            for (int step = 1; step <= 4; ++step)
                send(QEvent::MouseMove, place - QPoint(20, 15) * step, Qt::NoButton);
            send(QEvent::MouseButtonRelease, place - QPoint(80, 60), Qt::LeftButton);
            ASSERT_TRUE(waitFor([&] { return !recorder.OfType(GUIEventAdapter::RELEASE).empty(); }));
            EXPECT_EQ(viewer->GetCurHandleAdapter(), nullptr) << tool;
            EXPECT_NEAR(manipulator->getViewpoint().focalPoint()->x(), 10.0, 1e-6) << tool;
            EXPECT_EQ(readOut->geometry(), corner);
        }
    }
    viewer->SetToolType(ToolNavigate);
}

TEST_F(Overlay, FitsLongValuesIntoTheReadOut)
{
    const QLocale usual;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    const auto* readOut = viewer->GetCoordinateWidget();
    for (const char* format : {"longitude:%1degree", "经度：%1度"}) {
        const QString label = QString::fromUtf8(format);
        viewer->SetCoordinate(label.arg(-179.123456, 0, 'f', 6), label.arg(-89.5, 0, 'f', 6),
                              "altitude:-12345.67meter", "camera range:40000000.00meter");
        QCoreApplication::processEvents();
        readOut->layout()->activate();
        for (const QLabel* text : readOut->findChildren<QLabel*>()) {
            EXPECT_LE(text->fontMetrics().horizontalAdvance(text->text()), text->width())
                << text->text().toStdString();
            EXPECT_LE(text->fontMetrics().ascent(), text->height());
            EXPECT_LT(text->geometry().right(), readOut->width());
        }
    }
    const AxReadOut texts = AxReadOut::Of(-179.123456, -89.5, -12345.67, 40000000.0);
    EXPECT_TRUE(texts.altitude.contains("-12345.67")) << texts.altitude.toStdString();
    EXPECT_TRUE(texts.range.contains("40000000.00")) << texts.range.toStdString();
    QLocale::setDefault(usual);
}

TEST_F(Overlay, ReadsTextsAsTheyStand)
{
    const auto* readOut = viewer->GetCoordinateWidget();
    // Same width twice, then other letters of the same number, then markup.
    for (const QStringList& texts : {QStringList{"lon:11.1", "b", "c", "d"},
                                     {"lon:22.2", "b", "c", "d"},
                                     {"lat:22.2", "", "c", "d"},
                                     {"<b>1</b>", "b", "&amp;", "d"}}) {
        viewer->SetCoordinate(texts[0], texts[1], texts[2], texts[3]);
        QStringList shown;
        for (const QLabel* label : readOut->findChildren<QLabel*>())
            shown += label->text();
        EXPECT_EQ(shown, texts);
    }
}

TEST_F(Overlay, FollowsTheCoordinateSystem)
{
    const auto* readOut = viewer->GetCoordinateWidget();
    const int bottom = readOut->geometry().bottom();
    const auto shown = [readOut] {
        QStringList texts;
        for (const QLabel* label : readOut->findChildren<QLabel*>())
            if (label->isVisibleTo(readOut))
                texts += label->text();
        return texts.join('|');
    };
    emit viewer->getManipulator()->signalPointed(-105.01, 37.4, 2500.0, 1000.0, false);
    const QString degrees = shown();
    QSignalSpy told(viewer, &CAxEarthViewer::signalCoordSys);
    QString why;
    EXPECT_FALSE(viewer->SetCoordSys("EPSG:5773", &why));
    EXPECT_TRUE(why.contains("heights")) << why.toStdString();
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(shown(), degrees);
    const struct
    {
        const char* system;
        const char* text;
    } rows[] = {{"EPSG:32613", "easting:499114.92 m|northing:4139247.22 m|altitude:2500.00"},
                {"EPSG:32633", "easting:-|northing:-|altitude:2500.00"},
                {"EPSG:32633", "outside the area of WGS 84 / UTM zone 33N"},
                {"UTM", "|UTM 13N, WGS 84"},
                {"DMS", "longitude:105\302\26000'36.00\"W|latitude:37\302\26024'00.00\"N|"},
                {"MGRS", "MGRS:13S DB 99114 39247||altitude"}};
    for (const auto& row : rows) {
        ASSERT_TRUE(viewer->SetCoordSys(row.system));
        EXPECT_TRUE(shown().contains(QString::fromUtf8(row.text))) << shown().toStdString();
        EXPECT_EQ(readOut->geometry().bottom(), bottom);
    }
    EXPECT_EQ(told.size(), 5);
    ASSERT_TRUE(viewer->SetCoordSys(QString()));
    EXPECT_EQ(shown(), degrees);
}
