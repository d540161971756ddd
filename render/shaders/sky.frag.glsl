// The dome of the sky with clouds.
#include "common.glsl"
#include "sky_clouds.glsl"
in vec3 v_sky;
in vec4 v_place;
in vec3 v_look;

void main() {
    vec3 radiance = behindClouds(v_sky, cloudPattern(v_place), v_look);
    // Dither of one display step, after Jimenez (2014), against banding in the smooth sky.
    float noise = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    gl_FragColor = vec4(display(radiance) + (noise - 0.5) / 255.0, 1.0);
}
