// The dome: one triangle over the whole picture, infinitely far.
out vec3 v_direction;  // in the eye's frame, not of length 1

void main() {
    mat4 p = gl_ProjectionMatrix;
    vec2 at = gl_Vertex.xy;
    v_direction = vec3((at.x + p[2][0]) / p[0][0], (at.y + p[2][1]) / p[1][1], -1.0);
    gl_Position = vec4(at, 0.0, 1.0);
}
