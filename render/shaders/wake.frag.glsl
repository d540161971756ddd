// Foam of ships: white bubbles on the surface, and pale aerated water below them.
uniform sampler2D u_sheet;
uniform sampler2D u_foam;
in vec3 v_place;
in vec2 v_pattern;
in vec3 v_white;
in vec3 v_aerated;

const float LEVEL = 2.0;  // constant: selecting it per pixel doubles the cost on a CPU

void main() {
    float thick = textureLod(u_sheet, v_place.xy, 0.0).r;
    float pattern = mix(0.5, textureLod(u_foam, v_pattern, LEVEL).r, v_place.z);
    float foam = clamp(1.4 * (pattern + thick) - 0.9, 0.0, 1.0) * min(2.0 * thick, 1.0);
    float water = min(1.6 * thick, 0.75) * (1.0 - foam);
    float alpha = foam + water;
    gl_FragColor = vec4(mix(v_aerated, v_white, foam / (alpha + 0.001)), alpha);
}
