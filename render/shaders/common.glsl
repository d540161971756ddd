// Light, air and display that all fragment shaders share. Positions and directions are in the eye's frame, metres;
// radiances kcd/m^2.
uniform vec3 u_up;               // the local vertical
uniform mat3 u_eye_to_local;     // to east, north, up
uniform vec3 u_light_direction;  // to the sun or the moon
uniform vec3 u_light_color;
uniform vec3 u_ambient_above;
uniform vec3 u_ambient_below;
uniform float u_exposure;
uniform vec3 u_air;       // extinction at the eye a metre, 1 / scale height, height of the eye
uniform vec2 u_sun_side;  // direction to the sun over the horizon: east, north
uniform sampler2D u_sky;  // radiance by angle from the sun's side and elevation

const float INV_PI = 0.31830989;

// Radiance of the sky in a direction (east, north, up), without sun, moon and stars.
vec3 skyRadiance(vec3 direction) {
    vec2 side = direction.xy * inversesqrt(max(dot(direction.xy, direction.xy), 1e-6));
    float around = sqrt(max(0.5 - 0.5 * dot(side, u_sun_side), 0.0));
    float above = 0.5 + 0.5 * sign(direction.z) * sqrt(abs(direction.z));
    return texture(u_sky, vec2(around, above)).rgb;
}

// Mean extinction of the air on the way to that place, a metre.
float airExtinction(vec3 position) {
    float climb = dot(position, u_up) * u_air.y;
    float thinning = abs(climb) > 1e-3 ? (1.0 - exp(-climb)) / climb : 1.0 - 0.5 * climb;
    return u_air.x * thinning;
}

// How much of a radiance at that place reaches the eye.
float airTransmittance(vec3 position) {
    return exp(-airExtinction(position) * length(position));
}

// Radiance of the air that far away hides what lies there; it varies little, so that vertices may carry it.
vec3 hazeRadiance(vec3 position) {
    return skyRadiance(u_eye_to_local * normalize(position));
}

// A radiance seen through the air between its place and the eye.
vec3 throughAir(vec3 radiance, vec3 position) {
    return mix(hazeRadiance(position), radiance, airTransmittance(position));
}

// Display value of a radiance: exposure, then the filmic curve of Hejl and Burgess-Dawson (2010), which holds the
// display's gamma.
vec3 display(vec3 radiance) {
    vec3 x = max(radiance * u_exposure - 0.004, 0.0);
    return (x * (6.2 * x + 0.5)) / (x * (6.2 * x + 1.7) + 0.06);
}

// Sky and ground light on a surface with that normal.
vec3 ambientLight(vec3 normal) {
    return mix(u_ambient_below, u_ambient_above, 0.5 + 0.5 * dot(normal, u_up));
}

// Reflectance of a picture's sRGB value, after a cubic fit of Hejl's; cheaper than textures that do it themselves.
vec3 reflectanceOf(vec3 value) {
    return value * (value * (value * 0.305306011 + 0.682171111) + 0.012522878);
}
