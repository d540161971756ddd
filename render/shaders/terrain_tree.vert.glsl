// Trees: squares that face the eye, shaded as round crowns.
#include "common.glsl"
#pragma import_defines(GROUND_WEATHER)
layout(location = 6) in vec4 a_tree;  // corner: -1 to 1 and 0 to 1; height, metres; random number
uniform sampler2D u_imagery;
uniform vec3 u_ground;
out vec2 v_uv;
out vec3 v_light;  // radiance of a leaf at the eye
out vec3 v_haze;

const float REACH = 600.0;  // metres

void main() {
    vec3 foot = (gl_ModelViewMatrix * gl_Vertex).xyz;
    float distance = length(foot);
    vec3 to_eye = -foot / distance;
    vec3 right = normalize(cross(u_up, to_eye));
    vec3 top = cross(to_eye, right);
    float steep = dot(u_up, to_eye);
    bool is_above = steep > 0.6;
    // At the edge of their range trees grow as the eye comes nearer.
    float size = a_tree.z * clamp((REACH * (0.4 + 0.6 * a_tree.w) - distance) * 0.02, 0.0, 1.0);
    vec2 corner = vec2(0.5 * a_tree.x, is_above ? a_tree.y - 0.5 : a_tree.y - 0.02) * size;
    vec3 position = foot + right * corner.x + top * corner.y;
    if (is_above) position += u_up * (0.6 * size);

    vec3 normal = normalize(right * a_tree.x + top * (2.0 * a_tree.y - 1.0) + 0.8 * to_eye + 0.6 * u_up);
    vec3 leaf = texture(u_imagery, gl_MultiTexCoord0.xy).rgb;
    leaf = leaf * leaf * (0.75 + 0.5 * a_tree.w) * mix(vec3(1.0), vec3(1.15, 1.0, 0.75), fract(a_tree.w * 7.0));
#ifdef GROUND_WEATHER
    leaf = mix(leaf, leaf * mix(vec3(2.6, 1.2, 0.4), vec3(3.4, 0.8, 0.3), a_tree.w), u_ground.z);
    float snow = 0.85 * smoothstep(0.0, 0.7, u_ground.y) * smoothstep(-0.1, 0.9, dot(normal, u_up));
    leaf = mix(leaf * (1.0 - 0.3 * u_ground.x), vec3(0.75, 0.78, 0.82), snow);
#endif
    float passed = airTransmittance(position);
    vec3 light = u_light_color * max(dot(normal, u_light_direction), 0.0) + ambientLight(normal);
    v_light = leaf * light * (INV_PI * passed);
    v_haze = hazeRadiance(position) * (1.0 - passed);
    v_uv = vec2(0.25 + 0.25 * a_tree.x + (is_above ? 0.5 : 0.0), a_tree.y);
    gl_Position = gl_ProjectionMatrix * vec4(position, 1.0);
}
