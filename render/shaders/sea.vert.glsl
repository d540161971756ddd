// The sea's vertices, and all quantities that vary slowly over its surface.
#include "common.glsl"
#include "shadow.glsl"
uniform vec2 u_weather;           // wetness and snow
uniform vec2 u_per_metre;         // repetitions of the large and the small cascade per metre
uniform vec4 u_place;             // texture coordinates of the eye
uniform mat2 u_ripples_map;       // metres to texture coordinates
uniform vec2 u_ripples_place;
uniform vec2 u_ripples_kind;      // number of texture levels finer than their cascade, strength
uniform mat2 u_swell_map;
uniform vec2 u_swell_place;
uniform vec2 u_swell_kind;
uniform mat2 u_foam_map;
uniform vec2 u_foam_place;
uniform float u_pixel;            // angle of a pixel
uniform vec3 u_ranges;            // of the bands, metres
uniform float u_mean_square[16];  // mean square slope of both cascades, level by level
uniform vec4 u_gusts_east;        // periods of four slow waves per metre
uniform vec4 u_gusts_north;
uniform vec4 u_gusts_place;       // their phases at the eye, in periods
const float SAMPLES = 128.0;      // samples per side of a cascade

out vec4 v_view;   // direction to the eye, east, north, up; transmittance of the air
out vec4 v_glint;  // slope that mirrors the light; mirrored light per density of such slopes; sharpness of the density
out vec4 v_low;    // radiance of the mirrored sky near the horizon; mean visible slope toward the eye
out vec4 v_high;   // radiance of the mirrored sky high up; share of direct light
out vec3 v_air;    // radiance of the air in front of the surface
out vec3 v_water;  // radiance from inside the water
out vec4 v_small;  // texture coordinates in the small cascade; strengths of its slopes and of its foam
out vec4 v_large;  // NEAR: slopes and foam of the large cascade, strength of ripples
                   // otherwise: texture coordinates, strength, strength of swell
#if defined(FINE) || defined(REMOTE)
out vec4 v_fine;   // texture coordinates of ripples and foam, or of swell
#endif
#ifdef SHORE
out vec3 v_ground;  // texture coordinates; height of the surface
#endif

float meanSquare(int cascade, float level) {
    float at = clamp(level, 0.0, 7.0);
    int i = min(int(at), 6);
    return mix(u_mean_square[8 * cascade + i], u_mean_square[8 * cascade + i + 1], at - float(i));
}

// Texture coordinates and strengths by distance; returns the mean square slope that the textures show. In flat views a
// pixel is long; textures are read somewhat finer than that.
float layWaves(vec2 rest, float distance, float rise) {
    float across = u_pixel * distance;
    float level = log2(across * SAMPLES + 1e-9) - 0.6 * log2(max(rise, 0.01));
    float level_large = level + log2(u_per_metre.x), level_small = level + log2(u_per_metre.y);
    float kept_large = meanSquare(0, level_large), kept_small = meanSquare(1, level_small);
    // Fade out tiles that repeat often enough for their pattern to be visible.
    float end = clamp(2.0 - 2.0 * distance / u_ranges.z, 0.0, 1.0) *
                clamp(-0.5 * log2(across * u_per_metre.y * 32.0), 0.0, 1.0);
    float kept = kept_large + kept_small * end * end;
    v_small = vec4(rest * u_per_metre.y + u_place.zw, end * sqrt(kept_small / (u_mean_square[8] + 1e-9)),
                   exp2(-0.5 * across));
#ifdef NEAR
    float fine = clamp(2.0 - 2.2 * distance / u_ranges.x, 0.0, 1.0);
    v_large = vec4(gl_MultiTexCoord1.xyz, fine);
    v_small.w *= clamp(20.0 * gl_MultiTexCoord1.w - 10.5, 0.0, 2.0);
    fine *= u_ripples_kind.y;
    kept += fine * fine * meanSquare(1, level_small + u_ripples_kind.x);
#else
    float swell = clamp(2.0 * distance / u_ranges.z - 1.0, 0.0, 1.0);
    v_large = vec4(rest * u_per_metre.x + u_place.xy, sqrt(kept_large / (u_mean_square[0] + 1e-9)), swell);
    v_large.z *= 1.0 - 0.3 * swell;
#endif
#ifdef FINE
    v_fine = vec4(u_ripples_map * rest + u_ripples_place, u_foam_map * rest + u_foam_place);
#endif
#ifdef REMOTE
    v_fine = vec4(u_swell_map * rest + u_swell_place, 0.0, 0.0);
    v_large.w *= sqrt(meanSquare(0, level_large + u_swell_kind.x) / (u_mean_square[0] + 1e-9));
#endif
    return kept;
}

// Relative wind speed at a position, mean 1.
float gustAt(vec2 rest, float distance) {
    vec4 waves = sin(6.2832 * (rest.x * u_gusts_east + rest.y * u_gusts_north + u_gusts_place));
    float seen = clamp(2.0 - distance * 6e-5, 0.0, 1.0);
    return 1.0 + 0.6 * seen * sin(waves.x + 2.0 * waves.y) * sin(waves.z + 2.0 * waves.w);
}

// Sun or moon mirrored by a surface of many small slopes: Cox and Munk (1954), with the visible area after Smith
// (1967), abridged. `variance` is of the slopes that no texture shows, `all` of all slopes.
vec4 glintAt(vec3 view, vec3 light, float rise, float variance, float all) {
    vec3 half_way = view + light;
    half_way.z = max(half_way.z, 0.02);
    float grazing = 1.0 - dot(view, normalize(half_way));
    float fresnel = 0.02 + 0.98 * grazing * grazing * grazing * grazing * grazing;
    float seen = sqrt(rise * rise + 0.16 * all);
    float upward = half_way.z * half_way.z / dot(half_way, half_way);
    float up = smoothstep(-0.02, 0.03, light.z);
    return vec4(-half_way.xy / half_way.z, up * fresnel / (4.0 * seen * upward * upward * 6.2832 * variance),
                -0.7213475 / variance);
}

// Light that leaves the water; crests in front of the light are translucent.
vec3 waterAt(vec3 view, vec3 light, float height, float distance, float lit) {
    vec3 down = u_light_color * max(light.z, 0.0) + u_ambient_above;
    float against = clamp(-dot(view.xy, light.xy), 0.0, 1.0);
    float thin = clamp(height, 0.0, 1.5) * exp2(-distance * 0.004);
    return down * (INV_PI * vec3(0.003, 0.017, 0.028)) +
           u_light_color * vec3(0.001, 0.010, 0.009) * (thin * against * against * lit);
}

void main() {
    vec2 rest = gl_MultiTexCoord0.xy;
    float crest = gl_MultiTexCoord0.z;
    vec4 position = gl_ModelViewMatrix * gl_Vertex;
    gl_Position = gl_ProjectionMatrix * position;

    float distance = max(length(gl_Vertex.xyz), 0.01);
    vec3 view = -gl_Vertex.xyz / distance;
    float rise = max(view.z, 0.002);
    vec3 light = u_eye_to_local * u_light_direction;
    float lit = lightThere(position.xyz);

    // Slopes that no texture shows are part of the roughness: the shortest ripples, which vary with the gusts, and
    // those of rain.
    float kept = layWaves(rest, distance, rise);
    float gust = gustAt(rest, distance);
    v_small.z *= 0.5 + 0.5 * gust;
    float total = u_mean_square[0] + u_mean_square[8] * (1.0 + u_ripples_kind.y * u_ripples_kind.y);
    float bare = gust * (0.002 + 0.25 * u_mean_square[8]) + 0.01 * u_weather.x;
    float variance = 0.5 * (max(total - kept, 0.0) + bare);

    // Slopes toward the eye appear larger, more so in flatter views: the mean of the visible slope.
    float tilt = variance / (rise + 0.8 * sqrt(variance)) / max(length(view.xy), 0.01);
    v_view = vec4(view, airTransmittance(position.xyz));
    v_low = vec4(skyRadiance(vec3(-view.xy, 0.04)), tilt);
    v_high = vec4(skyRadiance(vec3(-view.xy, 0.7)), lit);
    v_air = throughAir(vec3(0.0), position.xyz);
    v_glint = glintAt(view, light, rise, variance, 0.5 * (total + bare));
    v_glint.z *= lit;
    v_water = waterAt(view, light, crest / (6.0 * sqrt(total) + 0.3), distance, lit);
#ifdef SHORE
    v_ground = vec3(gl_MultiTexCoord2.xy, crest);
#endif
}
