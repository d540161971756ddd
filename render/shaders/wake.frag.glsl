// Foam of ships: white bubbles above, and pale water with air in it below them.
#include "common.glsl"
uniform sampler2D u_sheet;
uniform sampler2D u_foam;
in vec4 v_place;
in vec3 v_light;
in vec4 v_air;

const vec3 WHITE = vec3(0.62, 0.66, 0.68);
const vec3 AERATED = vec3(0.10, 0.22, 0.25);

void main() {
    float thick = texture(u_sheet, v_place.xy).r;
    // Threads of bubbles close by, rags of them from afar.
    float pattern = 0.55 * texture(u_foam, v_place.zw).r + 0.45 * texture(u_foam, v_place.zw * 0.143 + 0.37).r;
    float foam = smoothstep(0.75 - thick, 1.25 - thick, pattern) * min(2.0 * thick, 1.0);
    float water = min(1.6 * thick, 0.75);
    float alpha = 1.0 - (1.0 - foam) * (1.0 - water);
    vec3 albedo = mix(AERATED, WHITE, foam / max(alpha, 1e-3));
    gl_FragColor = vec4(display(albedo * v_light * (INV_PI * v_air.a) + v_air.rgb), alpha);
}
