// Lamps as points of light. Apparent brightness depends on the ratio of the illuminance at the eye to the threshold of
// visibility.
#include "common.glsl"
uniform vec3 u_sight;  // 1 / threshold illuminance (1/lux), focal length in pixels, pixels per 720th of the height
flat out vec3 v_color;
flat out vec4 v_shape;  // half size of the sprite, radius of the core (pixels), brightness of core and halo
flat out vec3 v_tilt;   // depth per pixel to the right and up, and its maximum

const float BEAM_EDGE = 0.6;   // width of a spot's fade outside its cone, relative to 1 - its cosine
const float SPILL = 0.0003;    // share of the intensity in all other directions
const float MAX_TILT = 0.08;  // relative to the distance

// The plane that the lamp is mounted on must not clip the sprite: in its lower half the depth follows that plane, moved
// slightly toward the eye.
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
    v_tilt = vec3(tiltOf(position), MAX_TILT * gl_ProjectionMatrix[3][2] / distance);
    gl_PointSize = 2.0 * v_shape.x;
    // Moved toward the eye, out of the lamp's housing.
    gl_Position = gl_ProjectionMatrix * vec4(position * max(1.0 - (size + 0.1) / distance, 0.5), 1.0);
    if (decades < 0.01) gl_Position = vec4(0.0, 0.0, -2.0, 1.0);
}
