// The dome of the sky, infinitely far. Smooth quantities are computed per vertex.
#include "common.glsl"
#include "sky_clouds.glsl"
uniform vec3 u_sun;         // to the sun: east, north, up
uniform vec3 u_glow_color;  // of the glow around the sun
out vec3 v_sky;
out vec4 v_place;  // same as in Sight
out vec3 v_look;

void main() {
    vec3 at = gl_Vertex.xyz;  // x toward the sun's azimuth
    vec3 direction = vec3(at.x * u_sun_side + at.y * vec2(u_sun_side.y, -u_sun_side.x), at.z);
    vec4 texel = textureLod(u_sky, gl_MultiTexCoord0.xy, 0.0);
    // Henyey and Greenstein's phase function for a mean cosine of 0.7, down to a cosine of 0.3.
    float base = inversesqrt(1.49 - 1.4 * dot(direction, u_sun));
    float glow = max(0.040584 * base * base * base - 0.036670, 0.0);
    v_sky = texel.rgb + u_glow_color * (texel.a * glow);
    Sight sight = cloudSight(direction);
    v_place = sight.place;
    v_look = sight.look;
    gl_Position = gl_ProjectionMatrix * vec4(direction * u_eye_to_local, 0.0);
}
