// The sea's surface: reflected sky and light, light from the water, foam.
#include "common.glsl"
uniform sampler2D u_large;
uniform sampler2D u_small;
uniform sampler2D u_foam;
uniform sampler2D u_ground;
uniform vec3 u_levels;  // texture levels of the large cascade, the small cascade and the swell
uniform vec2 u_slope_scale;
uniform mat2 u_ripples_turn;
uniform mat2 u_swell_turn;
uniform float u_lap;
const float ZERO = 128.0 / 255.0;  // texture value of a level surface

in vec4 v_view;
in vec4 v_glint;
in vec4 v_low;
in vec4 v_high;
in vec3 v_air;
in vec3 v_water;
in vec4 v_small;
in vec4 v_large;
#if defined(FINE) || defined(REMOTE)
in vec4 v_fine;
#endif
#ifdef SHORE
in vec3 v_ground;
#endif

// Slope of the surface; share covered by foam; raggedness of the foam.
vec2 readWaves(out float cover, out float rags) {
#ifdef NEAR
    vec2 slope = v_large.xy;
    float spread = v_large.z;
    float breaking = v_small.w;
#else
    vec4 large = textureLod(u_large, v_large.xy, u_levels.x);
    vec2 slope = (large.xy - ZERO) * (u_slope_scale.x * v_large.z);
    float spread = large.z * v_small.w;
    float breaking = clamp(20.0 * large.w - 10.5, 0.0, 2.0) * v_small.w;
#endif
#ifdef REMOTE
    slope += u_swell_turn * (textureLod(u_large, v_fine.xy, u_levels.z).xy - ZERO) * v_large.w;
    rags = 0.5;
    cover = rags * spread;
#else
    // Small waves break on the crests of larger ones; their foam is ragged.
    vec4 small = textureLod(u_small, v_small.xy, u_levels.y);
    slope += (small.xy - ZERO) * (u_slope_scale.y * v_small.z);
    rags = clamp(6.0 * small.w - 2.8, 0.0, 1.0);
    cover = small.z * breaking + clamp(5.0 * small.w + 3.0 * spread - 5.2, 0.0, 1.0);
#endif
#ifdef FINE
    vec4 ripple = texture(u_small, v_fine.xy);
    slope += u_ripples_turn * (ripple.xy - ZERO) * v_large.w;
#endif
    return slope;
}

void main() {
    float cover, rags;
    vec2 slope = readWaves(cover, rags);
    vec3 view = v_view.xyz;
    vec2 off = v_glint.xy - slope;
    float glint = v_glint.z * exp2(dot(off, off) * v_glint.w);

    vec2 seen = slope - view.xy * v_low.a;
    float upright = inversesqrt(1.0 + dot(seen, seen));
    // Facets that face away are hidden by facets that face the eye.
    float facing = (view.z - dot(view.xy, seen)) * upright;
    facing = sqrt(facing * facing + 0.004);
    float grazing = max(1.0 - facing, 0.0);
    float grazing2 = grazing * grazing;
    float fresnel = 0.02 + 0.98 * grazing2 * grazing2 * grazing;
    float down = 1.0 - abs(2.0 * facing * upright - view.z);
    float down2 = down * down;
    vec3 sky = mix(v_high.rgb, v_low.rgb, down2 * down2);
    vec3 water = v_water;
#ifdef SHORE
    float under = v_ground.z - texture(u_ground, v_ground.xy).r;
    float depth = max(under, 0.0);
    float shallow = exp2(-0.3 * depth);
    water *= 1.0 + shallow * vec3(1.5, 3.0, 2.0);
    // Rags of foam that run up the beach.
    float lap = sin(6.2832 * (depth * 1.3 + u_lap)) + 0.4;
    cover += clamp(1.0 - 1.2 * depth, 0.0, 1.0) * clamp(lap * rags, 0.0, 1.0);
#endif
    vec3 radiance = mix(water, sky, fresnel) + u_light_color * glint;

#ifdef FINE
    float pattern = texture(u_foam, v_fine.zw).r;
    cover = mix(cover, clamp((pattern - 1.0 + 0.8 * min(cover, 1.0)) * 2.5, 0.0, 1.0), v_large.w);
#endif
    vec3 white = (u_light_color * (v_high.a * max(dot(u_light_direction, u_up), 0.0)) + u_ambient_above) *
                 (0.55 * INV_PI);
    cover = min(cover, 0.9);
    radiance = mix(radiance, white, cover);

    float alpha = 1.0;
#ifdef SHORE
    // Opacity by the path length in the water. Distant ground that is drawn below its true height stays dry.
    alpha = (1.0 - exp2(-0.35 * depth / max(view.z, 0.02)) * (1.0 - fresnel) * (1.0 - cover)) * clamp(1.0 + 2.0 * under, 0.0, 1.0);
#endif
    // Thin triangles along the horizon may yield NaN: those show the air.
    gl_FragColor = vec4(display(max(radiance * v_view.w, 0.0) + v_air), alpha);
}
