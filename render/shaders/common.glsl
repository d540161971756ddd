// Light, air and display curve shared by all fragment shaders. Positions and directions are in the eye's frame, metres;
// radiances are kcd/m^2.
uniform vec3 u_up;               // the local vertical
uniform mat3 u_eye_to_local;     // rotation to east, north, up
uniform vec3 u_light_direction;  // to the sun or the moon
uniform vec3 u_light_color;
uniform vec3 u_ambient_above;
uniform vec3 u_ambient_below;
uniform float u_exposure;
uniform vec3 u_air;       // extinction at the eye (1/m), 1 / scale height, height of the eye
uniform vec2 u_sun_side;  // azimuth direction of the sun: east, north
uniform sampler2D u_sky;  // radiance by azimuth from the sun and elevation

const float INV_PI = 0.31830989;

// Radiance of the sky in a direction (east, north, up), without sun, moon and stars.
vec3 skyRadiance(vec3 direction) {
    vec2 side = direction.xy * inversesqrt(max(dot(direction.xy, direction.xy), 1e-6));
    float around = sqrt(max(0.5 - 0.5 * dot(side, u_sun_side), 0.0));
    float above = 0.5 + 0.5 * sign(direction.z) * sqrt(abs(direction.z));
    return texture(u_sky, vec2(around, above)).rgb;
}

// Mean extinction of the air between the eye and a position, 1/m.
float airExtinction(vec3 position) {
    float climb = dot(position, u_up) * u_air.y;
    float thinning = abs(climb) > 1e-3 ? (1.0 - exp(-climb)) / climb : 1.0 - 0.5 * climb;
    return u_air.x * thinning;
}

// Transmittance of the air between a position and the eye.
float airTransmittance(vec3 position) {
    return exp(-airExtinction(position) * length(position));
}

// Radiance of so much air that it hides everything behind it. It varies slowly, so that it may be computed per vertex.
vec3 hazeRadiance(vec3 position) {
    return skyRadiance(u_eye_to_local * normalize(position));
}

// A radiance at a position as seen through the air.
vec3 throughAir(vec3 radiance, vec3 position) {
    return mix(hazeRadiance(position), radiance, airTransmittance(position));
}

// Display value of a radiance: exposure, then the filmic curve of Hejl and Burgess-Dawson (2010), which includes the
// display's gamma.
vec3 display(vec3 radiance) {
    vec3 x = max(radiance * u_exposure - 0.004, 0.0);
    return (x * (6.2 * x + 0.5)) / (x * (6.2 * x + 1.7) + 0.06);
}

// Illuminance of a surface with this normal from sky and ground.
vec3 ambientLight(vec3 normal) {
    return mix(u_ambient_below, u_ambient_above, 0.5 + 0.5 * dot(normal, u_up));
}

// Reflectance of an sRGB texel, after a cubic fit by Hejl; cheaper than sRGB textures.
vec3 reflectanceOf(vec3 value) {
    return value * (value * (value * 0.305306011 + 0.682171111) + 0.012522878);
}
