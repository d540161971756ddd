// Texts from the font's glyph textures.
#include "common.glsl"
uniform sampler2D u_glyphs;
in vec3 v_position;
in vec2 v_uv;
in vec4 v_color;

const float SELF_LIGHT = 0.3;  // emission of a letter in the dark, relative to the radiance displayed as white

void main() {
    float ink = texture(u_glyphs, v_uv).a * v_color.a;
    if (ink < 0.004) discard;
#ifdef ON_SCREEN
    gl_FragColor = vec4(v_color.rgb, min(1.4 * ink, 1.0));  // small letters are thin
#else
    vec3 light = (u_ambient_above + u_ambient_below + u_light_color) * (0.5 * INV_PI) + SELF_LIGHT / u_exposure;
    gl_FragColor = vec4(display(throughAir(v_color.rgb * light, v_position)), ink);
#endif
}
