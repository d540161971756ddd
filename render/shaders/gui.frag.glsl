// Panels: vertex colour times glyph or image texture.
uniform sampler2D u_texture;
in vec2 v_uv;
in vec4 v_color;

void main() {
    gl_FragColor = v_color * texture(u_texture, v_uv);
}
