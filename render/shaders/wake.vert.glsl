// Foam of ships on the sea's own vertices.
#include "common.glsl"
#include "shadow.glsl"
uniform vec4 u_across;  // from local position to coordinates in the foam's picture
uniform vec4 u_along;
uniform mat2 u_wake_map;
uniform vec2 u_wake_place;
uniform float u_pixel;  // angle of a pixel
out vec3 v_place;       // picture coordinates; visibility of the pattern
out vec2 v_pattern;     // coordinates in the pattern of bubbles
out vec3 v_white;       // display values of bubbles and of aerated water
out vec3 v_aerated;

const vec3 WHITE = vec3(0.62, 0.66, 0.68);
const vec3 AERATED = vec3(0.10, 0.22, 0.25);

void main() {
    vec4 position = gl_ModelViewMatrix * gl_Vertex;
    // Length of a pixel on the water, metres: where it exceeds a bubble only the foam's thickness is visible.
    float distance = length(gl_Vertex.xyz), rise = clamp(-gl_Vertex.z / distance, 0.02, 1.0);
    float pixel = u_pixel * distance * inversesqrt(rise);
    v_place = vec3(dot(u_across, gl_Vertex), dot(u_along, gl_Vertex), clamp(1.3 - 1.6 * pixel, 0.0, 1.0));
    v_pattern = u_wake_map * gl_MultiTexCoord0.xy + u_wake_place;
    float sun = max(dot(u_light_direction, u_up), 0.0);
    vec3 light = (u_light_color * (sun * lightThere(position.xyz)) + u_ambient_above) * INV_PI;
    float through = airTransmittance(position.xyz);
    vec3 haze = hazeRadiance(position.xyz) * (1.0 - through);
    v_white = display(light * WHITE * through + haze);
    v_aerated = display(light * AERATED * through + haze);
    gl_Position = gl_ProjectionMatrix * position;
    gl_Position.z *= 1.0002;  // in front of the same triangles of the sea
}
