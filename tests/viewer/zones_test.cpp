// The no-fly process on the real viewer: which zones are in the scene, what
// areas meet, and the jobs of its thread.
#include "ShapeFixture.h"

#include "analysis/CAxAncillaryProcess.h"
#include "analysis/CAxElevationQuery.h"

#include <AxData/CAxBlockManager.h>
#include <AxData/CAxControl.h>

#include <osg/Geode>

#include <QSignalSpy>

using osgEarth::Symbology::Polygon;

class Percentages : public QObject
{
    Q_OBJECT
public:
    int last = 0;
public slots:
    void SetValue(int percent) { last = percent; }
};

class Outlines : public QObject
{
    Q_OBJECT
public:
    QList<int> numbers;
public slots:
    void slotModelBound(QVariant bound) { numbers += bound.toList()[0].toInt(); }
};

namespace {
class Zones : public ViewerFixture
{
protected:
    void SetUp() override
    {
        process = viewer->GetAncillaryProcess();
        process->SetNoFlyZoneMask(true);
    }
    void TearDown() override
    {
        LookAt(20.0, 10.0, 1.5e7);
        EXPECT_TRUE(Shows({}));
        process->SetNoFlyZoneMask(false);
    }

    void LookAt(double longitude, double latitude, double range) const
    {
        viewer->getManipulator()->setViewpoint(
            osgEarth::Viewpoint("zones", longitude, latitude, 0.0, 0.0, -90.0, range), 0.0);
        process->SetCurrViewPort(osgEarth::Viewpoint("zones", longitude, latitude, 0.0, 0.0, -90.0, range));
    }
    static QStringList InScene()
    {
        QStringList ids;
        const osg::Group* zones = findNode(viewer->GetDrawNodeGroup(), "NoFlyGroup")->asGroup();
        for (unsigned i = 0; i < zones->getNumChildren(); ++i)
            ids += QString::fromStdString(zones->getChild(i)->getName());
        ids.sort();
        return ids;
    }
    static bool Shows(const QStringList& ids)
    {
        return waitFor([&] { return InScene() == ids; }, 20000);
    }
    static osg::ref_ptr<Polygon> Square(double longitude, double latitude, double half)
    {
        osg::ref_ptr<Polygon> square = new Polygon;
        for (const auto& [x, y] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}})
            square->push_back(longitude + x * half, latitude + y * half);
        return square;
    }

    CAxAncillaryProcess* process = nullptr;
};
} // namespace

TEST_F(Zones, EnterTheSceneNearALowCameraAndLeaveIt)
{
    QSignalSpy told(process, &CAxAncillaryProcess::signalShownZones);
    LookAt(60.5, 46.0, 100000.0);
    EXPECT_TRUE(Shows({"T1", "T2", "T3", "T4"})) << InScene().join(' ').toStdString();
    LookAt(60.5, 46.0, 350000.0);
    EXPECT_TRUE(Shows({})) << "from 350 km on there are none";
    LookAt(60.5, 46.0, 349999.0);
    EXPECT_TRUE(Shows({"T1", "T2", "T3", "T4"}));
    LookAt(63.2, 46.2, 100000.0);
    EXPECT_TRUE(Shows({"T4"})) << InScene().join(' ').toStdString();
    // The camera alone moves on, at the same range.
    viewer->getManipulator()->setViewpoint(
        osgEarth::Viewpoint("panned", 60.5, 46.0, 0.0, 0.0, -90.0, 100000.0), 0.0);
    EXPECT_TRUE(Shows({"T1", "T2", "T3", "T4"}));
    EXPECT_TRUE(waitFor([&] { return told.count() >= 4; }));
}

TEST_F(Zones, AreTheOnesThatAnAreaMeetsLiftedPartsLeftOut)
{
    QStringList ids{"kept"};
    EXPECT_TRUE(process->Intersection(Square(60.4, 45.4, 0.2), ids, false));
    EXPECT_EQ(ids, (QStringList{"kept", "T1", "T2"}));
    // T3 has a hole where a lift was granted; the lift of T1 waits for its answer.
    for (const auto& [x, y, met] : {std::tuple{61.0, 46.0, false}, {61.0, 46.06, true}, {60.2, 45.3, true}}) {
        ids.clear();
        EXPECT_EQ(process->Intersection(Square(x, y, 0.01), ids, true), met) << x << ' ' << y;
        EXPECT_EQ(process->ZonesAt(x, y).isEmpty(), !met) << x << ' ' << y;
        // Who plans a route is given the same zones.
        bool isGiven = false;
        for (const AxPlanZone& zone : CAxControl::GetInstance()->GetZones()(x, y, 10.0))
            isGiven |= QPolygonF(zone.ring.toVector()).containsPoint(QPointF(x, y), Qt::OddEvenFill);
        EXPECT_EQ(isGiven, met) << x << ' ' << y;
    }
    for (osgEarth::Symbology::Geometry* nothing : {static_cast<Polygon*>(nullptr), new Polygon}) {
        const osg::ref_ptr<osgEarth::Symbology::Geometry> held = nothing;
        EXPECT_FALSE(process->Intersection(nothing, ids, false));
    }
}

TEST_F(Zones, AreListedByTheirDistanceWithTheirLifts)
{
    const QList<AxNoflyZoneNear> near = process->ZonesNear(60.2, 45.2, 60000.0);
    ASSERT_EQ(near.size(), 2);
    EXPECT_EQ(near[0].id, "T1");
    EXPECT_NEAR(near[0].distance, 11132.0, 5.0);
    EXPECT_TRUE(near[0].lifts.isEmpty());
    EXPECT_EQ(near[1].id, "T2");
    EXPECT_NEAR(near[1].bearing, 43.0, 2.0);
    const QList<AxNoflyZoneNear> lifted = process->ZonesNear(61.3, 46.3, 60000.0);
    ASSERT_EQ(lifted.size(), 2);
    for (const AxNoflyZoneNear& zone : lifted) {
        ASSERT_EQ(zone.lifts.size(), 1) << zone.id.toStdString();
        EXPECT_EQ(zone.lifts[0].isOutOfDate, zone.id == "T4");
    }
}

TEST_F(Zones, AreTestedWhileTheCameraMovesAmongThem)
{
    for (int i = 0; i < 60; ++i) {
        process->SetCurrViewPort(
            osgEarth::Viewpoint("", 58.0 + 0.1 * i, 46.0, 0.0, 0.0, -90.0, i % 7 ? 100000.0 : 400000.0));
        QStringList ids;
        EXPECT_TRUE(process->Intersection(Square(60.2, 45.3, 0.05), ids, false));
        process->ZonesNear(60.2, 45.3, 1e6);
        if (i % 10 == 0)
            QTest::qWait(1);
    }
    LookAt(60.5, 46.0, 100000.0);
    EXPECT_TRUE(Shows({"T1", "T2", "T3", "T4"})) << "the last place of the camera counts";
}

TEST_F(Zones, ElevationJobIsWaitedForOrTellsItsEnd)
{
    CAxElevationQuery waited;
    process->SetElevationQueryPara(5, 4, 0.0, viewer->getMapNode()->getMap(), *Square(-105.0, 37.5, 0.05), {},
                                   nullptr, &waited);
    process->block();
    const QVariantList places = waited.GetResult().toList();
    ASSERT_EQ(places.size(), 20);
    for (const QVariant& place : places) {
        EXPECT_NEAR(place.toList()[0].toDouble(), -105.0, 0.0501);
        EXPECT_GT(place.toList()[2].toDouble(), 1300.0) << "these are mountains";
        EXPECT_LT(place.toList()[2].toDouble(), 4400.0);
    }
    // The answer was there before it was waited for; nobody waits for ever.
    CAxElevationQuery late;
    process->SetElevationQueryPara(1, 1, 0.0, viewer->getMapNode()->getMap(), *Square(-105.0, 37.5, 0.05), {},
                                   nullptr, &late);
    CAxElevationQuery asked;
    QObject progress;
    QSignalSpy told(&asked, &CAxElevationQuery::signalElevations);
    process->SetElevationQueryPara(2, 2, 0.0, nullptr, Polygon(), {}, &progress, &asked);
    EXPECT_TRUE(told.wait(20000));
    EXPECT_TRUE(asked.GetResult().toList().isEmpty()) << "there is no map to ask";
    process->block();
    EXPECT_TRUE(late.GetResult().isValid()) << "jobs are done in their order";
    // Who asked has gone.
    {
        CAxElevationQuery gone;
        process->SetElevationQueryPara(20, 20, 0.0, viewer->getMapNode()->getMap(),
                                       *Square(-105.0, 37.5, 0.05), {}, nullptr, &gone);
    }
    process->block();

    CAxElevationQuery across;
    const osg::ref_ptr<Polygon> antimeridian = new Polygon;
    for (const auto& [longitude, latitude] :
         {std::pair{179.95, -17.05}, {-179.95, -17.05}, {-179.95, -16.95}})
        antimeridian->push_back(osg::Vec3d(longitude, latitude, 0.0));
    process->SetElevationQueryPara(20, 20, 0.0, viewer->getMapNode()->getMap(), *antimeridian, {}, nullptr,
                                   &across);
    process->block();
    const QVariantList around = across.GetResult().toList();
    EXPECT_GT(around.size(), 150);
    for (const QVariant& place : around)
        EXPECT_NEAR(std::abs(place.toList()[0].toDouble()), 180.0, 0.05);
}

TEST_F(Zones, ElevationJobsThatOverlapGetTheirOwnAnswersAndPercentages)
{
    const auto handOver = [this](int columns, int rows, QObject* progress, CAxElevationQuery& query) {
        process->SetElevationQueryPara(columns, rows, 0.0, viewer->getMapNode()->getMap(),
                                       *Square(-105.0, 37.5, 0.05), {}, progress, &query);
    };
    const auto places = [](const CAxElevationQuery& query) { return query.GetResult().toList().size(); };
    Percentages display;
    Percentages other;
    CAxElevationQuery first;
    CAxElevationQuery second;
    CAxElevationQuery third;
    handOver(50, 50, &display, first);
    ASSERT_TRUE(waitFor([&] { return display.last > 0; }));
    handOver(3, 1, &other, second);
    ASSERT_TRUE(waitFor([&] { return places(second) == 3; }));
    EXPECT_EQ(places(first), 2500);
    EXPECT_EQ(other.last, 100);
    display.last = 0;
    handOver(4, 1, nullptr, third);
    process->block();
    EXPECT_EQ(places(third), 4);
    QCoreApplication::processEvents();
    EXPECT_EQ(display.last, 0) << "percentages of another job";

    // The next job can be handed over, and waited for, by who hears the answer of the last.
    CAxElevationQuery told;
    CAxElevationQuery waited;
    QObject::connect(&told, &CAxElevationQuery::signalElevations, &told, [&] {
        handOver(2, 1, nullptr, waited);
        process->block();
        EXPECT_EQ(places(waited), 2);
    });
    handOver(1, 1, &display, told);
    EXPECT_TRUE(waitFor([&] { return waited.GetResult().isValid(); }));
}

TEST_F(Zones, ModelBoundJobDrawsTheOutlineOfAModel)
{
    osg::Matrixd place;
    osgEarth::GeoPoint(viewer->getSRS()->getGeographicSRS(), 61.0, 45.0, 100.0).createLocalToWorld(place);
    osg::ref_ptr<osg::Geode> model = new osg::Geode;
    osg::ref_ptr<osg::Geometry> box = new osg::Geometry;
    const std::vector<osg::Vec3> corners{{-50.0f, -20.0f, 0.0f},
                                         {50.0f, -20.0f, 0.0f},
                                         {50.0f, 20.0f, 0.0f},
                                         {-50.0f, 20.0f, 0.0f},
                                         {0.0f, 0.0f, 30.0f}};
    box->setVertexArray(new osg::Vec3Array(static_cast<unsigned>(corners.size()), corners.data()));
    model->addDrawable(box);
    osg::ref_ptr<osg::Geode> drawn = new osg::Geode;
    QSignalSpy told(process, &CAxAncillaryProcess::signalModelBound);
    process->SetModelBoundPara(model, place, 7, 0.0, drawn, nullptr);
    ASSERT_TRUE(told.wait(20000));
    const QVariantList answered = told[0][0].value<QVariant>().toList();
    ASSERT_EQ(answered.size(), 2);
    EXPECT_EQ(answered[0].toInt(), 7);
    const QVariantList outline = answered[1].toList();
    ASSERT_EQ(outline.size(), 4);
    for (const QVariant& corner : outline) {
        const double east = (corner.toList()[0].toDouble() - 61.0) * 78847.0;
        const double north = (corner.toList()[1].toDouble() - 45.0) * 111132.0;
        EXPECT_NEAR(std::abs(east), 50.0, 1.0);
        EXPECT_NEAR(std::abs(north), 20.0, 1.0);
        EXPECT_NEAR(corner.toList()[2].toDouble(), 100.0, 1.0);
    }
    EXPECT_EQ(drawn->getNumDrawables(), 1u);

    // Of several jobs on the way each is done, each outline comes into its own geode, and who asked for one
    // hears of that one.
    const osg::ref_ptr<osg::Geode> other = new osg::Geode;
    Outlines eighth;
    Outlines ninth;
    process->SetModelBoundPara(model, place, 8, 0.0, drawn, &eighth);
    process->SetModelBoundPara(model, place, 9, 0.0, other, &ninth);
    process->SetModelBoundPara(model, place, 10, 0.0, other, nullptr);
    ASSERT_TRUE(waitFor([&] { return told.size() == 4; }));
    EXPECT_EQ(drawn->getNumDrawables(), 2u);
    EXPECT_EQ(other->getNumDrawables(), 2u);
    EXPECT_EQ(eighth.numbers, QList<int>{8});
    EXPECT_EQ(ninth.numbers, QList<int>{9});

    // One that is called off ends, unheard.
    process->SetModelBoundPara(model, place, 11, 0.0, drawn, &ninth);
    process->CancelModelBound(11, &ninth);
    ASSERT_TRUE(waitFor([&] { return told.size() == 5; }));
    EXPECT_EQ(drawn->getNumDrawables(), 2u);
    EXPECT_EQ(ninth.numbers, QList<int>{9});
}

TEST_F(Zones, BlocksKnowTheMeanAltitudeOfTheirGround)
{
    CAxBlockManager& blocks = CAxBlockManager::instance();
    const QList<QPointF> mountains{{-105.05, 37.45}, {-104.95, 37.45}, {-104.95, 37.55}, {-105.05, 37.55}};
    CAxBlock* const area = blocks.AddBlock("area", CAxBlock::PolygonBlock);
    area->SetAnchor(mountains);
    CAxBlock* const line = blocks.AddBlock("line", CAxBlock::StripBlock);
    line->SetAnchor(mountains.mid(0, 2));
    blocks.AddBlock("gone", CAxBlock::PolygonBlock)->SetAnchor(mountains);
    blocks.DeleteBlock("gone");
    CAxBlock* const known = blocks.AddBlock("known", CAxBlock::PolygonBlock);
    known->SetAnchor(mountains);
    known->SetAverageAltitude(7.0);
    // As a project fills its records.
    CAxBlock* const filled = blocks.AddBlock("filled", CAxBlock::PolygonBlock);
    filled->SetAverageAltitude(9.0);
    filled->SetAnchor(mountains);
    ASSERT_TRUE(
        waitFor([&] { return area->GetAverageAltitude() != 0.0 && line->GetAverageAltitude() != 0.0; }));

    CAxElevationQuery sampled;
    process->SetElevationQueryPara(30, 30, 0.0, viewer->getMapNode()->getMap(), *Square(-105.0, 37.5, 0.05),
                                   {}, nullptr, &sampled);
    process->block();
    double sum = 0.0;
    for (const QVariant& place : sampled.GetResult().toList())
        sum += place.toList()[2].toDouble();
    EXPECT_NEAR(area->GetAverageAltitude(), sum / 900.0, 30.0);
    // Who plans a route is given the map's own heights.
    const auto ground = CAxControl::GetInstance()->GetGround();
    ASSERT_TRUE(ground);
    const QVariantList place = sampled.GetResult().toList()[400].toList();
    EXPECT_NEAR(ground(place[0].toDouble(), place[1].toDouble()).value_or(0.0), place[2].toDouble(), 1.0);
    EXPECT_GT(line->GetAverageAltitude(), 1300.0);
    // Its vertices are set last, so all others have been answered.
    CAxBlock* const last = blocks.AddBlock("last", CAxBlock::VideoBlock);
    last->SetAnchor(mountains.mid(0, 1));
    ASSERT_TRUE(waitFor([&] { return last->GetAverageAltitude() != 0.0; }));
    EXPECT_EQ(known->GetAverageAltitude(), 7.0) << "what a host has set meanwhile stands";
    EXPECT_EQ(filled->GetAverageAltitude(), 9.0);
    const double ofSmallCircle = last->GetAverageAltitude();
    last->SetVideoRadius(4000);
    EXPECT_TRUE(waitFor([&] { return std::abs(last->GetAverageAltitude() - ofSmallCircle) > 10.0; }));

    // A block that comes back by undo: without an altitude it is asked for again, with one it keeps it.
    CAxBlock* const late = blocks.AddBlock("late", CAxBlock::PolygonBlock);
    late->SetAnchor(mountains);
    std::unique_ptr<CAxBlock> without = blocks.TakeBlock("late");
    std::unique_ptr<CAxBlock> with = blocks.TakeBlock("known");
    ASSERT_TRUE(blocks.PutBack(with) && blocks.PutBack(without));
    ASSERT_TRUE(waitFor([&] { return late->GetAverageAltitude() != 0.0; }));
    EXPECT_EQ(known->GetAverageAltitude(), 7.0);
    blocks.DeleteAllBlocks();
}

#include "zones_test.moc"
