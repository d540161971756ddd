// Leaves of a tree.
#include "common.glsl"
uniform sampler2D u_tree;  // lightness, opacity
in vec2 v_uv;
in vec3 v_light;
in vec3 v_haze;

void main() {
    vec2 leaf = texture(u_tree, v_uv).rg;
    if (leaf.g < 0.4) discard;
    gl_FragColor = vec4(display(v_light * (leaf.r * 2.0 / leaf.g) + v_haze), 1.0);
}
