// Texts in the scene and over the picture.
out vec3 v_position;  // in the eye's frame
out vec2 v_uv;
out vec4 v_color;

void main() {
    vec4 position = gl_ModelViewMatrix * gl_Vertex;
    v_position = position.xyz;
    v_uv = gl_MultiTexCoord0.xy;
    v_color = gl_Color;
    gl_Position = gl_ProjectionMatrix * position;
}
