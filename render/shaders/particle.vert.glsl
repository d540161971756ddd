// Particles as quads of four vertices; light and air per vertex.
#include "common.glsl"
uniform vec4 u_start_color;
uniform vec4 u_end_color;
out vec3 v_uv_gain;  // -1 to 1; opacity gain where this particle represents several
#ifdef IMAGE
out vec4 v_light;  // radiance at the eye of a white texel; alpha
out vec3 v_air;    // radiance of the air in front
#else
out vec4 v_color;  // display value; alpha
#endif

const float EARTH_DIAMETER = 1.2742e7;
const float GLOW = 30.0;       // kcd/m^2 of a flame of colour 1
const float MAX_BRIGHTNESS = 0.7;  // relative to the radiance displayed as white

vec3 sideways(vec3 centre) {
    vec3 side = cross(centre, u_up);
    return dot(side, side) > 1e-6 * dot(centre, centre) ? normalize(side) : vec3(1.0, 0.0, 0.0);
}

void main() {
    int index = gl_VertexID & 3;
    vec2 corner = vec2(index == 1 || index == 2 ? 1.0 : -1.0, index > 1 ? 1.0 : -1.0);
    vec3 centre = (gl_ModelViewMatrix * vec4(gl_Vertex.xyz, 1.0)).xyz;
    float size = gl_Vertex.w;
    float turn = gl_MultiTexCoord0.y;
    vec2 turned = mat2(cos(turn), sin(turn), -sin(turn), cos(turn)) * corner * (0.5 * size);
    float distance = length(centre);
#ifdef FLAT
    vec3 position = centre + vec3(turned, 0.0) * u_eye_to_local;
    vec3 normal = u_up;
#else
    vec3 side = sideways(centre);
    vec3 upward = normalize(cross(side, centre));
    vec3 position = centre + side * turned.x + upward * turned.y;
    vec3 normal = normalize((position - centre) / max(size, 1e-3) - centre / max(distance, 1e-3) * 0.4);
#endif

    vec4 color = mix(u_start_color, u_end_color, gl_MultiTexCoord0.x);
    float appear = min(gl_MultiTexCoord0.x * 12.0, 1.0);
    float alpha = clamp(color.a, 0.0, 1.0) * appear;
    v_uv_gain.z = 1.0;
    float represented = gl_MultiTexCoord0.w;
#ifdef ADDITIVE
    alpha = min(alpha * represented, 1.0);
#else
    float together = 1.0 - pow(1.0 - min(alpha, 0.99), represented);
    v_uv_gain.z = min(represented * alpha / max(together, 1e-3), 1.4);
    alpha = together;
#endif
    alpha *= gl_MultiTexCoord0.z;
    alpha *= clamp(1.4 * distance / max(size, 1e-3) - 0.35, 0.0, 1.0);  // no opaque wall close to the eye
#ifndef FLAT
    float height = u_air.z + dot(position, u_up) + dot(position, position) / EARTH_DIAMETER;
    alpha *= clamp(height / (0.3 * size + 0.01), 0.0, 1.0);  // no hard edge at the sea surface
#endif

    float through = airTransmittance(position);
#ifdef ADDITIVE
    // Limits the radiance to the exposure, so that bright flames keep their colour.
    float strongest = max(max(color.r, color.g), max(color.b, 1e-3)) * u_exposure;
    vec3 light = color.rgb * (min(GLOW, MAX_BRIGHTNESS / strongest) * through);
    vec3 air = vec3(0.0);
#else
    float facing = dot(normal, u_light_direction);
    float sun = 0.25 + 0.75 * (0.5 + 0.5 * facing) * (0.5 + 0.5 * facing);
    vec3 light = color.rgb * (u_light_color * sun + ambientLight(normal)) * (INV_PI * through);
    vec3 direction = u_eye_to_local * normalize(position);
    vec3 air = skyRadiance(direction) * (1.0 - through);
#endif
#ifdef ADDITIVE
    light *= alpha;  // fading by radiance makes flames redder
    alpha = 1.0;
#endif
#ifdef IMAGE
    v_light = vec4(light, alpha);
    v_air = air;
#else
    v_color = vec4(display(light + air), alpha);
#endif
    v_uv_gain.xy = corner;
    position *= 1.0 - 0.3 * size / max(distance, size);  // depth of a sphere's front; foam is drawn above its waves
    gl_Position = gl_ProjectionMatrix * vec4(position, 1.0);
}
