// The stars: points infinitely far, added to the sky.
#include "common.glsl"
#include "sky_clouds.glsl"
uniform mat3 u_stars_to_local;   // from the equatorial frame
uniform vec3 u_star_depth;       // optical depth of the air toward the zenith
uniform float u_star_gain;       // 1 / solid angle of a pixel
out vec3 v_display;

void main() {
    vec3 direction = u_stars_to_local * gl_Vertex.xyz;
    float up = max(direction.z, 0.0);
    vec3 light = gl_Color.rgb * exp(-u_star_depth / (up + 0.025));
    float clear = throughClouds(direction);
    vec3 sky = skyRadiance(direction);
    float size = 1.6;
    v_display = (display(sky + light * (u_star_gain * clear)) - display(sky)) * step(0.0, direction.z);
    // Brightness beyond the display's range enlarges the point.
    float bright = max(v_display.r, max(v_display.g, v_display.b));
    gl_PointSize = size + 1.6 * bright * bright;
    gl_Position = gl_ProjectionMatrix * vec4(direction * u_eye_to_local, 0.0);
}
