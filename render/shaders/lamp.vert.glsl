// Lamps as points of light. How bright one looks follows how far its light at the eye lies above what is just seen.
#include "common.glsl"
uniform vec3 u_sight;  // 1 / illuminance that is just seen (1/lux), focal length in pixels, pixels a 720th of height
flat out vec3 v_color;
flat out vec4 v_shape;  // half the sprite, radius of the core (pixels), brightness of core and halo
flat out vec3 v_tilt;   // depth a pixel to the right and up, and at most

const float BEAM_EDGE = 0.6;   // how far a spot fades outside its cone, over 1 - its cosine
const float SPILL = 0.0003;    // what it gives to all sides
const float TILT_MOST = 0.08;  // of the distance

// The plane that the lamp stands on must not cut the sprite: over its lower half the depth follows that plane, a little
// way toward the eye.
vec2 tiltOf(vec3 position) {
    float below = dot(position, u_up);
    return u_up.xy * (below < 0.0 ? gl_ProjectionMatrix[3][2] / (u_sight.y * min(below, -1.0)) : 0.0);
}

void main() {
    vec3 position = (gl_ModelViewMatrix * vec4(gl_Vertex.xyz, 1.0)).xyz;
    float size = gl_Vertex.w;
    float cone = gl_MultiTexCoord0.w;
    float distance = max(length(position), 0.1);
    float toward = -dot(gl_NormalMatrix * gl_Normal, position) / distance;
    float beam = cone < -1.5 ? 1.0 : mix(SPILL, 1.0, smoothstep(cone - BEAM_EDGE * (1.0 - cone), cone, toward));
    float through = airTransmittance(position);
    float candela = max(gl_MultiTexCoord0.r, max(gl_MultiTexCoord0.g, gl_MultiTexCoord0.b));
    float lux = candela * beam * through / (distance * distance);
    float decades = 0.30103 * log2(1.0 + lux * u_sight.x);

    float glare = max(decades - 2.0, 0.0);
    float disc = 0.5 * size * u_sight.y / distance;
    float core = max(disc, 0.9) + 0.25 * min(glare, 3.0) * u_sight.z;
    float halo = glare * (1.0 + glare) * (1.0 + 2.0 * (1.0 - through)) * u_sight.z;
    v_shape = vec4(1.3 * core + 1.0 + halo, core, 1.0 - exp2(-1.6 * decades), 0.2 * min(glare, 4.0));
    v_color = gl_MultiTexCoord0.rgb / max(candela, 1e-6);
    v_tilt = vec3(tiltOf(position), TILT_MOST * gl_ProjectionMatrix[3][2] / distance);
    gl_PointSize = 2.0 * v_shape.x;
    // Out of a fixture, toward the eye.
    gl_Position = gl_ProjectionMatrix * vec4(position * max(1.0 - (size + 0.1) / distance, 0.5), 1.0);
    if (decades < 0.01) gl_Position = vec4(0.0, 0.0, -2.0, 1.0);
}
