// How a surface of a material answers the light of sun, sky and lamps. MATTE: it mirrors nothing while it is dry.
#pragma import_defines(LAMPS, WEATHER)
uniform vec2 u_weather;  // wetness and snow on upward surfaces, 0 to 1
const int MAX_LAMPS = 4;
uniform int u_num_lamps;
uniform vec4 u_lamp_places[MAX_LAMPS];  // in the eye's frame; w: 1 / range
uniform vec4 u_lamp_colors[MAX_LAMPS];  // kcd; w: cosine of a spot's half angle, -2 for none
uniform vec3 u_lamp_axes[MAX_LAMPS];    // where a spot points

struct Surface {
    vec3 base;
    float metallic;
    float roughness;
};

// Rain darkens a surface and makes it shine; snow lies on what looks up.
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

// Radiance to the eye; `lit` is the share of the direct light that arrives. The highlight is Trowbridge and Reitz's
// (GGX) with Karis' approximation of visibility and the Fresnel term (2013).
vec3 surfaceRadiance(Surface surface, vec3 normal, vec3 position, float lit) {
    vec3 to_eye = -normalize(position);
    float to_light = dot(normal, u_light_direction), across = dot(normal, to_eye);
    float facing = max(across, 0.02);
    vec3 direct = u_light_color * (max(to_light, 0.0) * lit);
    vec3 f0 = mix(vec3(0.04), surface.base, surface.metallic);
    vec3 diffuse = surface.base * (1.0 - surface.metallic) * INV_PI;
    vec3 radiance = diffuse * (direct + ambientLight(normal) + lampLight(normal, position));

    float a2 = max(surface.roughness * surface.roughness, 0.002);
    a2 *= a2;
    // Squares of the half way vector's length and of its cosines to normal and eye, without the vector.
    float half2 = max(2.0 + 2.0 * dot(u_light_direction, to_eye), 0.01);
    float nh = max(to_light + across, 0.0), hv2 = 0.25 * half2;
    float d = nh * nh / half2 * (a2 - 1.0) + 1.0;
    radiance += direct * f0 * (a2 / (12.566 * d * d * hv2 * (surface.roughness + 0.5)));

    float smooth_part = 1.0 - surface.roughness;
    float grazing = 1.0 - facing;
    vec3 fresnel = f0 + (max(vec3(smooth_part), f0) - f0) * (grazing * grazing * grazing * grazing * grazing);
    float mirrored_up = 2.0 * across * dot(normal, u_up) - dot(to_eye, u_up);
    vec3 sky = mix(u_ambient_below, u_ambient_above, 0.5 + 0.5 * mirrored_up) * INV_PI;
#if !defined(MATTE) || defined(WEATHER)
    vec3 around = u_eye_to_local * reflect(-to_eye, normal);
    sky = mix(sky, skyRadiance(around), smooth_part * step(0.0, around.z));
#endif
    return radiance + fresnel * sky;
}
