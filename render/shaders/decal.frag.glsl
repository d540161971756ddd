// An image on the ground, worn by it.
#include "terrain_light.glsl"
uniform sampler2D u_image;
uniform sampler2D u_detail;
in vec3 v_position;
in vec3 v_normal;
in vec4 v_ground;
in vec3 v_haze;
in float v_passed;

void main() {
    vec4 image = texture(u_image, v_ground.xy);
    float grain = texture(u_detail, v_ground.zw * (1.0 / 7.0)).g;
    vec3 base = reflectanceOf(image.rgb) * (0.6 + 0.8 * grain);
    float lit = lightThere(v_position);
#ifdef GROUND_WEATHER
    // Swept now and then, so that less snow lies here; worn in wide patches where water stands.
    float worn = texture(u_detail, v_ground.zw * (1.0 / 97.0)).r;
    float snow = 0.9 * snowThere(u_ground.y * 0.55, worn, 1.0);
    vec3 radiance = weatheredRadiance(base, snow, v_normal, v_position, worn, 1.0, lit);
#else
    vec3 sun = u_light_color * (max(dot(v_normal, u_light_direction), 0.0) * lit);
    vec3 radiance = base * INV_PI * (sun + ambientLight(v_normal) + lampLight(v_normal, v_position));
#endif
    gl_FragColor = vec4(display(radiance * v_passed + v_haze), image.a);
}
