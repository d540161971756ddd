// Light of the ground and of what is laid on it. GROUND_WEATHER: wet, snowy or in autumn; GROUND_WET: wet.
#include "common.glsl"
#include "shadow.glsl"
#include "surface.glsl"
#pragma import_defines(GROUND_WEATHER, GROUND_WET, IMAGERY, LAMPS)
uniform vec3 u_ground;  // wetness, snow and autumn of the ground, 0 to 1

// How far snow covers a place. `patches` (0 to 1, mean 0.5) tells where it lies first; `softness` grows as they blur, so
// that the mean stays. It slides off slopes.
float snowThere(float amount, float patches, float softness, float upward) {
    float depth = amount * 1.7 - 1.1 + patches;
    return smoothstep(-softness, softness, depth) * smoothstep(0.74, 0.92, upward + 0.1 * (patches - 0.5));
}

// What lies under the snow darkens it a little.
vec3 snowy(vec3 base, float snow, float patches) {
    return mix(base, vec3(0.86, 0.88, 0.92) * (0.82 + 0.36 * patches), snow);
}

// Radiance of a wet or snowy ground to the eye; water stands in the same patches. `smoothness` (0 to 1): how far a film
// of water makes the ground shine.
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
