// Light of the ground and of what is laid on it.
#include "common.glsl"
#include "shadow.glsl"
#include "surface.glsl"
#pragma import_defines(GROUND_WEATHER, IMAGERY)
uniform vec3 u_ground;  // wetness, snow and autumn of the ground, 0 to 1

// Radiance of a matt ground to the eye. `patches` (0 to 1, mean 0.5) tells where water stands and snow lies first.
vec3 groundRadiance(vec3 base, vec3 normal, vec3 position, float patches) {
    float lit = 1.0;
#ifdef GROUND_WEATHER
    float upward = dot(normal, u_up);
    float wet = u_ground.x;
    float roughness = mix(0.95, mix(0.62, 0.10, smoothstep(0.5, 0.75, patches)), wet * smoothstep(0.9, 1.0, upward));
    base *= 1.0 - 0.5 * wet;
    float snow = smoothstep(0.45, 0.75, u_ground.y * 1.3 + patches * 0.6 - 0.3) * smoothstep(0.6, 0.85, upward);
    base = mix(base, vec3(0.86, 0.88, 0.92), snow);
    return surfaceRadiance(Surface(base, 0.0, mix(roughness, 0.95, snow)), normal, position, lit);
#else
    vec3 sun = u_light_color * (max(dot(normal, u_light_direction), 0.0) * lit);
    return base * INV_PI * (sun + ambientLight(normal) + lampLight(normal, position));
#endif
}
