// A square facing the sun or the moon, infinitely far. REACH: its half side, in radii of the disc.
uniform mat3 u_eye_to_local;
uniform vec3 u_disc_direction;  // east, north, up
uniform vec3 u_disc_right;      // its length is the disc's radius
uniform vec3 u_disc_up;
out vec2 v_place;      // in radii of the disc
out vec3 v_direction;  // east, north, up

void main() {
    v_place = gl_Vertex.xy * REACH;
    v_direction = u_disc_direction + u_disc_right * v_place.x + u_disc_up * v_place.y;
    gl_Position = gl_ProjectionMatrix * vec4(v_direction * u_eye_to_local, 0.0);
}
