#version 330 compatibility
uniform vec4 ambientColor;
uniform vec4 diffuseColor;
uniform vec4 specularColor;
uniform float uShininess;
uniform float linkLost; // 1: drawn in grey
in vec4 axPaint;
in vec3 axNormal;
in vec3 axPlace;
in vec3 axLight;

const float fromEye = 0.25; // of the light, so that no side is black
const float highlight = 0.25;

void main()
{
    vec3 toEye = normalize(-axPlace);
    vec3 across = normalize(axNormal);
    if (dot(across, toEye) < 0.0)
        across = -across;
    vec3 light = length(axLight) > 0.0 ? normalize(axLight) : toEye;
    float lit = (1.0 - fromEye) * max(dot(across, light), 0.0) + fromEye * dot(across, toEye);
    float shine = pow(max(dot(across, normalize(light + toEye)), 0.0), max(uShininess, 1.0));
    vec3 color = axPaint.rgb * (ambientColor.rgb + diffuseColor.rgb * (0.62 * lit)) +
                 specularColor.rgb * (highlight * shine);
    vec3 grey = vec3(0.3 + 0.4 * dot(color, vec3(0.3, 0.59, 0.11)));
    gl_FragColor = vec4(mix(min(color, 1.0), grey, linkLost), axPaint.a * diffuseColor.a);
}
