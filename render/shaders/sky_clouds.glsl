// A sheet of clouds over the eye. Directions are east, north, up.
uniform sampler2D u_clouds;      // cloud, slope along x and y
uniform vec4 u_cloud_sheet;      // height over the eye, 2 * height / globe's radius, 1 / side of the pattern, threshold
uniform vec3 u_cloud_place;      // of the eye in the pattern; how fast clouds grow thick
uniform vec4 u_cloud_edge;       // 1 / softness, opacity, extinction of the air to base 2, texels a radian at a metre
uniform vec3 u_cloud_to_light;
uniform vec3 u_cloud_light;      // radiance of what sun or moon shines on
uniform vec3 u_cloud_ambient;    // and of what lies in the shade

// Where a direction meets the clouds. It may be interpolated between directions.
struct Sight {
    vec4 place;  // x, y over z is the place in the pattern less the eye's; w the level of detail
    vec4 core;   // radiance of thick cloud, and how much of a cloud is seen through the air before it
    vec3 edge;   // what its edges have more
};

// Clouds shine on the side of the light, and their edges when the light is behind them.
Sight cloudSight(vec3 direction) {
    float up = max(direction.z, 0.0);
    float z = 0.5 * (up + sqrt(up * up + u_cloud_sheet.y));
    float distance = u_cloud_sheet.x / z;
    float ahead = dot(direction, u_cloud_to_light);
    float lit = max(0.35 - 0.25 * ahead, 0.05);
    Sight sight;
    sight.place.xyz = vec3(direction.xy * (u_cloud_sheet.x * u_cloud_sheet.z), z);
    sight.place.w = log2(distance * u_cloud_edge.w / sqrt(up + 0.02));
    sight.core = vec4(u_cloud_light * (0.35 * lit) + u_cloud_ambient * 0.6, exp2(-u_cloud_edge.z * distance));
    sight.edge = u_cloud_light * (0.65 * lit + 0.16 / (1.25 - ahead)) + u_cloud_ambient * 0.4;
    return sight;
}

vec3 cloudPattern(vec4 place) {
    return textureLod(u_clouds, place.xy / place.z + u_cloud_place.xy, place.w).rgb;
}

// Share of the light from behind that clouds hide.
float cloudCover(vec3 pattern) {
    return clamp((pattern.r - u_cloud_sheet.w) * u_cloud_edge.x, 0.0, 1.0) * u_cloud_edge.y;
}

// The sky with a cloud before it.
vec3 behindClouds(vec3 sky, vec3 pattern, vec4 core, vec3 edge) {
    float thickness = clamp((pattern.r - max(u_cloud_sheet.w, 0.0)) * u_cloud_place.z, 0.0, 1.0);
    float facing = dot(pattern.gb - 0.5, -u_cloud_to_light.xy);
    return mix(sky, core.rgb + edge * ((1.0 - thickness) * (1.0 + 2.0 * facing)), cloudCover(pattern) * core.a);
}
