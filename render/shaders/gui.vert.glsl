// Panels: positions in pixels from the upper left corner.
uniform vec2 u_pixel;  // 2 / width, -2 / height
in vec2 a_place;
in vec2 a_uv;
in vec4 a_color;
out vec2 v_uv;
out vec4 v_color;

void main() {
    v_uv = a_uv;
    v_color = a_color;
    gl_Position = vec4(a_place * u_pixel + vec2(-1.0, 1.0), 0.0, 1.0);
}
