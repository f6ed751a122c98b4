#include "viewer/overlay/AxHeadUpText.h"
#include "scene/base/AxFonts.h"

namespace {
constexpr float subtitlesSize = 35.0f;
constexpr float promptSize = 18.0f;
constexpr float margin = 12.0f;
// The coordinate read-out covers the lower right corner up to here.
constexpr float promptBottom = 60.0f;

osg::ref_ptr<osgText::Text> MakeText(const char* name, float size, osgText::TextBase::AlignmentType alignment)
{
    osg::ref_ptr<osgText::Text> text = new osgText::Text;
    text->setName(name);
    text->setFont(AxSceneFont());
    text->setCharacterSize(size);
    text->setAlignment(alignment);
    text->setColor(osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f));
    // Dark rims keep the letters readable over snow and clouds.
    text->setBackdropType(osgText::Text::OUTLINE);
    text->setBackdropColor(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
    text->setDataVariance(osg::Object::DYNAMIC);
    return text;
}

void SetTextOf(osgText::Text* text, const QString& value)
{
    text->setText(value.toStdString(), osgText::String::ENCODING_UTF8);
}
} // namespace

AxHeadUpText& AxHeadUpText::Instance()
{
    static AxHeadUpText instance;
    return instance;
}

osg::Camera* AxHeadUpText::GetCamera()
{
    if (!camera)
        Make();
    return camera;
}

void AxHeadUpText::Release()
{
    if (!camera || camera->getNumParents() > 0)
        return;
    camera = nullptr;
    subtitles = nullptr;
    prompt = nullptr;
}

void AxHeadUpText::Make()
{
    camera = new osg::Camera;
    subtitles = MakeText("Subtitles", subtitlesSize, osgText::TextBase::LEFT_TOP);
    prompt = MakeText("Prompt", promptSize, osgText::TextBase::RIGHT_BOTTOM);
    camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    camera->setViewMatrix(osg::Matrixd::identity());
    camera->setRenderOrder(osg::Camera::POST_RENDER);
    // Nothing here looks at depth, and clearing a full window of it takes its time.
    camera->setClearMask(0);
    camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
    camera->setAllowEventFocus(false);
    osg::StateSet* state = camera->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    state->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
    camera->addChild(subtitles);
    camera->addChild(prompt);
    SetTextOf(subtitles, subtitlesText);
    SetTextOf(prompt, promptText);
    Arrange();
}

void AxHeadUpText::Arrange()
{
    const auto w = static_cast<float>(size.width());
    const auto h = static_cast<float>(size.height());
    camera->setProjectionMatrixAsOrtho2D(0.0, w, 0.0, h);
    subtitles->setPosition(osg::Vec3(margin, h - margin, 0.0f));
    prompt->setPosition(osg::Vec3(w - margin, promptBottom, 0.0f));
}

void AxHeadUpText::SetSize(int width, int height)
{
    size = QSize(qMax(1, width), qMax(1, height));
    if (camera)
        Arrange();
}

void AxHeadUpText::SetSubtitles(const QString& text)
{
    subtitlesText = text;
    if (camera)
        SetTextOf(subtitles, text);
}

void AxHeadUpText::SetPrompt(const QString& text)
{
    promptText = text;
    if (camera)
        SetTextOf(prompt, text);
}
