// An image in the ground's own triangles, moved a little toward the eye so that it passes the depth test.
#include "common.glsl"
uniform float u_pixel;  // angle of a pixel, radians
uniform float u_rank;   // order of the decals: a higher rank is drawn over a lower one
out vec3 v_position;    // in the eye's frame
out vec3 v_normal;
out vec4 v_ground;  // image coordinates, metres east and north
out vec3 v_haze;    // radiance added by the air
out float v_passed; // transmittance of the air

// Far away the ground may be drawn from coarser triangles, some pixels off. Near the eye there are only rounding
// errors.
float nearer(vec3 position, vec3 normal) {
    float distance = length(position);
    float sine = max(abs(dot(position, normal)) / distance, 0.002);
    return 2e-4 + 5e-5 * u_rank + min(2.0 * u_pixel / sine, 0.15) * smoothstep(200.0, 600.0, distance);
}

void main() {
    vec4 position = gl_ModelViewMatrix * gl_Vertex;
    v_position = position.xyz;
    v_normal = normalize(gl_NormalMatrix * gl_Normal);
    v_ground = gl_MultiTexCoord0;
    v_passed = airTransmittance(position.xyz);
    v_haze = hazeRadiance(position.xyz) * (1.0 - v_passed);
    gl_Position = gl_ProjectionMatrix * position;
    gl_Position.z *= 1.0 + nearer(position.xyz, v_normal);
}
