#include "mission/aircraft/AxUavPanel.h"
#include "scene/base/AxFonts.h"

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Geometry>
#include <osg/LineWidth>

#include <cmath>

namespace {
// Pixels from where the aircraft is, to the right and up.
const osg::Vec3 corner(40.0f, 40.0f, 0.0f);
const osg::Vec3 across(130.0f, 0.0f, 0.0f);
const osg::Vec3 upwards(0.0f, 30.0f, 0.0f);
const osg::Vec3 textMiddle(105.0f, 55.0f, 0.0f);
constexpr float textSize = 13.0f;
constexpr float leaderWidth = 3.0f;
constexpr float textMargin = 3.0f / textSize; // of the box behind letters, in heights of a letter
const osg::Vec4 panelColor(0.2941177f, 0.2666667f, 0.3921569f, 0.9f);
const osg::Vec4 panelWhite(1.0f, 1.0f, 1.0f, 1.0f);
constexpr int panelBin = 40; // over models, routes, areas and the links of labels

osg::ref_ptr<osg::Geometry> Plain(GLenum mode, const std::vector<osg::Vec3>& points, const osg::Vec4& color)
{
    osg::ref_ptr<osg::Geometry> drawing = new osg::Geometry;
    drawing->setUseDisplayList(false);
    drawing->setUseVertexBufferObjects(true);
    drawing->setVertexArray(new osg::Vec3Array(static_cast<unsigned>(points.size()), points.data()));
    drawing->setColorArray(new osg::Vec4Array(1, &color), osg::Array::BIND_OVERALL);
    drawing->addPrimitiveSet(new osg::DrawArrays(mode, 0, static_cast<int>(points.size())));
    return drawing;
}
} // namespace

QString AxPanelNumber(double degrees)
{
    return (degrees < 0.0 ? QStringLiteral("-") : QStringLiteral(" ")) +
           QString::number(std::abs(degrees), 'f', 6).rightJustified(10, QLatin1Char(' '));
}

AxUavPanel::AxUavPanel() : root(new osg::AutoTransform), geode(new osg::Geode), letters(new osgText::Text)
{
    root->setName("UavPanel");
    root->setAutoRotateMode(osg::AutoTransform::ROTATE_TO_SCREEN);
    root->setAutoScaleToScreen(true);
    root->addChild(geode);
    geode->setCullingActive(false);

    const osg::ref_ptr<osg::Geometry> leader = Plain(GL_LINES, {osg::Vec3(), corner}, panelWhite);
    leader->getOrCreateStateSet()->setAttributeAndModes(new osg::LineWidth(leaderWidth));
    leader->getOrCreateStateSet()->setMode(GL_LINE_SMOOTH, osg::StateAttribute::ON);
    geode->addDrawable(leader);
    geode->addDrawable(Plain(GL_TRIANGLE_STRIP,
                             {corner, corner + across, corner + upwards, corner + across + upwards},
                             panelColor));

    letters->setFont(AxSceneFont());
    letters->setCharacterSize(textSize);
    letters->setFontResolution(static_cast<unsigned>(textSize), static_cast<unsigned>(textSize));
    letters->setAxisAlignment(osgText::Text::XY_PLANE);
    letters->setAlignment(osgText::Text::CENTER_CENTER);
    letters->setPosition(textMiddle);
    letters->setColor(panelWhite);
    // Where the letters need more than the panel has.
    letters->setDrawMode(osgText::Text::TEXT | osgText::Text::FILLEDBOUNDINGBOX);
    letters->setBoundingBoxColor(panelColor);
    letters->setBoundingBoxMargin(textMargin);
    letters->setDataVariance(osg::Object::DYNAMIC);
    geode->addDrawable(letters);
    ResetRenderSort();
}

void AxUavPanel::SetText(const QString& text)
{
    if (text == shown)
        return;
    shown = text;
    letters->setText(text.toStdWString().c_str());
}

void AxUavPanel::ResetRenderSort()
{
    osg::StateSet* state = root->getOrCreateStateSet();
    if (state->getBinNumber() == panelBin)
        return;
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
    state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
    state->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
    state->setAttributeAndModes(
        new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
    // In the order in which they were added.
    state->setRenderBinDetails(panelBin, "TraversalOrderBin");
}
