#include "interaction/AxLabelProgram.h"

#include <osg/observer_ptr>

namespace {
const char vertexSource[] = R"(#version 330 compatibility
out vec2 axPlace;
out vec4 axInk;
void main()
{
    gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
    axPlace = gl_MultiTexCoord0.xy;
    axInk = gl_Color;
}
)";
// The rim is one pixel wide; its colour is what osgText defines for the text.
const char fragmentSource[] = R"(#version 330 compatibility
#pragma import_defines(BACKDROP_COLOR)
#ifndef BACKDROP_COLOR
#define BACKDROP_COLOR vec4(0.0, 0.0, 0.0, 0.0)
#endif
uniform sampler2D glyphTexture;
in vec2 axPlace;
in vec4 axInk;
float ink(ivec2 at)
{
    return texelFetch(glyphTexture, at, 0).a;
}
void main()
{
    ivec2 at = ivec2(axPlace * vec2(textureSize(glyphTexture, 0)));
    float body = ink(at);
    float rim = max(max(ink(at + ivec2(1, 1)), ink(at + ivec2(-1, 1))),
                    max(ink(at + ivec2(1, -1)), ink(at + ivec2(-1, -1))));
    float cover = max(body, rim * BACKDROP_COLOR.a);
    if (cover == 0.0)
        discard;
    gl_FragColor = vec4(mix(BACKDROP_COLOR.rgb, axInk.rgb, body), axInk.a * cover);
}
)";
} // namespace

osg::ref_ptr<osg::Program> AxLabelProgram()
{
    static osg::observer_ptr<osg::Program> shared;
    osg::ref_ptr<osg::Program> program;
    if (shared.lock(program))
        return program;
    program = new osg::Program;
    program->setName("AxLabel");
    program->addShader(new osg::Shader(osg::Shader::VERTEX, vertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, fragmentSource));
    shared = program;
    return program;
}
