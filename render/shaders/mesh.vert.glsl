// Meshes: positions in the eye's frame, with air per vertex.
#include "common.glsl"
out vec3 v_position;  // in the eye's frame
out vec3 v_normal;
out vec2 v_uv;
out vec4 v_air;  // haze in front of it, mean extinction
#ifdef NORMAL_TEXTURE
in vec4 a_tangent;
out vec4 v_tangent;
#endif

void main() {
    vec4 position = gl_ModelViewMatrix * gl_Vertex;
    v_position = position.xyz;
    v_normal = gl_NormalMatrix * gl_Normal;
    v_air = vec4(hazeRadiance(v_position), airExtinction(v_position));
    v_uv = gl_MultiTexCoord0.xy;
#ifdef NORMAL_TEXTURE
    v_tangent = vec4(mat3(gl_ModelViewMatrix) * a_tangent.xyz, a_tangent.w);
#endif
    gl_Position = gl_ProjectionMatrix * position;
}
