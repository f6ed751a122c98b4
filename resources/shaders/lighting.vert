#version 330 compatibility
// Light from the eye's direction for models of model layers.
out vec4 axColor;
out vec2 axTexture;
out vec3 axNormal; // in eye coordinates
out vec3 axPlace;

void main()
{
    axColor = gl_Color;
    axTexture = (gl_TextureMatrix[0] * gl_MultiTexCoord0).st;
    axNormal = gl_NormalMatrix * gl_Normal;
    axPlace = (gl_ModelViewMatrix * gl_Vertex).xyz;
    gl_Position = ftransform();
}
