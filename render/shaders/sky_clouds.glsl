// A layer of clouds over the eye. Directions are east, north, up.
uniform sampler2D u_clouds;      // cloud, slope along x and y
uniform vec4 u_cloud_sheet;      // height over the eye, 2 * height / globe's radius, 1 / side of the pattern, opacity
uniform vec2 u_cloud_place;      // position of the eye in the pattern
uniform vec2 u_cloud_air;        // extinction (base 2, 1/m); texels per radian at a distance of 1 m
uniform vec4 u_cloud_edge;       // scale and offset from pattern to cover; the same for nearness to the rim
uniform vec3 u_cloud_slope;      // scale per axis and offset from slope to light
uniform vec3 u_cloud_to_light;
uniform vec3 u_cloud_light;      // radiance of parts lit by sun or moon
uniform vec3 u_cloud_ambient;    // radiance of parts in shade

// Intersection of a direction with the clouds. It may be interpolated between directions.
struct Sight {
    vec4 place;  // x, y divided by z: position in the pattern relative to the eye; w: level of detail
    vec3 look;   // light on thick cloud and additional light at its rim; opacity as seen through the air
};

// Clouds are bright on the side of the light; their rims are bright when the light is behind them.
Sight cloudSight(vec3 direction) {
    float up = max(direction.z, 0.0);
    float z = 0.5 * (up + sqrt(up * up + u_cloud_sheet.y));
    float distance = u_cloud_sheet.x / z;
    float ahead = dot(direction, u_cloud_to_light);
    float lit = max(0.35 - 0.25 * ahead, 0.05);
    Sight sight;
    sight.place.xyz = vec3(direction.xy * (u_cloud_sheet.x * u_cloud_sheet.z), z);
    sight.place.w = log2(distance * u_cloud_air.y / sqrt(up + 0.02));
    float seen = u_cloud_sheet.w * exp2(-u_cloud_air.x * distance);
    sight.look = vec3(0.35 * lit, 0.65 * lit + 0.16 / (1.25 - ahead), seen);
    return sight;
}

vec3 cloudPattern(vec4 place) {
    return textureLod(u_clouds, place.xy / place.z + u_cloud_place, place.w).rgb;
}

float cloudCover(vec3 pattern) {
    return clamp(pattern.r * u_cloud_edge.x + u_cloud_edge.y, 0.0, 1.0);
}

// Transmittance of the clouds for light from behind.
float throughClouds(vec3 direction) {
    return 1.0 - cloudCover(cloudPattern(cloudSight(direction).place)) * u_cloud_sheet.w;
}

// The sky with a cloud in front.
vec3 behindClouds(vec3 sky, vec3 pattern, vec3 look) {
    float rim = clamp(pattern.r * u_cloud_edge.z + u_cloud_edge.w, 0.0, 1.0);
    rim *= dot(pattern.gb, u_cloud_slope.xy) + u_cloud_slope.z;
    vec3 radiance = u_cloud_light * (look.x + look.y * rim) + u_cloud_ambient * (0.6 + 0.4 * rim);
    return mix(sky, radiance, cloudCover(pattern) * look.z);
}
