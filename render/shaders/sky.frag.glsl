#include "common.glsl"
in vec3 v_direction;

void main() {
    vec3 direction = normalize(u_eye_to_local * v_direction);
    gl_FragColor = vec4(display(skyRadiance(direction)), 1.0);
}
