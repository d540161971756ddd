// The Milky Way: a belt around the sky, added to it.
#include "common.glsl"
uniform sampler2D u_clouds;
uniform mat3 u_stars_to_local;  // from the equatorial frame
uniform vec3 u_star_depth;      // optical depth of the air toward the zenith
uniform vec3 u_galaxy_light;    // radiance outside the air where it is brightest
out vec3 v_display;

void main() {
    vec3 direction = u_stars_to_local * gl_Vertex.xyz;
    vec3 at = gl_MultiTexCoord0.xyz;  // along the belt in turns, across it from -1 to 1; brightness
    // Dust hides the middle of the belt in places.
    float dust = textureLod(u_clouds, vec2(at.x * 4.0, at.y * 0.35), 3.0).r;
    float across = 1.0 - at.y * at.y;
    float lane = 1.0 - 0.75 * dust * max(1.0 - 3.0 * abs(at.y), 0.0);
    float patches = 0.6 + 0.4 * textureLod(u_clouds, vec2(at.x * 9.0, at.y * 0.7), 3.0).r;
    vec3 light = u_galaxy_light * (at.z * across * across * across * lane * patches);
    light *= exp(-u_star_depth / (max(direction.z, 0.0) + 0.025));
    vec3 sky = skyRadiance(direction);
    v_display = display(sky + light) - display(sky);
    gl_Position = gl_ProjectionMatrix * vec4(direction * u_eye_to_local, 0.0);
}
