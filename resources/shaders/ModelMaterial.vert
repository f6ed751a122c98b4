#version 330 compatibility
// Models of aircraft, shaded by the material of each of their parts.
uniform vec3 lightDirection; // towards the light, in the model's own axes
out vec3 axNormal; // these in eye coordinates
out vec3 axPlace;
out vec3 axLight;

void main()
{
    axNormal = gl_NormalMatrix * gl_Normal;
    axLight = gl_NormalMatrix * lightDirection;
    axPlace = (gl_ModelViewMatrix * gl_Vertex).xyz;
    gl_Position = ftransform();
}
