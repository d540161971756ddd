// Reflection of sun, sky and lamps by a material. MATTE: neither metallic nor mirroring while it is dry.
#pragma import_defines(LAMPS, WEATHER)
uniform vec2 u_weather;  // wetness and snow on upward surfaces, 0 to 1
const int MAX_LAMPS = 4;
uniform int u_num_lamps;
uniform vec4 u_lamp_places[MAX_LAMPS];  // in the eye's frame; w: 1 / range
uniform vec4 u_lamp_colors[MAX_LAMPS];  // kcd; w: cosine of a spot's half angle, -2 for omnidirectional lamps
uniform vec3 u_lamp_axes[MAX_LAMPS];    // direction of a spot

struct Surface {
    vec3 base;
    float metallic;
    float roughness;
};

// Rain darkens a surface and makes it shine; snow covers surfaces that face up.
Surface weathered(Surface surface, vec3 normal) {
#ifdef WEATHER
    float upward = dot(normal, u_up);
    float wet = u_weather.x * smoothstep(-0.2, 0.6, upward);
    surface.base *= 1.0 - 0.45 * wet;
    surface.roughness = mix(surface.roughness, 0.12, 0.8 * wet);
    float snow = u_weather.y * smoothstep(0.55, 0.85, upward);
    surface.base = mix(surface.base, vec3(0.86, 0.88, 0.92), snow);
    surface.metallic *= 1.0 - snow;
    surface.roughness = mix(surface.roughness, 0.9, snow);
#endif
    return surface;
}

vec3 lampLight(vec3 normal, vec3 position) {
    vec3 light = vec3(0.0);
#ifdef LAMPS
    for (int i = 0; i < u_num_lamps; ++i) {
        vec3 to_lamp = u_lamp_places[i].xyz - position;
        float distance2 = max(dot(to_lamp, to_lamp), 0.25);
        vec3 direction = to_lamp * inversesqrt(distance2);
        float reach = max(1.0 - distance2 * u_lamp_places[i].w * u_lamp_places[i].w, 0.0);
        float edge = u_lamp_colors[i].w;
        float cone = smoothstep(edge - 0.6 * (1.0 - edge), edge, -dot(direction, u_lamp_axes[i]));
        light += u_lamp_colors[i].rgb * (max(dot(normal, direction), 0.0) * reach * reach * cone / distance2);
    }
#endif
    return light;
}

// Radiance toward the eye; `lit` is the share of the direct light that arrives. The highlight follows Trowbridge and
// Reitz (GGX) with Karis' approximation of visibility and the Fresnel term (2013).
vec3 surfaceRadiance(Surface surface, vec3 normal, vec3 position, float lit) {
    vec3 to_eye = -normalize(position);
    float to_light = dot(normal, u_light_direction), across = dot(normal, to_eye), upward = dot(normal, u_up);
    vec3 direct = u_light_color * (max(to_light, 0.0) * lit);
    vec3 ambient = mix(u_ambient_below, u_ambient_above, 0.5 + 0.5 * upward);
    vec3 arriving = (direct + ambient + lampLight(normal, position)) * INV_PI;

    float a2 = max(surface.roughness * surface.roughness, 0.002);
    a2 *= a2;
    // Squared length of the half vector and its squared cosines to normal and eye, without the vector.
    float half2 = max(2.0 + 2.0 * dot(u_light_direction, to_eye), 0.01);
    float nh = max(to_light + across, 0.0), d = nh * nh * (a2 - 1.0) + half2;
    float highlight = a2 * half2 / (d * d * (3.1416 * surface.roughness + 1.5708));

    float smooth_part = 1.0 - surface.roughness;
    float grazing = 1.0 - max(across, 0.02), grazing2 = grazing * grazing;
    grazing *= grazing2 * grazing2;
    float mirrored_up = 2.0 * across * upward - dot(to_eye, u_up);
    vec3 sky = mix(u_ambient_below, u_ambient_above, 0.5 + 0.5 * mirrored_up) * INV_PI;
#if defined(MATTE) && !defined(WEATHER)
    float fresnel = 0.04 + max(smooth_part - 0.04, 0.0) * grazing;
    return surface.base * arriving + direct * (0.04 * highlight) + sky * fresnel;
#else
    vec3 f0 = mix(vec3(0.04), surface.base, surface.metallic);
    vec3 around = u_eye_to_local * reflect(-to_eye, normal);
    sky = mix(sky, skyRadiance(around), smooth_part * step(0.0, around.z));
    vec3 fresnel = f0 + (max(vec3(smooth_part), f0) - f0) * grazing;
    return surface.base * (1.0 - surface.metallic) * arriving + direct * f0 * highlight + fresnel * sky;
#endif
}
