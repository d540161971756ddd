// Light of the ground and of what is laid on it.
#include "common.glsl"
#include "shadow.glsl"
#include "surface.glsl"
#pragma import_defines(GROUND_WEATHER, IMAGERY, LAMPS)
uniform vec3 u_ground;  // wetness, snow and autumn of the ground, 0 to 1

// How much of the snow lies at a place. `patches` (0 to 1, mean 0.5) tells where it lies first.
float snowThere(float amount, float patches, float upward) {
    return smoothstep(0.40, 0.75, amount * 1.3 + patches * 0.7 - 0.45) * smoothstep(0.6, 0.85, upward);
}

// Radiance of a wet or snowy ground to the eye; water stands in the same patches. `smoothness` (0 to 1): how far a film
// of water makes the ground shine.
vec3 weatheredRadiance(vec3 base, float snow, vec3 normal, vec3 position, float patches, float smoothness, float lit) {
    float upward = dot(normal, u_up);
    float wet = u_ground.x * (1.0 - snow);
    float puddle = smoothstep(0.5, 0.72, patches) * smoothstep(0.9, 1.0, upward);
    float roughness = mix(0.95, mix(0.55, 0.12, puddle), wet * smoothness);
    base = mix(base * (1.0 - 0.5 * wet), vec3(0.86, 0.88, 0.92), snow);
    return surfaceRadiance(Surface(base, 0.0, roughness), normal, position, lit);
}
