// Imagery, and NEAR the eye what it does not show: clumps and stones; right before it (CLOSE) tufts and grains.
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
#endif
#ifdef NEAR
in vec2 v_place;
in float v_passed;

const mat2 TURNED = mat2(0.6, 0.8, -0.8, 0.6) * (1.0 / 83.0);
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
    float patches = 0.5;
#if defined(NEAR) || defined(GROUND_WEATHER)
    float green = clamp((base.g - max(base.r, base.b)) / base.g * 5.0, 0.0, 1.0);
#endif
#ifdef NEAR
    // Each texture fades out before the tiles without it begin.
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
    // Wet sand where the waves run up.
    base *= lightness * (1.0 - 0.4 * smoothstep(1.1, 0.3, v_ground.z + 0.5 * patches) * (1.0 - green));
    float lit = lightThere(v_position);
#else
    float lit = 1.0;
#endif
#ifdef GROUND_WEATHER
    base = mix(base, base * vec3(2.3, 1.0, 0.4), u_ground.z * green);
    float snow = snowThere(u_ground.y, patches, dot(v_normal, u_up));
#ifdef NEAR
    vec3 radiance = v_passed * weatheredRadiance(base, snow, normalize(v_normal), v_position, patches - 0.2 * green,
                                                 1.0 - 0.85 * green, lit);
#else
    base = mix(base * (1.0 - 0.5 * u_ground.x), vec3(0.86, 0.88, 0.92), snow);
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
