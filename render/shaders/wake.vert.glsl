// Foam of ships on the sea's own vertices.
#include "common.glsl"
#include "shadow.glsl"
uniform vec4 u_across;  // local place to the foam's picture
uniform vec4 u_along;
uniform mat2 u_foam_map;
uniform vec2 u_foam_place;
out vec4 v_place;    // in the picture; in the pattern of bubbles
out vec3 v_light;    // illuminance of the surface
out vec4 v_air;      // radiance of the air before it; how much of its own reaches the eye

void main() {
    vec4 position = gl_ModelViewMatrix * gl_Vertex;
    v_place = vec4(dot(u_across, gl_Vertex), dot(u_along, gl_Vertex), u_foam_map * gl_MultiTexCoord0.xy + u_foam_place);
    float sun = max(dot(u_light_direction, u_up), 0.0);
    v_light = u_light_color * (sun * lightThere(position.xyz)) + u_ambient_above;
    float through = airTransmittance(position.xyz);
    v_air = vec4(hazeRadiance(position.xyz) * (1.0 - through), through);
    gl_Position = gl_ProjectionMatrix * position;
    gl_Position.z *= 1.0002;  // before the very same triangles
}
