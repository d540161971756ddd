// A sheet of clouds over the eye. Directions are east, north, up.
uniform sampler2D u_clouds;      // cloud, slope along x and y
uniform vec4 u_cloud_sheet;      // height over the eye, 2 * height / globe's radius, 1 / side of the pattern, threshold
uniform vec3 u_cloud_place;      // of the eye in the pattern; how fast clouds grow thick
uniform vec4 u_cloud_edge;       // 1 / softness, opacity, extinction of the air to base 2, texels a radian at a metre
uniform vec3 u_cloud_to_light;
uniform vec3 u_cloud_light;      // radiance of what sun or moon shines on
uniform vec3 u_cloud_ambient;    // and of what lies in the shade

struct Cloud {
    float cover;      // 0 to 1
    float thickness;  // 0 at the edge to 1
    vec2 slope;
};

// The place in the pattern, as a fraction: x, y over z. It may be interpolated between directions.
vec3 cloudPlace(vec3 direction) {
    float up = max(direction.z, 0.0);
    float z = 0.5 * (up + sqrt(up * up + u_cloud_sheet.y));
    return vec3(direction.xy * (u_cloud_sheet.x * u_cloud_sheet.z), z);
}

// How far the light comes from behind the eye, how much it shines through edges, how much of the cloud is seen through
// the air, and the level of detail.
vec4 cloudLight(vec3 direction) {
    float ahead = dot(direction, u_cloud_to_light);
    float up = max(direction.z, 0.0);
    float distance = 2.0 * u_cloud_sheet.x / (up + sqrt(up * up + u_cloud_sheet.y));
    float detail = log2(distance * u_cloud_edge.w / sqrt(up + 0.02));
    return vec4(0.35 - 0.25 * ahead, 0.22 / (1.25 - ahead), exp2(-u_cloud_edge.z * distance), detail);
}

Cloud cloudThere(vec3 place, float detail) {
    vec3 pattern = textureLod(u_clouds, place.xy / place.z + u_cloud_place.xy, detail).rgb;
    float above = pattern.r - u_cloud_sheet.w;
    Cloud cloud;
    cloud.cover = clamp(above * u_cloud_edge.x, 0.0, 1.0) * u_cloud_edge.y;
    cloud.thickness = clamp((pattern.r - max(u_cloud_sheet.w, 0.0)) * u_cloud_place.z, 0.0, 1.0);
    cloud.slope = pattern.gb - 0.5;
    return cloud;
}

// The sky with a cloud before it.
vec3 behindClouds(vec3 sky, Cloud cloud, vec3 light) {
    float rim = 1.0 - cloud.thickness;
    float lit = clamp(light.x - dot(cloud.slope, u_cloud_to_light.xy), 0.05, 1.0);
    vec3 radiance = u_cloud_light * (lit * (0.35 + 0.65 * rim) + light.y * rim * rim) +
                    u_cloud_ambient * (0.6 + 0.4 * rim);
    return mix(sky, radiance, cloud.cover * light.z);
}
