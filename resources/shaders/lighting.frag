#version 330 compatibility
// bBlend: 1 mixes texture and light, 0 shows the texture as it is.
uniform sampler2D axPicture;
uniform int bBlend;
in vec4 axColor;
in vec2 axTexture;
in vec3 axNormal;
in vec3 axPlace;

const float ambient = 0.35;

void main()
{
    // A texture unit without a picture reads as black and opaque; then the colour alone counts.
    vec4 picture = texture(axPicture, axTexture);
    vec4 base = textureSize(axPicture, 0).x > 1 ? picture * axColor : axColor;
    // Without normals the faces themselves tell how they lie.
    vec3 across = length(axNormal) > 0.5 ? normalize(axNormal) : normalize(cross(dFdx(axPlace), dFdy(axPlace)));
    float light = ambient + (1.0 - ambient) * abs(dot(across, normalize(axPlace)));
    gl_FragColor = vec4(bBlend != 0 ? base.rgb * light : base.rgb, base.a);
}
