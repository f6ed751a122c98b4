// The label beside a route: which button it tells, and what happens to it in the middle.
#include "ProtocolFixture.h"

#include "mission/routes/CAxTaskLable.h"

#include <osg/Geode>
#include <osg/Texture>

namespace {
class TaskLabel : public ProtocolFixture
{
protected:
    static osgEarth::GeoPoint At(double lng, double lat)
    {
        return {viewer->getSRS(), lng, lat, 0.0, osgEarth::ALTMODE_ABSOLUTE};
    }
    std::unique_ptr<CAxTaskLable> Make(double lng)
    {
        auto label = std::make_unique<CAxTaskLable>(viewer, QStringLiteral("西坡 1"), At(lng, 14.0),
                                                    At(lng + 5.0, 10.0));
        label->AddToScene();
        QObject::connect(label.get(), &CAxTaskLable::PressedBtnSignal, viewer,
                         [this](int button, const QString& name) { told += qMakePair(button, name); });
        return label;
    }
    static osg::Drawable* Part(const CAxTaskLable& label, const std::string& name)
    {
        return dynamic_cast<osg::Drawable*>(findNode(label.GetRootNode(), name));
    }
    static QString Picture(const CAxTaskLable& label, int button)
    {
        const osg::StateSet* state = Part(label, "TaskLable-Mis" + std::to_string(button))->getStateSet();
        return QString::fromStdString(state->getTextureAttribute(0, osg::StateAttribute::TEXTURE)->getName())
            .right(7)
            .left(3);
    }
    static QString Pictures(const CAxTaskLable& label)
    {
        return Picture(label, 1) + ' ' + Picture(label, 2) + ' ' + Picture(label, 3);
    }

    QList<QPair<int, QString>> told;
};
} // namespace

TEST_F(TaskLabel, TellsAButtonClickedWithTheMouseOnceAndShowsItPressed)
{
    const auto label = Make(14.0);
    const auto other = Make(28.0); // of the same name
    EXPECT_EQ(Pictures(*label), "hov nor nor");
    const osg::Vec2f place = WindowOf(14.0, 14.0) + osg::Vec2f(0.0f, 76.0f);
    Move(place.x(), place.y());
    EXPECT_EQ(Pictures(*label), "nor hov nor");
    Push(place.x(), place.y());
    EXPECT_EQ(Pictures(*label), "nor pre nor");
    Release(place.x(), place.y());
    EXPECT_EQ(told, (QList<QPair<int, QString>>{{2, QStringLiteral("西坡 1")}}));
    EXPECT_EQ(Pictures(*other), "hov nor nor");
}

TEST_F(TaskLabel, TakesItsPanelForTheThirdButtonAndMayGoWhileItTells)
{
    auto label = Make(14.0);
    const osg::ref_ptr<osg::Drawable> panel = Part(*label, "TaskLable-Panel");
    QObject::connect(label.get(), &CAxTaskLable::PressedBtnSignal, viewer, [&label] { label.reset(); });
    emit manipulator->mouseLeftBtnClickSignal(panel);
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.front().first, 3);
    EXPECT_FALSE(label);
    emit manipulator->mouseLeftBtnClickSignal(panel);
    EXPECT_EQ(told.size(), 1);
}

TEST_F(TaskLabel, TellsOnlyOfItsOwnDrawablesWhileItHasButtons)
{
    const auto label = Make(14.0);
    const auto other = Make(28.0); // of the same name
    const osg::ref_ptr<osg::Geode> namesake = new osg::Geode;
    namesake->setName(label->GetRootNode()->getName());
    const osg::ref_ptr<osg::Geode> stranger = new osg::Geode;
    for (osg::Geode* geode : {namesake.get(), stranger.get()})
        geode->addDrawable(new osg::Geometry);
    const struct
    {
        osg::Drawable* drawable;
        bool areButtonsShown;
        QList<int> told;
    } rows[] = {{Part(*label, "TaskLable-Mis1"), true, {1}}, {Part(*label, "TaskLable-Name"), true, {3}},
                {Part(*label, "TaskLable-Name"), false, {}}, {Part(*other, "TaskLable-Mis1"), true, {}},
                {namesake->getDrawable(0), true, {3}},       {stranger->getDrawable(0), true, {}}};
    other->disconnect();
    for (const auto& row : rows) {
        told.clear();
        label->SetImgVisible(row.areButtonsShown);
        emit manipulator->mouseLeftBtnClickSignal(row.drawable);
        QList<int> buttons;
        for (const auto& one : told)
            buttons += one.first;
        EXPECT_EQ(buttons, row.told) << row.drawable->getName() << &row - rows;
    }
}
