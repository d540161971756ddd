// The ground. The air between it and the eye is taken a vertex.
#include "common.glsl"
layout(location = 6) in vec3 a_ground;  // place in the imagery, height above the ellipsoid
uniform vec2 u_extent;                  // of the imagery, metres
out vec3 v_position;                    // in the eye's frame
out vec3 v_normal;
out vec3 v_ground;
out vec2 v_place;  // metres east and north
out vec4 v_air;    // radiance added on the way, share of what passes

void main() {
    vec4 position = gl_ModelViewMatrix * gl_Vertex;
    v_position = position.xyz;
    v_normal = normalize(gl_NormalMatrix * gl_Normal);
    v_ground = a_ground;
    v_place = a_ground.xy * u_extent;
    float passed = airTransmittance(position.xyz);
    v_air = vec4(throughAir(vec3(0.0), position.xyz), passed);
    gl_Position = gl_ProjectionMatrix * position;
}
