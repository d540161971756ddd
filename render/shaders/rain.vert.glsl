// Rain, hail and snow: a box of drops that repeats around the eye, with motion blur per drop. East, north, up.
#include "common.glsl"
uniform vec3 u_drop_offset;  // displacement of the drops, metres
uniform vec3 u_drop_centre;  // of the box, relative to the eye
uniform vec3 u_drop_streak;  // motion of a drop during the exposure, metres
uniform vec4 u_drop_look;    // width of the box, of a drop (metres); focal length (pixels); seconds
uniform vec4 u_drop_color;
out vec3 v_across;  // position in the streak divided by its half width, half length of its straight part
out vec4 v_color;   // display value and alpha

#ifdef RAIN
const float SPARKLE = 1.6;  // water scatters more light forward than back
const float DENSE = 2.6;    // the colour's alpha is that of a single drop; a streak is visible for longer
#else
const float SPARKLE = 1.7;
const float DENSE = 1.0;
#endif

void main() {
    int index = gl_VertexID & 3;
    vec2 corner = vec2(index == 1 || index == 2 ? 1.0 : -1.0, index > 1 ? 1.0 : -1.0);
    float seed = gl_Vertex.w;
    float box = u_drop_look.x * (seed < 0.35 ? 0.5 : 1.0);  // denser near the eye, where drops are most visible
    vec3 place = mod(gl_Vertex.xyz * box + u_drop_offset - u_drop_centre + 0.5 * box, box) - 0.5 * box;
    float edge = 2.0 * length(place) / box;
    place += u_drop_centre * (box / u_drop_look.x);
#ifdef SNOW
    float phase = u_drop_look.w * (0.5 + floor(seed * 8.0) * 0.25) + seed * 500.0;
    place += 0.12 * vec3(sin(phase), cos(phase * 0.5), 0.5 * sin(phase * 1.5));
#endif
    vec3 centre = place * u_eye_to_local;
    vec3 streak = u_drop_streak * u_eye_to_local;
    float distance = max(length(centre), 0.05);
    vec3 look = centre / distance;
    vec3 seen = streak - look * dot(streak, look);
    float seen_length = length(seen);
    vec3 along = seen_length > 1e-4 ? seen / seen_length : normalize(cross(look, vec3(1.0, 0.0, 0.0)));
    vec3 side = cross(along, look);

    float width = u_drop_look.y * (0.6 + 0.8 * fract(seed * 57.0));
    float least = 1.4 * distance / u_drop_look.z;
    float half_width = 0.5 * max(width, least);
    float thin = min(width / least, 1.0);
    v_across = vec3(corner.x, corner.y * (1.0 + 0.5 * seen_length / half_width), 0.5 * seen_length / half_width);
    float alpha = u_drop_color.a * DENSE * thin * clamp(distance * 1.2 - 0.4, 0.0, 1.0) * clamp(3.0 - 3.0 * edge, 0.0, 1.0);
#ifdef SNOW
    float smear = half_width / (half_width + 0.3 * seen_length);
    alpha *= smear;
#endif
    vec3 light = u_ambient_above + u_ambient_below + 0.5 * u_light_color;
    v_color = vec4(display(u_drop_color.rgb * light * (0.5 * SPARKLE * INV_PI)), min(alpha, 1.0));
    vec3 position = centre + corner.y * (0.5 * streak + along * half_width) + corner.x * side * half_width;
    gl_Position = gl_ProjectionMatrix * vec4(position, 1.0);
}
