// Metallic-roughness surfaces after glTF 2.0.
#include "common.glsl"
#include "shadow.glsl"
#include "surface.glsl"
uniform vec4 u_base_color;
uniform vec3 u_emission;
uniform vec3 u_surface;  // metallic, roughness, alpha cutoff
uniform vec2 u_uv_offset;
uniform sampler2D u_base_texture;
uniform sampler2D u_surface_texture;
uniform sampler2D u_normal_texture;
uniform sampler2D u_emission_texture;
in vec3 v_position;
in vec3 v_normal;
in vec2 v_uv;
in vec4 v_air;
#ifdef NORMAL_TEXTURE
in vec4 v_tangent;
#endif

vec3 surfaceNormal(vec2 uv) {
#ifdef FLAT
    vec3 normal = normalize(cross(dFdx(v_position), dFdy(v_position)));
#else
    vec3 normal = normalize(v_normal);
#endif
#ifdef NORMAL_TEXTURE
    vec3 bump = texture(u_normal_texture, uv).xyz * 2.0 - 1.0;
    vec3 side = cross(normal, v_tangent.xyz) * v_tangent.w;
    normal = normalize(v_tangent.xyz * bump.x + side * bump.y + normal * bump.z);
#endif
#ifdef DOUBLE_SIDED
    if (!gl_FrontFacing) normal = -normal;
#endif
    return normal;
}

void main() {
    vec2 uv = v_uv + u_uv_offset;
    vec4 base = u_base_color;
#ifdef BASE_TEXTURE
    vec4 image = texture(u_base_texture, uv);
    base *= vec4(reflectanceOf(image.rgb), image.a);
#endif
#ifdef MASK
    if (base.a < u_surface.z) discard;
#endif
    vec2 metal_rough = u_surface.xy;
#ifdef SURFACE_TEXTURE
    metal_rough *= texture(u_surface_texture, uv).bg;
#endif
    vec3 normal = surfaceNormal(uv);
    Surface surface = weathered(Surface(base.rgb, metal_rough.x, metal_rough.y), normal);
    vec3 radiance = surfaceRadiance(surface, normal, v_position, lightThere(v_position));
    vec3 emission = u_emission;
#ifdef EMISSION_TEXTURE
    emission *= reflectanceOf(texture(u_emission_texture, uv).rgb);
#endif
    float arriving = exp(-v_air.w * length(v_position));
    gl_FragColor = vec4(display(mix(v_air.rgb, radiance + emission, arriving)), base.a);
}
