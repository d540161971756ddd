// An image that lies in the ground's own triangles, brought a little nearer so that it wins over them.
#include "common.glsl"
uniform float u_pixel;  // angle of one, radians
uniform float u_rank;   // among the decals: the higher lies on top
out vec3 v_position;    // in the eye's frame
out vec3 v_normal;
out vec4 v_ground;  // place in the image, metres east and north
out vec3 v_haze;    // what the air adds
out float v_passed; // share of the radiance that reaches the eye

// Far away coarser triangles stand for the ground, some pixels off. Near by only rounding has to be beaten.
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
