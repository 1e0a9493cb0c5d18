#version 440
// The photo filters, drawn on the GPU over whatever the slide layer shows (still, animation
// or video). Same colour formulas as ImageFilterEffect, which filters on the CPU when the
// scene is drawn in software.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    // 1 black and white, 2 sepia, 3 vintage; anything else leaves the colours alone.
    int mode;
};
layout(binding = 1) uniform sampler2D source;

void main()
{
    vec4 pixel = texture(source, qt_TexCoord0);
    // The formulas work on straight colour.
    vec3 colour = pixel.a > 0.0 ? pixel.rgb / pixel.a : vec3(0.0);
    float luma = dot(colour, vec3(0.2126, 0.7152, 0.0722));
    if (mode == 1) {
        colour = vec3(luma);
    } else if (mode == 2) {
        colour = min(vec3(dot(colour, vec3(402.0, 787.0, 194.0)), dot(colour, vec3(357.0, 702.0, 172.0)),
                         dot(colour, vec3(279.0, 547.0, 134.0)))
                / 1024.0,
            vec3(1.0));
    } else if (mode == 3) {
        // Saturation cut to 60 %, then a warm, faded range: lifted blacks, dimmed whites.
        vec3 faded = mix(vec3(luma), colour, 0.6);
        vec3 low = vec3(34.0, 26.0, 18.0) / 255.0;
        vec3 high = vec3(245.0, 235.0, 215.0) / 255.0;
        colour = low + faded * (high - low);
    }
    fragColor = vec4(colour * pixel.a, pixel.a) * qt_Opacity;
}
