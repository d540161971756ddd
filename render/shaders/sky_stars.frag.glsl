// A star: a round point, brightest in its centre.
in vec3 v_display;

void main() {
    vec2 from_centre = gl_PointCoord * 2.0 - 1.0;
    gl_FragColor = vec4(v_display * max(1.0 - dot(from_centre, from_centre), 0.0), 1.0);
}
