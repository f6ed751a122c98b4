// Layers that come and go while the map is shown, and the height of its ground.
#include "ProtocolFixture.h"

#include "analysis/AxMapHeights.h"
#include "interaction/marks/CAxOsgDrawPointSet.h"
#include "viewer/AxMapLayers.h"

#include <AxData/CAxControl.h>

#include <osgEarth/ImageLayer>
#include <osgEarth/Map>
#include <osgEarth/MapNode>
#include <osgEarthDrivers/gdal/GDALOptions>

#include <QFile>
#include <QTemporaryDir>

class MapLayers : public ProtocolFixture
{
protected:
    static int Count() { return viewer->GetMapLayers()->All().size(); }
    static AxMapLayer Layer(int id)
    {
        for (const AxMapLayer& layer : viewer->GetMapLayers()->All())
            if (layer.id == id)
                return layer;
        return {};
    }
};

TEST_F(MapLayers, AreAddedFromFilesFadedHiddenAndRemovedAgain)
{
    AxMapLayers& layers = *viewer->GetMapLayers();
    const int before = Count();
    ASSERT_GT(before, 0);
    const int own = layers.All().constFirst().id;
    QString why;
    const QTemporaryDir folder;
    QFile text(folder.filePath("text.tif"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly) && text.write("no picture") > 0);
    text.close();
    for (const QString& wrong : {folder.filePath("none.tif"), text.fileName(), folder.path()}) {
        why.clear();
        EXPECT_EQ(layers.AddImage(wrong, &why), 0);
        EXPECT_EQ(why.count(QFileInfo(wrong).fileName()), 1) << why.toStdString();
    }
    EXPECT_EQ(Count(), before) << "what is refused leaves nothing";
    const int id = layers.AddImage(QString(AX_RESOURCES) + "/map/trinidad_relief.tif", &why);
    ASSERT_NE(id, 0) << why.toStdString();
    EXPECT_TRUE(Layer(id).isAdded && Layer(id).extent && Layer(id).isVisible);
    EXPECT_TRUE(layers.SetOpacity(id, 3.0));
    EXPECT_EQ(Layer(id).opacity, 1.0);
    EXPECT_TRUE(layers.SetOpacity(id, 0.5) && layers.SetVisible(id, false));
    EXPECT_EQ(Layer(id).opacity, 0.5);
    EXPECT_FALSE(Layer(id).isVisible);
    EXPECT_FALSE(layers.SetOpacity(id, std::nan("")) || layers.SetVisible(-5, true) || layers.Remove(own));
    EXPECT_TRUE(layers.Remove(id));
    EXPECT_FALSE(layers.Remove(id));
    EXPECT_EQ(Count(), before);
}

TEST_F(MapLayers, TheFinestGroundIsToldWhateverIsLoaded)
{
    struct Answer
    {
        double longitude, latitude, altitude;
        bool isKnown;
    };
    QVector<Answer> answers;
    const auto listening = QObject::connect(viewer, &CAxEarthViewer::signalRequestElevationReturn, viewer,
                                            [&answers](double lng, double lat, double alt, bool isKnown) {
                                                answers += Answer{lng, lat, alt, isKnown};
                                            });
    QString added;
    const auto told = QObject::connect(viewer, &CAxEarthViewer::signalElevationLayer, viewer,
                                       [&added](const QString& name, const QVariant&) { added = name; });
    const int id =
        viewer->GetMapLayers()->AddElevation(QString(AX_RESOURCES) + "/map/trinidad_90m_metres.tif");
    ASSERT_NE(id, 0);
    EXPECT_EQ(added, "trinidad_90m_metres");
    viewer->slotRequestElevation(-105.0, 37.37);
    viewer->slotRequestElevation(20.0, 95.0);
    viewer->slotRequestElevation(-105.01, 37.37);
    ASSERT_TRUE(waitFor([&answers] { return answers.size() == 3; }));
    EXPECT_TRUE(answers[0].isKnown && answers[0].altitude > 1500.0) << "of a mountain that is not loaded";
    EXPECT_FALSE(answers[1].isKnown);
    EXPECT_EQ(answers[2].longitude, -105.01) << "in their order";
    EXPECT_TRUE(viewer->GetMapLayers()->Remove(id));
    EXPECT_TRUE(std::isnan(viewer->GetElevation(20.0, 95.0)));
    EXPECT_TRUE(std::isfinite(viewer->GetElevation(20.0, 10.0)));
    EXPECT_EQ(viewer->GetElevation(380.0, 10.0), viewer->GetElevation(20.0, 10.0));
    QObject::disconnect(listening);
    QObject::disconnect(told);
}

TEST_F(MapLayers, OthersHearOfAnotherGroundAndOfNothingElse)
{
    AxMapLayers& layers = *viewer->GetMapLayers();
    int grounds = 0;
    int plans = 0;
    int lists = 0;
    QObject receiver;
    QObject::connect(&layers, &AxMapLayers::groundChanged, &receiver, [&] { ++grounds; });
    QObject::connect(&layers, &AxMapLayers::changed, &receiver, [&] { ++lists; });
    QObject::connect(CAxControl::GetInstance(), &CAxControl::planBasisChanged, &receiver, [&] { ++plans; });
    const QTemporaryDir folder;
    const QString file = folder.filePath("heights.tif");
    ASSERT_TRUE(QFile::copy(QString(AX_RESOURCES) + "/map/trinidad_90m_metres.tif", file));
    int id = 0;
    int world = 0;
    int trinidad = 0;
    osg::ref_ptr<osgEarth::ImageLayer> elsewhere;
    for (const AxMapLayer& layer : layers.All())
        (layer.name == "World heights" ? world : layer.name == "Trinidad heights" ? trinidad : id) = layer.id;
    ASSERT_TRUE(world != 0 && trinidad != 0);
    const struct
    {
        const char* what;
        std::function<void()> change;
        bool isOther;
    } cases[] = {
        {"heights come", [&] { id = layers.AddElevation(file); }, true},
        {"they are hidden", [&] { layers.SetVisible(id, false); }, true},
        {"once more they are shown", [&] { EXPECT_EQ(layers.AddElevation(file), id); }, true},
        {"they go although their file went before",
         [&] { EXPECT_TRUE(QFile::remove(file) && layers.Remove(id)); }, true},
        {"a picture comes", [&] { id = layers.AddImage(QString(AX_RESOURCES) + "/map/trinidad_relief.tif"); },
         false},
        {"it is faded", [&] { layers.SetOpacity(id, 0.3); }, false},
        {"it goes", [&] { layers.Remove(id); }, false},
        {"a layer of somebody else comes",
         [&] {
             osgEarth::Drivers::GDALOptions source;
             source.url() = std::string(AX_RESOURCES) + "/map/trinidad_relief.tif";
             elsewhere = new osgEarth::ImageLayer("elsewhere", source);
             viewer->getMapNode()->getMap()->addImageLayer(elsewhere);
         },
         false},
        {"it is hidden by whose it is", [&] { elsewhere->setVisible(false); }, false},
        {"it goes again", [&] { viewer->getMapNode()->getMap()->removeImageLayer(elsewhere); }, false},
        {"the heights of the whole world are hidden", [&] { layers.SetVisible(world, false); }, true},
    };
    for (const auto& one : cases) {
        grounds = plans = lists = 0;
        one.change();
        EXPECT_EQ(grounds, one.isOther ? 1 : 0) << one.what;
        EXPECT_EQ(plans, grounds) << one.what;
        EXPECT_EQ(lists, 1) << one.what;
    }
    EXPECT_TRUE(std::isnan(viewer->GetElevation(20.0, 10.0))) << "no height is known there any more";
    layers.SetVisible(world, true);
    CAxOsgDrawPointSet* marks = CAxOsgDrawPointSet::OfViewer(viewer);
    const QString mark = marks->AddMark(-105.0, 37.37);
    const auto standsOnGround = [&] {
        const AxMapHeights ground(viewer->getMapNode()->getMap());
        return waitFor([&] { return marks->Find(mark)->altitude == ground(-105.0, 37.37); }, 5000);
    };
    EXPECT_TRUE(standsOnGround());
    const double fine = marks->Find(mark)->altitude;
    layers.SetVisible(trinidad, false);
    EXPECT_TRUE(standsOnGround());
    EXPECT_NE(marks->Find(mark)->altitude, fine);
    layers.SetVisible(trinidad, true);
    EXPECT_TRUE(standsOnGround());
    marks->RemoveMarks({mark});
    QString why;
    EXPECT_EQ(AxMapLayers().AddImage("some.tif", &why), 0);
    EXPECT_FALSE(why.isEmpty()) << "without a map";
}
