// The ground: imagery, NEAR the eye with clumps and stones, very near (CLOSE) with tufts and grains.
#include "terrain_light.glsl"
uniform sampler2D u_imagery;
uniform sampler2D u_detail;
in vec3 v_ground;
in vec3 v_sun;
in vec3 v_sky;
in vec3 v_haze;
#if defined(NEAR) || defined(GROUND_WEATHER)
in vec3 v_position;
in vec3 v_normal;
in vec2 v_place;

const mat2 TURNED = mat2(0.6, 0.8, -0.8, 0.6) * (1.0 / 83.0);
// Two patterns whose sum does not visibly repeat.
const mat2 DRIFTS = mat2(0.96, -0.28, 0.28, 0.96) * (1.0 / 610.0);
const mat2 FIELDS = mat2(0.28, 0.96, -0.96, 0.28) * (1.0 / 1730.0);
#endif
#ifdef NEAR
in float v_passed;
#endif

vec3 baseColor() {
#ifdef IMAGERY
    return reflectanceOf(texture(u_imagery, v_ground.xy).rgb);
#else
    const vec3 SAND = vec3(0.56, 0.48, 0.34), GRASS = vec3(0.075, 0.115, 0.035), FOREST = vec3(0.03, 0.055, 0.02);
    return mix(SAND, mix(GRASS, FOREST, smoothstep(30.0, 200.0, v_ground.z)), smoothstep(1.5, 4.0, v_ground.z));
#endif
}

void main() {
    vec3 base = baseColor();
    float patches = 0.5, fine = 0.0;
#if defined(NEAR) || defined(GROUND_WEATHER)
    float green = clamp((base.g - max(base.r, base.b)) / base.g * 5.0, 0.0, 1.0);
#endif
#ifdef NEAR
    // Each texture fades out before the first tiles without it.
    float distance = length(v_position);
#ifdef CLOSE
    vec2 detail = texture(u_detail, v_place * (1.0 / 19.0)).rg;
    float strength = clamp(4.0 - distance * (4.0 / 250.0), 0.0, 1.5);
#else
    vec2 detail = texture(u_detail, TURNED * v_place).rg;
    float strength = clamp(min(3.0 - distance * (3.0 / 900.0), distance * (1.0 / 50.0) - 4.0), 0.0, 1.5);
#endif
    float lightness = 1.0 + (mix(detail.g, detail.r, green) - 0.5) * strength;
    patches = detail.r;
    fine = (patches - 0.5) * min(strength, 1.0);
    // Wet sand in the reach of the waves.
    float dry = smoothstep(0.3, 1.1, v_ground.z + 0.5 * patches);
    base *= lightness * (1.0 - 0.4 * (1.0 - dry) * (1.0 - green));
    float lit = lightThere(v_position);
#else
    float lit = 1.0;
#endif
#ifdef GROUND_WEATHER
    base = mix(base, base * vec3(2.3, 1.0, 0.4), u_ground.z * green);
    // Trees appear dark through snow; there is no snow in the reach of the waves.
    float woods = green * (1.0 - smoothstep(0.038, 0.063, dot(base, vec3(0.25, 0.5, 0.25))));
    float drifts = texture(u_detail, DRIFTS * v_place).r + texture(u_detail, FIELDS * v_place).r - 0.5;
    drifts = clamp(drifts + 0.7 * fine, 0.0, 1.0);
    float snow = snowThere(u_ground.y, drifts, 0.12 + 0.2 * smoothstep(500.0, 5000.0, length(v_position)),
                           dot(v_normal, u_up)) *
                 (1.0 - 0.45 * woods) * smoothstep(0.4, 1.4, v_ground.z);
#ifdef NEAR
    vec3 radiance = v_passed * weatheredRadiance(base, snow, normalize(v_normal), v_position, patches - 0.2 * green,
                                                 1.0 - 0.85 * green, lit);
#else
    base = snowy(base * (1.0 - 0.5 * u_ground.x), snow, drifts);
    vec3 radiance = base * (v_sun + v_sky);
#endif
#else
    vec3 radiance = base * (v_sun * lit + v_sky);
#if defined(NEAR) && defined(LAMPS)
    radiance += base * lampLight(normalize(v_normal), v_position) * (INV_PI * v_passed);
#endif
#endif
    gl_FragColor = vec4(display(radiance + v_haze), 1.0);
}
