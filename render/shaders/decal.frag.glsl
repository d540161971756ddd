// An image on the ground with wear and weather.
#include "terrain_light.glsl"
uniform sampler2D u_image;
uniform sampler2D u_detail;
uniform vec2 u_size;  // of the image on the ground, metres
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
    // Worn in wide patches, the same as those of the puddles. Cleared of snow except along the edges.
    float worn = texture(u_detail, v_ground.zw * (1.0 / 97.0)).r;
    vec2 inward = (0.5 - abs(v_ground.xy - 0.5)) * u_size;
    float edge = 1.0 - smoothstep(2.0, 8.0, min(inward.x, inward.y) + 16.0 * (worn - 0.5));
    float snow = 0.12 * u_ground.y + 0.8 * snowThere(u_ground.y * (0.2 + 0.7 * edge), worn, 0.25, 1.0);
    vec3 radiance = weatheredRadiance(base, snow, v_normal, v_position, worn, 1.0, lit);
#else
    vec3 sun = u_light_color * (max(dot(v_normal, u_light_direction), 0.0) * lit);
    vec3 radiance = base * INV_PI * (sun + ambientLight(v_normal) + lampLight(v_normal, v_position));
#endif
    gl_FragColor = vec4(display(radiance * v_passed + v_haze), image.a);
}
