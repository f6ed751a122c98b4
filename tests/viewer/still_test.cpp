// Frames that are left out because nothing has changed: what counts as a change,
// and that nobody who looks at the window can tell.
#include "ViewerFixture.h"

#include "scene/shape/AxWorldGeometry.h"
#include "viewer/AxSceneWalk.h"
#include "viewer/AxStillRule.h"
#include "viewer/AxWaitRule.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osg/Switch>
#include <osg/Texture2D>
#include <osgEarthUtil/Sky>
#include <osgText/Text>

#include <QElapsedTimer>

#include <cmath>
#include <functional>
#include <vector>

namespace {
using Facts = AxStillRule::Facts;

// A rule that has settled on these facts.
AxStillRule Settled(const Facts& facts)
{
    AxStillRule rule;
    for (int frame = 0; frame <= AxStillRule::settlingFrames; ++frame)
        rule.Drawn(facts);
    return rule;
}

/// A scene of one thing of each kind, looked at without a window.
struct Scene
{
    Scene()
    {
        geometry->setVertexArray(new osg::Vec3Array(3));
        geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, 3));
        image->allocateImage(2, 2, 1, GL_RGBA, GL_UNSIGNED_BYTE);
        osg::StateSet* state = place->getOrCreateStateSet();
        state->addUniform(uniform);
        state->setAttributeAndModes(material);
        state->setTextureAttribute(0, new osg::Texture2D(image));
        place->addChild(geometry);
        place->addChild(text);
        choice->addChild(place);
        root->addChild(choice);
        root->addChild(sky);
        viewer->setSceneData(root);
    }
    std::size_t Fingerprint()
    {
        walk.Look(*viewer);
        return walk.Fingerprint();
    }

    osg::ref_ptr<osg::Group> root = new osg::Group;
    osg::ref_ptr<osg::Switch> choice = new osg::Switch;
    osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform;
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    osg::ref_ptr<osgText::Text> text = new osgText::Text;
    osg::ref_ptr<osg::Uniform> uniform = new osg::Uniform("u", 1.0f);
    osg::ref_ptr<osg::Material> material = new osg::Material;
    osg::ref_ptr<osg::Image> image = new osg::Image;
    osg::ref_ptr<osgEarth::Util::SkyNode> sky = osgEarth::Util::SkyNode::create(nullptr);
    osg::ref_ptr<osgViewer::Viewer> viewer = new osgViewer::Viewer;
    AxSceneWalk walk;
};

struct Edit
{
    const char* name;
    std::function<void(Scene&)> make;
};

// A drawable of a host's, of which nobody knows how it draws.
class HostDrawable : public osg::Geometry
{
};

class HostDraws : public osg::Drawable::DrawCallback
{
};

/// Counts how often the scene is drawn, and says of itself that it does not change.
class DrawCount : public osg::Group
{
public:
    DrawCount()
    {
        setCullingActive(false);
        setDataVariance(STATIC);
    }
    void traverse(osg::NodeVisitor& visitor) override
    {
        draws += visitor.getVisitorType() == osg::NodeVisitor::CULL_VISITOR;
    }
    int draws = 0;
};

class StillPicture : public ViewerFixture
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(WaitForPicture());
        Root()->asGroup()->addChild(count);
    }
    void TearDown() override
    {
        Root()->asGroup()->removeChild(count);
        viewer->SetStillPictureKept(true);
    }
    static unsigned FrameNumber() { return viewer->getOSGViewer()->getFrameStamp()->getFrameNumber(); }
    static void PassFrames(unsigned frames)
    {
        const unsigned first = FrameNumber();
        EXPECT_TRUE(waitFor([&] { return FrameNumber() >= first + frames; }));
    }
    // How many of the next frames are drawn.
    int DrawnOf(unsigned frames)
    {
        const int before = count->draws;
        PassFrames(frames);
        return count->draws - before;
    }
    bool WaitUntilStill()
    {
        return waitFor([this] { return DrawnOf(5) == 0; });
    }

    osg::ref_ptr<DrawCount> count = new DrawCount;
};
} // namespace

TEST(StillRule, LeavesOutOnlyWhatWasProvenToStay)
{
    Facts same;
    same.fingerprint = 7;
    const AxStillRule settled = Settled(same);
    EXPECT_FALSE(settled.MustDraw(same));

    const auto changed = [&same](const std::function<void(Facts&)>& change) {
        Facts facts = same;
        change(facts);
        return facts;
    };
    EXPECT_TRUE(settled.MustDraw(changed([](Facts& f) { f.fingerprint = 8; })));
    EXPECT_TRUE(settled.MustDraw(changed([](Facts& f) { f.mayChange = true; })));
    EXPECT_TRUE(settled.MustDraw(changed([](Facts& f) { f.isLoading = true; })));
    EXPECT_TRUE(settled.MustDraw(changed([](Facts& f) { f.isAsked = true; })));
    EXPECT_TRUE(settled.MustDraw(changed([](Facts& f) { f.seconds = AxStillRule::oldest; })));
    EXPECT_TRUE(settled.MustDraw(changed([](Facts& f) { f.seconds = -0.1; })));
    EXPECT_TRUE(settled.MustDraw(changed([](Facts& f) { f.seconds = std::nan(""); })));

    // Whatever came between, it has to settle anew, except after a mere request.
    AxStillRule disturbed = settled;
    disturbed.Drawn(changed([](Facts& f) { f.fingerprint = 8; }));
    disturbed.Drawn(same);
    EXPECT_TRUE(disturbed.MustDraw(same));
    AxStillRule asked = settled;
    asked.Drawn(changed([](Facts& f) { f.isAsked = true; }));
    EXPECT_FALSE(asked.MustDraw(same));
    AxStillRule off = settled;
    off.SetSaving(false);
    EXPECT_TRUE(off.MustDraw(same));
}

TEST(WaitRule, LeavesOutFramesOfAViewThatRestsWhileTilesAreMade)
{
    struct Case
    {
        const char* name;
        bool waits;
        std::function<void(AxWaitFacts&)> change;
    };
    const std::vector<Case> cases{
        {"a tile is made", true, [](AxWaitFacts&) {}},
        {"one is shown next, no other made", false, [](AxWaitFacts& f) { f.made = 1; }},
        {"one is shown next, others made", true, [](AxWaitFacts& f) { f.made = 1, f.wanted = 3; }},
        {"nothing to make", false, [](AxWaitFacts& f) { f.isUnderWay = false; }},
        {"the camera moves", false, [](AxWaitFacts& f) { f.isResting = false; }},
        {"after input", false, [](AxWaitFacts& f) { f.hadInput = true; }},
        {"on request", false, [](AxWaitFacts& f) { f.isAsked = true; }},
        {"nearly at the end of the wait", true, [](AxWaitFacts& f) { f.drawnAt = 9.926; }},
        {"waited long enough", false, [](AxWaitFacts& f) { f.drawnAt = 9.924; }},
        {"a tile of late", true, [](AxWaitFacts& f) { f.lastTileAt = 9.01; }},
        {"no tile for a second", false, [](AxWaitFacts& f) { f.lastTileAt = 8.99; }},
        {"a clock set back", false, [](AxWaitFacts& f) { f.now = 9.98; }},
        {"no clock", false, [](AxWaitFacts& f) { f.now = std::nan(""); }},
    };
    for (const Case& each : cases) {
        AxWaitFacts facts;
        facts.isResting = facts.isUnderWay = true;
        facts.now = 10.0;
        facts.drawnAt = facts.lastTileAt = 9.99;
        each.change(facts);
        EXPECT_EQ(AxMayWaitForTiles(facts), each.waits) << each.name;
    }
}

TEST(SceneWalk, SeesEveryEdit)
{
    const std::vector<Edit> edits{
        {"child", [](Scene& s) { s.root->addChild(new osg::Node); }},
        {"order", [](Scene& s) { s.root->addChild(s.root->getChild(0)), s.root->removeChild(0u, 1); }},
        {"mask", [](Scene& s) { s.place->setNodeMask(0); }},
        {"switch", [](Scene& s) { s.choice->setValue(0, false); }},
        {"place", [](Scene& s) { s.place->setMatrix(osg::Matrix::translate(0, 0, 1e-6)); }},
        {"uniform", [](Scene& s) { s.uniform->set(2.0f); }},
        {"attribute", [](Scene& s) { s.material->setAlpha(osg::Material::FRONT, 0.5f); }},
        {"mode", [](Scene& s) { s.place->getStateSet()->setMode(GL_BLEND, osg::StateAttribute::ON); }},
        {"picture", [](Scene& s) { s.image->dirty(); }},
        {"bin", [](Scene& s) { s.place->getStateSet()->setRenderBinDetails(3, "RenderBin"); }},
        {"array", [](Scene& s) { s.geometry->getVertexArray()->dirty(); }},
        {"primitives",
         [](Scene& s) { static_cast<osg::DrawArrays*>(s.geometry->getPrimitiveSet(0))->setCount(2); }},
        {"text", [](Scene& s) { s.text->setText("n"); }},
        {"colour", [](Scene& s) { s.text->setColor(osg::Vec4(1, 0, 0, 1)); }},
        {"time", [](Scene& s) { s.sky->setDateTime(osgEarth::DateTime(2020, 1, 1, 0.0)); }},
        {"sun", [](Scene& s) { s.sky->setSunVisible(false); }},
        {"camera", [](Scene& s) { s.viewer->getCamera()->setViewMatrix(osg::Matrix::rotate(1, 0, 0, 1)); }},
        {"background", [](Scene& s) { s.viewer->getCamera()->setClearColor(osg::Vec4(1, 1, 1, 1)); }},
    };
    for (const Edit& edit : edits) {
        Scene scene;
        const std::size_t before = scene.Fingerprint();
        EXPECT_EQ(scene.Fingerprint(), before) << edit.name;
        EXPECT_EQ(scene.walk.Changeable(), nullptr) << edit.name;
        edit.make(scene);
        const std::size_t after = scene.Fingerprint();
        EXPECT_NE(after, before) << edit.name;
        EXPECT_EQ(scene.Fingerprint(), after) << edit.name;
    }
}

TEST(SceneWalk, TrustsNothingThatItDoesNotKnow)
{
    const std::vector<Edit> edits{
        {"class", [](Scene& s) { s.place->addChild(new HostDrawable); }},
        {"dynamic", [](Scene& s) { s.place->setDataVariance(osg::Object::DYNAMIC); }},
        {"draw callback", [](Scene& s) { s.geometry->setDrawCallback(new HostDraws); }},
        {"cull callback", [](Scene& s) { s.place->setCullCallback(new osg::NodeCallback); }},
        {"camera",
         [](Scene& s) { s.viewer->getCamera()->setFinalDrawCallback(new osg::Camera::DrawCallback); }},
        {"arrays read each time",
         [](Scene& s) {
             s.geometry->setUseDisplayList(false);
             s.geometry->setUseVertexBufferObjects(false);
         }},
    };
    for (const Edit& edit : edits) {
        Scene scene;
        edit.make(scene);
        scene.Fingerprint();
        EXPECT_NE(scene.walk.Changeable(), nullptr) << edit.name;
    }
    Scene scene;
    osg::ref_ptr<HostDrawable> still = new HostDrawable;
    still->setDataVariance(osg::Object::STATIC);
    scene.place->addChild(still);
    scene.place->addChild(new AxWorldGeometry);
    scene.Fingerprint();
    EXPECT_EQ(scene.walk.Changeable(), nullptr);
}

TEST_F(StillPicture, IsNotDrawnAnewAndLooksTheSame)
{
    ASSERT_TRUE(WaitUntilStill());
    // At most one in two seconds, while the frames are counted on.
    QElapsedTimer clock;
    clock.start();
    const int drawn = DrawnOf(40);
    EXPECT_LE(drawn, 2 + clock.elapsed() / 2000);
    EXPECT_LT(drawn, 40);
    const QImage kept = viewer->GetCurrViewerImg();
    viewer->SetStillPictureKept(false);
    EXPECT_GE(DrawnOf(10), 10);
    EXPECT_EQ(viewer->GetCurrViewerImg(), kept);
}

TEST_F(StillPicture, IsDrawnAtOnceWhenSomethingChanges)
{
    ASSERT_TRUE(WaitUntilStill());
    const osg::ref_ptr<osg::Node> stranger = new osg::Node;
    const osgEarth::Viewpoint home = viewer->getManipulator()->getViewpoint();
    const std::vector<std::pair<const char*, std::function<void()>>> changes{
        {"request", [] { viewer->RequestRedraw(); }},
        {"scene", [&] { viewer->GetBoundGroup()->addChild(stranger); }},
        {"update operation",
         [&] {
             struct Removal : osg::Operation
             {
                 void operator()(osg::Object*) override { viewer->GetBoundGroup()->removeChildren(0, 1); }
             };
             viewer->getOSGViewer()->addUpdateOperation(new Removal);
         }},
        {"tile",
         [] {
             osg::Group* tile = findNode(Root(), "Tile 0/0/0")->asGroup();
             tile->setChild(0, osg::clone(tile->getChild(0), osg::CopyOp::SHALLOW_COPY));
         }},
        {"camera", [&] {
             osgEarth::Viewpoint nearer = home;
             nearer.range() = osgEarth::Distance(0.9 * home.getRange(), osgEarth::Units::METERS);
             viewer->getManipulator()->setViewpoint(nearer, 0.0);
         }}};
    for (const auto& [name, change] : changes) {
        const int before = count->draws;
        change();
        EXPECT_TRUE(waitFor([&] { return count->draws > before; }, 500)) << name;
    }
    viewer->getManipulator()->setViewpoint(home, 0.0);
    EXPECT_TRUE(WaitForPicture());
}
