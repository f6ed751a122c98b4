#include <osgEarth/Capabilities>
#include <osgEarth/StringUtils>

#include <osg/GL>
#include <osg/GraphicsContext>
#include <osg/Notify>

#include <algorithm>
#include <cmath>
#include <thread>

#ifndef GL_SHADING_LANGUAGE_VERSION
#define GL_SHADING_LANGUAGE_VERSION 0x8B8C
#endif
#ifndef GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS
#define GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS 0x8B4D
#endif

namespace osgEarth {
namespace {
std::string glString(GLenum name)
{
    const GLubyte* text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : std::string();
}

int glInteger(GLenum name)
{
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

// Silences osg's log while it is tried whether there is a display.
class QuietNotify
{
public:
    QuietNotify() : _before(osg::getNotifyLevel()) { osg::setNotifyLevel(osg::ALWAYS); }
    ~QuietNotify() { osg::setNotifyLevel(_before); }

private:
    osg::NotifySeverity _before;
};

osg::ref_ptr<osg::GraphicsContext> createOffscreen()
{
    if (!osg::GraphicsContext::getWindowingSystemInterface())
        return nullptr;
    osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
    traits->readDISPLAY();
    traits->setUndefinedScreenDetailsToDefaultScreen();
    traits->width = traits->height = 8;
    traits->pbuffer = true;
    traits->doubleBuffer = false;
    osg::ref_ptr<osg::GraphicsContext> context = osg::GraphicsContext::createGraphicsContext(traits.get());
    if (!context.valid()) {
        traits->pbuffer = false;
        context = osg::GraphicsContext::createGraphicsContext(traits.get());
    }
    return context;
}
} // namespace

Capabilities::Capabilities() : osg::Referenced(true)
{
    _numProcessors = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
}

bool Capabilities::supportsGLSL(float minimumVersion) const
{
    // Versions have two decimals; 3.3f is not exactly 330 hundredths.
    return _glslVersion > 0 && static_cast<long>(_glslVersion) >= std::lround(minimumVersion * 100.0f);
}

void Capabilities::probe()
{
    readCurrentContext();
    if (!_version.empty())
        return;
    const QuietNotify quiet;
    const osg::ref_ptr<osg::GraphicsContext> context = createOffscreen();
    if (!context.valid() || !context->realize())
        return;
    if (context->makeCurrent()) {
        readCurrentContext();
        context->releaseContext();
    }
    context->close();
}

void Capabilities::readCurrentContext()
{
    // Without a current context glGetString gives null, on every platform.
    _version = glString(GL_VERSION);
    if (_version.empty())
        return;
    _vendor = glString(GL_VENDOR);
    _renderer = glString(GL_RENDERER);
    const double glsl = as<double>(glString(GL_SHADING_LANGUAGE_VERSION), 0.0);
    _glslVersion = static_cast<unsigned>(std::lround(glsl * 100.0));
    _maxTextureSize = glInteger(GL_MAX_TEXTURE_SIZE);
    _maxGPUTextureUnits = glInteger(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS);
    _maxLights = glInteger(GL_MAX_LIGHTS);
    _depthBits = glInteger(GL_DEPTH_BITS);
    // A core profile does not know the old queries above and sets error flags, which are cleared here.
    while (glGetError() != GL_NO_ERROR) {
    }
}
} // namespace osgEarth
