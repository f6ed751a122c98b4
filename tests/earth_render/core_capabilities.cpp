#include <osgEarth/Registry>

#include <gtest/gtest.h>
#include <thread>

using namespace osgEarth;

TEST(Capabilities, AreReadFromTheDriverOnceAndTheSameForEveryThread)
{
    const Capabilities* other = nullptr;
    std::thread([&] { other = &Registry::capabilities(); }).join();
    const Capabilities& caps = Registry::capabilities();
    EXPECT_EQ(&caps, other);
    EXPECT_GE(caps.getGLSLVersionInt(), 330u);
    EXPECT_TRUE(caps.supportsGLSL(3.3f));
    EXPECT_TRUE(caps.supportsGLSL(330u));
    EXPECT_FALSE(caps.supportsGLSL(caps.getGLSLVersion() + 0.1f));
    EXPECT_GE(caps.getMaxTextureSize(), 2048);
    EXPECT_FALSE(caps.getRenderer().empty());
}
