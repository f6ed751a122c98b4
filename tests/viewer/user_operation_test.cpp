// Changes of the scene that wait for the update traversal, on the real viewer.
#include "ViewerFixture.h"

#include "analysis/AxUserOperation.h"
#include "analysis/CAxDrapeableNode.h"
#include "LogLines.h"

#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/Program>
#include <osg/ShapeDrawable>
#include <osgDB/WriteFile>
#include <osgEarth/GeoData>
#include <osgEarth/MapNode>

#include <QDir>
#include <QFile>
#include <QPointF>
#include <QTemporaryDir>

#include <chrono>
#include <future>

using osgEarth::Symbology::MultiGeometry;
using osgEarth::Symbology::Polygon;

namespace {
osg::ref_ptr<Polygon> Square(double longitude, double latitude, double half)
{
    osg::ref_ptr<Polygon> square = new Polygon;
    for (const auto& [x, y] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}})
        square->push_back(longitude + x * half, latitude + y * half);
    return square;
}

bool IsReady(const std::future<void>& waiter)
{
    return waiter.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

class UserOperation : public ViewerFixture
{
protected:
    void TearDown() override
    {
        viewer->GetDrawNodeGroup()->removeChild(findNode(viewer->GetDrawNodeGroup(), "Operation_GeomLoad"));
        viewer->GetDrawNodeGroup()->removeChild(findNode(viewer->GetDrawNodeGroup(), "DrapeableNode"));
    }

    static osg::ref_ptr<AxUserOperation> Make(int kind, const QString& name = QString())
    {
        osg::ref_ptr<AxUserOperation> operation = new AxUserOperation(static_cast<User_Operation>(kind));
        operation->setEarthViewer(viewer);
        operation->setUserName(name);
        return operation;
    }
    /// Queues it, lets frames be drawn and waits for its end on another thread.
    static void Run(const osg::ref_ptr<AxUserOperation>& operation)
    {
        viewer->getOSGViewer()->addUpdateOperation(operation);
        const std::future<void> waiter = std::async(std::launch::async, [operation] { operation->block(); });
        if (!waitFor([&] { return IsReady(waiter); }, 20000)) {
            ADD_FAILURE() << "the operation let nobody go";
            operation->release();
        }
    }
    static void Run(int kind, const QString& name) { Run(Make(kind, name)); }

    static unsigned CountNodes()
    {
        struct Counter : osg::NodeVisitor
        {
            Counter() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) { setNodeMaskOverride(~0u); }
            void apply(osg::Node& node) override
            {
                ++count;
                traverse(node);
            }
            unsigned count = 0;
        } counter;
        viewer->GetDrawNodeGroup()->accept(counter);
        return counter.count + Root()->asGroup()->getNumChildren();
    }
    static osg::Vec3d World(double longitude, double latitude)
    {
        osg::Vec3d world;
        osgEarth::GeoPoint(viewer->getSRS()->getGeographicSRS(), longitude, latitude, 0.0).toWorld(world);
        return world;
    }
    /// The colour of the first geometry below a node.
    static osg::Vec4 ColorBelow(osg::Node& node)
    {
        struct Reader : osg::NodeVisitor
        {
            Reader() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
            void apply(osg::Geometry& geometry) override
            {
                color = static_cast<osg::Vec4Array&>(*geometry.getColorArray())[0];
            }
            osg::Vec4 color;
        } reader;
        node.accept(reader);
        return reader.color;
    }
};
} // namespace

TEST_F(UserOperation, ModelIsReadHungIntoTheSceneAndTakenOutAgainAndOneThatCannotBeReadIsNamedInTheLog)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("\u6a21\u578b.osgt"));
    osg::ref_ptr<osg::Group> inner = new osg::Group;
    inner->setName("Model"); // a part that is called so, too
    inner->addChild(new osg::ShapeDrawable(new osg::Sphere));
    osg::ref_ptr<osg::Group> whole = new osg::Group;
    whole->addChild(inner);
    ASSERT_TRUE(osgDB::writeNodeFile(*whole, QFile::encodeName(path).toStdString()));

    const unsigned children = Root()->asGroup()->getNumChildren();
    const osg::ref_ptr<AxUserOperation> load = Make(LoadModel);
    load->setUserValue(path);
    Run(load);
    osg::Node* model = findNode(Root(), "Model");
    ASSERT_TRUE(model);
    EXPECT_EQ(model->getNumParents(), 1u);
    EXPECT_EQ(model->getParent(0), Root());
    EXPECT_EQ(Root()->asGroup()->getNumChildren(), children + 1);

    Run(RemoveModel, QString());
    EXPECT_FALSE(findNode(Root(), "Model"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no model") > 0);
    file.close();
    for (const QString& unreadable : {path, folder.filePath(QStringLiteral("missing.osgt")), QString()}) {
        const LogLines log;
        const osg::ref_ptr<AxUserOperation> vain = Make(LoadModel);
        vain->setUserValue(unreadable);
        Run(vain);
        EXPECT_EQ(Root()->asGroup()->getNumChildren(), children);
        EXPECT_EQ(LogLines::lines.filter(QStringLiteral("cannot read the model file ") + unreadable).size(),
                  1)
            << LogLines::lines.join('\n').toStdString();
    }
}

TEST_F(UserOperation, DrawsAPolygonOrWhateverListOfPointsGreen)
{
    const QVariantList numbers{QVariantList{20.0, 10.0}, QVariantList{21.0, 10.0, 500.0},
                               QVariantList{"21.0", "11.0"}};
    const QVariantList junk{
        QVariantList{1.0},   "text", QVariant(), QVariantList{"a", 3.0}, QVariantList{qQNaN(), 2.0},
        QPointF(400.0, 95.0)};
    const struct
    {
        const char* name;
        QVariant value;
        bool polygon;
    } rows[] = {
        {"numbers", numbers, false},
        {"places among others", junk + QVariantList{QPointF(20, 10), QPointF(21, 10), QPointF(21, 11)} + junk,
         false},
        {"polygon", QVariant(), true},
        {"polygon before value", numbers, true},
    };
    unsigned drawn = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const osg::ref_ptr<AxUserOperation> draw = Make(DrawGeometry);
        draw->setUserValue(row.value);
        if (row.polygon)
            draw->setUserPolygon(*Square(30.0, 10.0, 0.05));
        Run(draw);
        osg::Node* group = findNode(viewer->GetDrawNodeGroup(), "Operation_GeomLoad");
        ASSERT_TRUE(dynamic_cast<osgEarth::DrapeableNode*>(group));
        ASSERT_EQ(group->asGroup()->getNumChildren(), ++drawn);
        osg::Node* shape = group->asGroup()->getChild(drawn - 1);
        EXPECT_EQ(ColorBelow(*shape), osg::Vec4(0.0f, 1.0f, 0.0f, 1.0f));
        const osg::BoundingSphere bound = shape->getBound();
        const osg::Vec3d middle = row.polygon ? World(30.0, 10.0) : World(20.5, 10.5);
        EXPECT_LT((osg::Vec3d(bound.center()) - middle).length(), 0.2 * bound.radius());
    }
    const osg::ref_ptr<AxUserOperation> nothing = Make(DrawGeometry);
    nothing->setUserValue(junk);
    Run(nothing);
    EXPECT_EQ(findNode(viewer->GetDrawNodeGroup(), "Operation_GeomLoad")->asGroup()->getNumChildren(), drawn);
}

TEST_F(UserOperation, LightsANodeOfTheMapOnceAndNoMore)
{
    osg::ref_ptr<osg::Group> lit = new osg::Group;
    lit->setName("lit node");
    viewer->getMapNode()->addChild(lit);
    const auto program = [&lit] {
        const osg::StateSet* state = lit->getStateSet();
        return state ? dynamic_cast<const osg::Program*>(state->getAttribute(osg::StateAttribute::PROGRAM))
                     : nullptr;
    };

    Run(ApplyLighting, QStringLiteral("lit node"));
    const osg::Program* first = program();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->getNumShaders(), 2u);
    const auto* drape =
        dynamic_cast<CAxDrapeableNode*>(findNode(viewer->GetDrawNodeGroup(), "DrapeableNode"));
    ASSERT_TRUE(drape);
    EXPECT_EQ(drape->getStateSet(), lit->getStateSet());

    const unsigned nodes = CountNodes();
    Run(ApplyLighting, QStringLiteral("lit node"));
    for (const int kind : {2, 4, 5, 6, 7, 8, 0, 99})
        Run(kind, QStringLiteral("no such node")); // lets go of its waiter all the same
    EXPECT_EQ(program(), first);
    EXPECT_EQ(CountNodes(), nodes);

    Run(RemoveLighting, QStringLiteral("lit node"));
    EXPECT_FALSE(program());
    viewer->getMapNode()->removeChild(lit);
}
