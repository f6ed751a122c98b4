#version 330 compatibility
// Models of aircraft, shaded by the material of each of their parts.
uniform float vertexColors; // 1: the material's color is that of the vertex
uniform vec3 lightDirection; // towards the light, in the model's own axes
out vec4 axPaint;
out vec3 axNormal; // these in eye coordinates
out vec3 axPlace;
out vec3 axLight;

void main()
{
    axPaint = mix(vec4(1.0), gl_Color, vertexColors);
    axNormal = gl_NormalMatrix * gl_Normal;
    axLight = gl_NormalMatrix * lightDirection;
    axPlace = (gl_ModelViewMatrix * gl_Vertex).xyz;
    gl_Position = ftransform();
}
