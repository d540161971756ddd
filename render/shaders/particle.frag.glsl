// A particle: an image or a soft disc, blended or additive.
#ifdef IMAGE
#include "common.glsl"
uniform sampler2D u_sprite;
in vec4 v_light;
in vec3 v_air;
#else
in vec4 v_color;
#endif
in vec3 v_uv_gain;

// A soft disc with lobes of threefold and fourfold symmetry.
float puff(vec2 at) {
    vec2 square = at * at;
    float lobes = at.x * (square.x - 3.0 * square.y) - 2.0 * at.x * at.y * (square.x - square.y);
    float body = max(1.0 - 1.3 * (square.x + square.y) + 0.3 * lobes, 0.0);
    return body * min(1.6 * body, 1.0);
}

void main() {
#ifdef IMAGE
    vec4 sprite = texture(u_sprite, v_uv_gain.xy * 0.5 + 0.5);
    sprite = vec4(reflectanceOf(sprite.rgb), min(sprite.a * v_uv_gain.z, 1.0));
    vec4 color = vec4(display(v_light.rgb * sprite.rgb + v_air), sprite.a * v_light.a);
#else
    vec4 color = vec4(v_color.rgb, min(puff(v_uv_gain.xy) * v_uv_gain.z, 1.0) * v_color.a);
#endif
#ifdef ADDITIVE
    color = vec4(color.rgb * color.a, 0.0);
#endif
    gl_FragColor = color;
}
