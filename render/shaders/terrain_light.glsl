// Light on the ground and on decals. GROUND_WEATHER: wet, snowy or in autumn; GROUND_WET: wet.
#include "common.glsl"
#include "shadow.glsl"
#include "surface.glsl"
#pragma import_defines(GROUND_WEATHER, GROUND_WET, IMAGERY, LAMPS)
uniform vec3 u_ground;  // wetness, snow and autumn of the ground, 0 to 1

// Snow cover at a position. `patches` (0 to 1, mean 0.5): snow begins where it is high; `softness` grows as the patches
// blur, so that the mean cover is constant. Steep slopes have no snow.
float snowThere(float amount, float patches, float softness, float upward) {
    float depth = amount * 1.7 - 1.1 + patches;
    return smoothstep(-softness, softness, depth) * smoothstep(0.74, 0.92, upward + 0.1 * (patches - 0.5));
}

// Ground below the snow darkens it a little.
vec3 snowy(vec3 base, float snow, float patches) {
    return mix(base, vec3(0.86, 0.88, 0.92) * (0.82 + 0.36 * patches), snow);
}

// Radiance of wet or snowy ground toward the eye; puddles use the same patches. `smoothness` (0 to 1): smoothness of
// the ground under a film of water.
vec3 weatheredRadiance(vec3 base, float snow, vec3 normal, vec3 position, float patches, float smoothness, float lit) {
#ifdef GROUND_WET
    float upward = dot(normal, u_up);
    float wet = u_ground.x * (1.0 - snow);
    float puddle = smoothstep(0.5, 0.72, patches) * smoothstep(0.9, 1.0, upward);
    float roughness = mix(0.95, mix(0.55, 0.12, puddle), wet * smoothness);
    base = snowy(base * (1.0 - 0.5 * wet), snow, patches);
    return surfaceRadiance(Surface(base, 0.0, roughness), normal, position, lit);
#else
    vec3 sun = u_light_color * (max(dot(normal, u_light_direction), 0.0) * lit);
    return snowy(base, snow, patches) * INV_PI * (sun + ambientLight(normal) + lampLight(normal, position));
#endif
}
