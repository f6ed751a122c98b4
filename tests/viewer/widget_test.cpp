// The widget: geometry, switches, input routing, overlays.
#include "SceneEvents.h"

#include "viewer/overlay/CAxCoordinateWidget.h"
#include "viewer/overlay/CAxGraphicsCompassItem.h"
#include "viewer/overlay/CAxMapToolsWidget.h"

#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarth/ModelLayer>
#include <osgEarth/Terrain>
#include <osgGA/EventQueue>
#include <osgViewer/GraphicsWindow>

#include <QGraphicsScene>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTranslator>
#include <QVBoxLayout>

using osgGA::GUIEventAdapter;

namespace {
CAxGraphicsCompassItem* Compass(CAxEarthViewer* viewer)
{
    for (QGraphicsItem* item : viewer->scene()->items())
        if (auto* compass = qobject_cast<CAxGraphicsCompassItem*>(item->toGraphicsObject()))
            return compass;
    return nullptr;
}

class Widget : public ViewerFixture
{
protected:
    void SetUp() override { ASSERT_TRUE(WaitForPicture()); }
    void TearDown() override { viewer->resize(800, 600); }

    static SceneEvents Record(GUIEventAdapter::EventType type, const std::function<void()>& act)
    {
        return recordSceneEvents(type, act);
    }
};
} // namespace

class WidgetSize : public Widget, public testing::WithParamInterface<QSize>
{
};

TEST_P(WidgetSize, PlacesTheOverlaysAndFitsTheCamera)
{
    const QSize size = GetParam();
    viewer->resize(size);
    ASSERT_TRUE(
        waitFor([&] { return viewer->size() == size && viewer->sceneRect().size() == QSizeF(size); }));
    EXPECT_EQ(viewer->viewport()->size(), size);

    const CAxGraphicsCompassItem* compass = Compass(viewer);
    ASSERT_TRUE(compass);
    EXPECT_EQ(compass->pos(), QPointF(size.width() - compass->boundingRect().width() - 9, 60));
    EXPECT_EQ(viewer->GetMapToolWidget()->geometry(),
              QRect(size.width() - 1 + 20 - 94, 60, 94, size.height()));
    EXPECT_EQ(viewer->GetCoordinateWidget()->geometry(),
              QRect(size.width() - 294, size.height() - 48, 294, 48));

    const osg::Camera* camera = viewer->getOSGViewer()->getCamera();
    EXPECT_EQ(camera->getViewport()->width(), size.width());
    EXPECT_EQ(camera->getViewport()->height(), size.height());
    double fovy, aspect, zNear, zFar;
    ASSERT_TRUE(camera->getProjectionMatrixAsPerspective(fovy, aspect, zNear, zFar));
    EXPECT_NEAR(fovy, 30.0, 0.1);
    EXPECT_NEAR(aspect, double(size.width()) / size.height(), 0.01);
}

INSTANTIATE_TEST_SUITE_P(Sizes, WidgetSize,
                         testing::Values(QSize(800, 640), QSize(1200, 700), QSize(640, 900), QSize(380, 360),
                                         QSize(800, 600)));

TEST_F(Widget, SwallowsTab)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent tab(type, Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
        EXPECT_FALSE(QCoreApplication::sendEvent(viewer, &tab));
    }
    const auto events = Record(GUIEventAdapter::KEYUP, [] {
        QTest::keyClick(viewer, Qt::Key_Tab);
        QTest::keyClick(viewer, Qt::Key_X);
    });
    for (const auto& event : events)
        EXPECT_NE(event->getKey(), '\t');
}

TEST(WidgetInAWindow, TabStaysInTheMap)
{
    QWidget window;
    auto* map = new CAxEarthViewer(&window);
    auto* field = new QLineEdit(&window);
    auto* rows = new QVBoxLayout(&window);
    rows->addWidget(map);
    rows->addWidget(field);
    window.resize(300, 300);
    window.show();
    QApplication::setActiveWindow(&window);
    map->setFocus();
    ASSERT_TRUE(waitFor([&] { return map->hasFocus(); }));
    QTest::keyClick(map, Qt::Key_Tab);
    EXPECT_TRUE(map->hasFocus());
    EXPECT_FALSE(field->hasFocus());
}

TEST_F(Widget, ReadsOutThePlaceUnderTheMouseAndTheRange)
{
    const auto texts = [] {
        QString all;
        for (const QLabel* label : viewer->GetCoordinateWidget()->findChildren<QLabel*>())
            all += label->text() + ' ';
        return all;
    };
    const auto moveTo = [](const QPoint& point) { QTest::mouseMove(viewer->viewport(), point); };
    moveTo(QPoint(401, 301));
    moveTo(QPoint(400, 300));
    EXPECT_TRUE(waitFor([&] { return texts().startsWith("longitude:116."); })) << texts().toStdString();
    EXPECT_TRUE(
        texts().contains(QRegularExpression("^longitude:116\\.\\d{6}degree latitude:39\\.\\d{6}degree "
                                            "altitude:-?\\d+\\.\\d\\dmeter camera "
                                            "range:25512548\\.00meter $")))
        << texts().toStdString();
    moveTo(QPoint(5, 590));
    EXPECT_TRUE(waitFor([&] {
        return texts().startsWith("longitude:0.000000degree latitude:0.000000degree");
    })) << texts().toStdString();
}

TEST_F(Widget, ReadOutFollowsTheCameraUnderARestingMouse)
{
    CAxEarthManipulator* manipulator = viewer->getManipulator();
    const osgEarth::Viewpoint home = manipulator->getViewpoint();
    QVector<double> place;
    bool coarse = false;
    const auto connection = QObject::connect(manipulator, &CAxEarthManipulator::signalPointed,
                                             [&](double lng, double lat, double alt, double, bool c) {
                                                 place = {lng, lat, alt};
                                                 coarse = c;
                                             });
    // A pixel of the whole globe is a third of a degree wide.
    const auto isAt = [&](double lng, double lat, double degrees) {
        return place.size() == 3 && std::abs(place[0] - lng) < degrees && std::abs(place[1] - lat) < degrees;
    };
    QTest::mouseMove(viewer->viewport(), QPoint(401, 301));
    QTest::mouseMove(viewer->viewport(), QPoint(400, 300));
    // Over the ocean, where the ground that is drawn from afar is a chord kilometres below.
    manipulator->setViewpoint(osgEarth::Viewpoint("", -140.0, 20.0, 0.0, 0.0, -90.0, 2.5e7), 0.0);
    EXPECT_TRUE(waitFor([&] { return isAt(-140.0, 20.0, 0.5); })) << place.value(0) << ' ' << place.value(1);
    EXPECT_NEAR(place.value(2), 0.0, 9000.0);
    EXPECT_TRUE(coarse);
    manipulator->setViewpoint(osgEarth::Viewpoint("", -105.0, 37.4, 3000.0, 0.0, -90.0, 3000.0), 0.0);
    ASSERT_TRUE(WaitForPicture());
    double ground = 0.0;
    ASSERT_TRUE(viewer->getMapNode()->getTerrain()->getHeight(viewer->getSRS(), -105.0, 37.4, &ground));
    EXPECT_TRUE(waitFor([&] { return isAt(-105.0, 37.4, 0.001) && std::abs(place[2] - ground) < 2.0; }));
    EXPECT_FALSE(coarse);
    QTest::mouseMove(viewer->viewport(), QPoint(5, 590));
    QObject::disconnect(connection);
    manipulator->setViewpoint(home, 0.0);
}

TEST_F(Widget, ToolsBarKeepsClearOfCompassAndReadOut)
{
    for (const int height : {500, 340, 600, 900}) {
        viewer->resize(800, height);
        ASSERT_TRUE(waitFor([&] { return viewer->height() == height; }));
        const QWidget* bar = viewer->GetMapToolWidget();
        const CAxGraphicsCompassItem* compass = Compass(viewer);
        for (const QPushButton* button : bar->findChildren<QPushButton*>()) {
            const QRect place = button->geometry().translated(0, bar->y());
            EXPECT_GE(place.top(), compass->pos().y() + compass->boundingRect().height()) << height;
            EXPECT_LE(place.bottom(), viewer->GetCoordinateWidget()->y()) << height;
            EXPECT_LT(bar->x() + button->geometry().center().x(), 800 - 15) << height;
        }
    }
}

TEST_F(Widget, NamesCapitalsFromAfarAndCitiesFromNear)
{
    const osgEarth::Map* map = viewer->getMapNode()->getMap();
    const osgEarth::ModelLayer* capitals = map->getModelLayerByName("Capital");
    const osgEarth::ModelLayer* cities = map->getModelLayerByName("City");
    ASSERT_TRUE(capitals && cities);
    const osgEarth::Viewpoint home = viewer->getManipulator()->getViewpoint();
    EXPECT_TRUE(capitals->getVisible());
    EXPECT_FALSE(cities->getVisible());
    viewer->getManipulator()->setViewpoint(osgEarth::Viewpoint("", 10.0, 46.5, 0.0, 0.0, -90.0, 4.9e6), 0.0);
    EXPECT_TRUE(waitFor([&] { return cities->getVisible() && !capitals->getVisible(); }));
    viewer->getManipulator()->setViewpoint(home, 0.0);
    EXPECT_TRUE(waitFor([&] { return !cities->getVisible() && capitals->getVisible(); }));
}

TEST_F(Widget, GivesOsgTheModifiersOfAClick)
{
    struct Row
    {
        Qt::MouseButton button;
        int osgButton;
        Qt::KeyboardModifiers modifiers;
        int osgMask;
    };
    const Row rows[] = {{Qt::LeftButton, GUIEventAdapter::LEFT_MOUSE_BUTTON, Qt::ShiftModifier, 3},
                        {Qt::MiddleButton, GUIEventAdapter::MIDDLE_MOUSE_BUTTON, Qt::ControlModifier, 12},
                        {Qt::RightButton, GUIEventAdapter::RIGHT_MOUSE_BUTTON, Qt::AltModifier, 48}};
    for (const Row& row : rows) {
        const auto events = Record(GUIEventAdapter::RELEASE, [&] {
            QTest::mouseClick(viewer->viewport(), row.button, row.modifiers, QPoint(40, 500));
        });
        bool pressed = false;
        for (const auto& event : events) {
            if (event->getEventType() != GUIEventAdapter::PUSH)
                continue;
            pressed = true;
            EXPECT_EQ(event->getButton(), row.osgButton);
            EXPECT_EQ(event->getModKeyMask(), row.osgMask);
            EXPECT_EQ(event->getX(), 40.0f);
        }
        EXPECT_TRUE(pressed);
    }
    Record(GUIEventAdapter::MOVE, [] { QTest::mouseMove(viewer->viewport(), QPoint(41, 500)); });
}

TEST_F(Widget, EndsAPressOnTheToolsBarWithAReleaseOnNothing)
{
    auto* button = viewer->GetMapToolWidget()->findChild<QPushButton*>("m_pBtnNoFly");
    ASSERT_TRUE(button);
    const QPoint inBar = button->mapTo(viewer->GetMapToolWidget(), button->rect().center());
    const QPoint position = viewer->GetMapToolWidget()->geometry().topLeft() + inBar;
    ASSERT_TRUE(viewer->rect().contains(position));
    const auto click = [&] {
        QTest::mouseClick(viewer->viewport(), Qt::LeftButton, Qt::NoModifier, position);
    };
    const auto events = Record(GUIEventAdapter::RELEASE, click);
    EXPECT_TRUE(button->isChecked());
    for (const auto& event : events) {
        if (event->getEventType() == GUIEventAdapter::PUSH) {
            EXPECT_EQ(event->getX(), float(position.x()));
        }
        if (event->getEventType() == GUIEventAdapter::RELEASE) {
            EXPECT_EQ(event->getX(), 0.0f);
        }
    }
    Record(GUIEventAdapter::RELEASE, click);
    EXPECT_FALSE(button->isChecked());
}

TEST_F(Widget, EscapeDoesNotStopTheGlobe)
{
    Record(GUIEventAdapter::KEYUP, [] { QTest::keyClick(viewer, Qt::Key_Escape); });
    const unsigned frame = viewer->getOSGViewer()->getFrameStamp()->getFrameNumber();
    EXPECT_TRUE(
        waitFor([&] { return viewer->getOSGViewer()->getFrameStamp()->getFrameNumber() > frame + 1; }));
}

TEST_F(Widget, ToolsBarHasOneToolAtATime)
{
    CAxMapToolsWidget* tools = viewer->GetMapToolWidget();
    auto* measure = tools->findChild<QPushButton*>("m_pMeasureBtn");
    auto* marker = tools->findChild<QPushButton*>("m_pMarkerTools");
    QList<int> changes;
    const auto connection = QObject::connect(tools, &CAxMapToolsWidget::ToolTypeChanged,
                                             [&changes](EToolType tool) { changes += tool; });
    measure->click();
    EXPECT_EQ(viewer->GetToolType(), ToolMeasureDistance);
    marker->click();
    EXPECT_FALSE(measure->isChecked());
    EXPECT_EQ(viewer->GetToolType(), ToolMarkPoint);
    viewer->SetToolType(ToolMeasureDistance);
    EXPECT_TRUE(measure->isChecked() && !marker->isChecked()) << "whoever takes it up";
    viewer->SetToolType(ToolPolygonBlock);
    EXPECT_FALSE(measure->isChecked());
    measure->click();
    measure->click();
    EXPECT_EQ(viewer->GetToolType(), ToolNavigate);
    EXPECT_EQ(changes, (QList<int>{7, 8, 7, 1}));
    QObject::disconnect(connection);

    EXPECT_TRUE(tools->VoiceEnabled());
    QSignalSpy speech(viewer, &CAxEarthViewer::signalTextSpeechEnabled);
    auto* voice = tools->findChild<QPushButton*>("m_pVoiceSwitchBtn");
    voice->click();
    EXPECT_FALSE(tools->VoiceEnabled());
    ASSERT_EQ(speech.count(), 1);
    EXPECT_FALSE(speech[0][0].toBool());
    voice->click();
}

TEST(Translation, CarriesTheTextsInChinese)
{
    QTranslator texts;
    ASSERT_TRUE(texts.load(QStringLiteral(":/i18n/axearthviewer_zh_CN.qm")));
    EXPECT_EQ(texts.translate("CAxEarthViewer", "Loading Sky..."), QStringLiteral("正在加载天空..."));
    EXPECT_EQ(texts.translate("CAxMapToolsWidget", "No fly zone"), QStringLiteral("禁飞区"));
}
