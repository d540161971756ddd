// An image on the ground, worn by it.
#include "terrain_light.glsl"
uniform sampler2D u_image;
uniform sampler2D u_detail;
in vec3 v_position;
in vec3 v_normal;
in vec4 v_ground;
in vec4 v_air;

void main() {
    vec4 image = texture(u_image, v_ground.xy);
    float grain = texture(u_detail, v_ground.zw * (1.0 / 7.0)).a;
    float worn = texture(u_detail, v_ground.zw * (1.0 / 97.0)).b;
    vec3 base = image.rgb * (0.55 + 0.5 * grain + 0.4 * worn);
    vec3 radiance = groundRadiance(base, normalize(v_normal), v_position, worn);
    gl_FragColor = vec4(display(radiance * v_air.a + v_air.rgb), image.a);
}
