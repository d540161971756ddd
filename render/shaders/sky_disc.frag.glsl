// The discs of sun and moon, blended over the sky: alpha is the share of the sky that they hide.
#include "common.glsl"
#include "sky_clouds.glsl"
uniform vec3 u_disc_radiance;
uniform vec3 u_disc_halo;     // radiance of the glare in the eye at the disc's edge
uniform vec3 u_disc_to_sun;   // in the disc's frame: right, up, to the eye
in vec2 v_place;
in vec3 v_direction;

void main() {
    vec3 direction = normalize(v_direction);
    float radius2 = dot(v_place, v_place);
    float radius = sqrt(radius2);
    float blur = fwidth(v_place.x) * 0.7 + 1e-4;
    float inside = 1.0 - smoothstep(1.0 - blur, 1.0 + blur, radius);
    float depth = sqrt(max(1.0 - radius2, 0.0));
#ifdef MOON
    float lit = smoothstep(-0.06, 0.2, dot(vec3(v_place, depth), u_disc_to_sun)) + 0.004;
    float seas = textureLod(u_clouds, v_place * 0.06 + vec2(0.24, 0.67), 3.0).r;
    vec3 radiance = u_disc_radiance * (lit * mix(1.0, 0.55, smoothstep(0.45, 0.75, seas)));
#else
    vec3 radiance = u_disc_radiance * (0.4 + 0.6 * depth);
#endif
    float clear = throughClouds(direction);
    vec3 sky = skyRadiance(direction);
    float fade = max(1.0 - radius / REACH, 0.0);
    vec3 glare = u_disc_halo * (fade * fade / (0.3 + radius2)) * clear;
    vec3 halo = display(sky + glare) - display(sky);
    float alpha = inside * clear;
    gl_FragColor = vec4(display(sky + radiance + glare) * alpha + halo * (1.0 - alpha), alpha);
}
