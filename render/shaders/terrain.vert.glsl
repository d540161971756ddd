// The ground. Light and air vary little over a tile's cells: they are computed per vertex.
#include "common.glsl"
#pragma import_defines(GROUND_WEATHER)
layout(location = 6) in vec3 a_ground;  // imagery coordinates, height above the ellipsoid
out vec3 v_ground;
out vec3 v_sun;   // radiance at the eye of white ground lit by the sun, and lit by the sky
out vec3 v_sky;
out vec3 v_haze;  // radiance added by the air
#if defined(NEAR) || defined(GROUND_WEATHER)
out vec3 v_position;  // in the eye's frame
out vec3 v_normal;
#endif
#if defined(NEAR) || defined(GROUND_WEATHER)
uniform vec2 u_extent;  // size of the imagery, metres
out vec2 v_place;       // metres east and north
#endif
#ifdef NEAR
out float v_passed;  // transmittance of the air
#endif

void main() {
    vec4 position = gl_ModelViewMatrix * gl_Vertex;
    vec3 normal = normalize(gl_NormalMatrix * gl_Normal);
    float passed = airTransmittance(position.xyz);
    v_ground = a_ground;
    v_sun = u_light_color * (max(dot(normal, u_light_direction), 0.0) * INV_PI * passed);
    v_sky = ambientLight(normal) * (INV_PI * passed);
    v_haze = hazeRadiance(position.xyz) * (1.0 - passed);
#if defined(NEAR) || defined(GROUND_WEATHER)
    v_position = position.xyz;
    v_normal = normal;
#endif
#if defined(NEAR) || defined(GROUND_WEATHER)
    v_place = a_ground.xy * u_extent;
#endif
#ifdef NEAR
    v_passed = passed;
#endif
    gl_Position = gl_ProjectionMatrix * position;
}
