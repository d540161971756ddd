// The Milky Way: the interpolated display value.
in vec3 v_display;

void main() {
    gl_FragColor = vec4(v_display, 1.0);
}
