// Imagery, and near the eye what it does not show: blades, stones, ripples.
#include "terrain_light.glsl"
uniform sampler2D u_imagery;
uniform sampler2D u_detail;
in vec3 v_position;
in vec3 v_normal;
in vec3 v_ground;
in vec2 v_place;
in vec4 v_air;

const mat2 TURNED = mat2(0.6, 0.8, -0.8, 0.6) * (1.0 / 118.0);

vec3 baseColor() {
#ifdef IMAGERY
    return texture(u_imagery, v_ground.xy).rgb;
#else
    const vec3 SAND = vec3(0.56, 0.48, 0.34), GRASS = vec3(0.075, 0.115, 0.035), FOREST = vec3(0.03, 0.055, 0.02);
    return mix(SAND, mix(GRASS, FOREST, smoothstep(30.0, 200.0, v_ground.z)), smoothstep(1.5, 4.0, v_ground.z));
#endif
}

void main() {
    vec3 base = baseColor();
    vec3 normal = v_normal;
    float green = clamp((base.g - max(base.r, base.b)) / max(base.g, 0.01) * 5.0, 0.0, 1.0);
#ifdef GROUND_WEATHER
    base = mix(base, base * vec3(2.1, 1.0, 0.45), u_ground.z * green);
#endif
#ifdef NEAR
    vec4 fine = vec4(0.5);
    vec4 wide = vec4(0.5);
    float steep = smoothstep(0.80, 0.62, dot(normal, u_up));
    float lightness = mix(fine.a, fine.b, green) * mix(wide.a, wide.b, green) * 4.0;
    base = mix(base, vec3(0.16, 0.135, 0.11), steep * 0.7) * mix(1.0, lightness, 0.8);

    // Wet sand where the waves run up.
    base *= 1.0 - 0.45 * smoothstep(1.1, 0.3, v_ground.z + wide.b * 0.6) * (1.0 - green);
    vec3 radiance = groundRadiance(base, normal, v_position, wide.b);
#else
    vec3 radiance = groundRadiance(base, normal, v_position, 0.5);
#endif
    gl_FragColor = vec4(display(radiance * v_air.a + v_air.rgb), 1.0);
}
